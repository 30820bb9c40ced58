// The callable names of the SDK, for library code.
//
// Each operation name becomes a member call on Shim::sdk_ and each constant
// name a fetch from it, so that a call site reads exactly as the SDK call it
// stands for:
//
//    SDK_CHECK( bcm_field_action_add( unit, entry, bcmFieldActionDrop, 0, 0 ) );
//
// becomes a call of Shim::sdk_->bcm_field_action_add with the drop action
// fetched from Shim::sdk_ at that moment, while the check form still sees
// the text as written (the operand of # is not macro-expanded).
//
// Rules that follow from object-like macros with these names:
//  - include this header last, in an include block of its own (so that
//    clang-format cannot sort it upwards): a declaration after it that uses
//    one of the names would be rewritten;
//  - implementations of Shim::Sdk and the shim itself never include it;
//  - PORT_LOCK_INTERNAL_NO_CHK( unit, call ) holds the unit's port lock
//    around `call`; use it inside SDK_NO_CHECK, which gives the bracket.
#pragma once

#include "platform/shim/Sdk.h"

#define PORT_LOCK_INTERNAL_NO_CHK( unit, call ) \
   ::Shim::portLockInternalNoChk( ( unit ), [&]() { return call; } )

// Operations and callable macros.
#define bcm_field_qualify_SrcIp ::Shim::sdk_->bcm_field_qualify_SrcIp
#define bcm_field_qualify_DstIp ::Shim::sdk_->bcm_field_qualify_DstIp
#define bcm_field_qualify_SrcIp6 ::Shim::sdk_->bcm_field_qualify_SrcIp6
#define bcm_field_qualify_DstIp6 ::Shim::sdk_->bcm_field_qualify_DstIp6
#define bcm_field_qualify_SrcIp6High ::Shim::sdk_->bcm_field_qualify_SrcIp6High
#define bcm_field_qualify_DstIp6High ::Shim::sdk_->bcm_field_qualify_DstIp6High
#define bcm_field_qualify_SrcMac ::Shim::sdk_->bcm_field_qualify_SrcMac
#define bcm_field_qualify_DstMac ::Shim::sdk_->bcm_field_qualify_DstMac
#define bcm_field_qualify_EtherType ::Shim::sdk_->bcm_field_qualify_EtherType
#define bcm_field_qualify_IpProtocol ::Shim::sdk_->bcm_field_qualify_IpProtocol
#define bcm_field_qualify_ExtensionHeaderType ::Shim::sdk_->bcm_field_qualify_ExtensionHeaderType
#define bcm_field_qualify_L4SrcPort ::Shim::sdk_->bcm_field_qualify_L4SrcPort
#define bcm_field_qualify_L4DstPort ::Shim::sdk_->bcm_field_qualify_L4DstPort
#define bcm_field_qualify_DSCP ::Shim::sdk_->bcm_field_qualify_DSCP
#define bcm_field_qualify_Ip6TrafficClass ::Shim::sdk_->bcm_field_qualify_Ip6TrafficClass
#define bcm_field_qualify_Ttl ::Shim::sdk_->bcm_field_qualify_Ttl
#define bcm_field_qualify_Ip6HopLimit ::Shim::sdk_->bcm_field_qualify_Ip6HopLimit
#define bcm_field_qualify_TcpControl ::Shim::sdk_->bcm_field_qualify_TcpControl
#define bcm_field_qualify_OuterVlanId ::Shim::sdk_->bcm_field_qualify_OuterVlanId
#define bcm_field_qualify_ForwardingVlanId ::Shim::sdk_->bcm_field_qualify_ForwardingVlanId
#define bcm_field_qualify_EgressClassL3Interface \
   ::Shim::sdk_->bcm_field_qualify_EgressClassL3Interface
#define bcm_field_qualify_VxlanNetworkId ::Shim::sdk_->bcm_field_qualify_VxlanNetworkId
#define bcm_field_qualify_HiGig ::Shim::sdk_->bcm_field_qualify_HiGig
#define bcm_field_qualify_L3Routable ::Shim::sdk_->bcm_field_qualify_L3Routable
#define bcm_field_qualify_MyStationHit ::Shim::sdk_->bcm_field_qualify_MyStationHit
#define bcm_field_qualify_IngressStpState ::Shim::sdk_->bcm_field_qualify_IngressStpState
#define bcm_field_qualify_InPorts ::Shim::sdk_->bcm_field_qualify_InPorts
#define bcm_field_qualify_OutPort ::Shim::sdk_->bcm_field_qualify_OutPort
#define bcm_field_qualify_InterfaceClassPort ::Shim::sdk_->bcm_field_qualify_InterfaceClassPort
#define bcm_field_qualify_InterfaceClassL2 ::Shim::sdk_->bcm_field_qualify_InterfaceClassL2
#define bcm_field_qualify_InterfaceClassL3 ::Shim::sdk_->bcm_field_qualify_InterfaceClassL3
#define bcm_field_qualify_SrcClassField ::Shim::sdk_->bcm_field_qualify_SrcClassField
#define bcm_field_qualify_DstClassField ::Shim::sdk_->bcm_field_qualify_DstClassField
#define bcm_field_qualify_DstClassL2 ::Shim::sdk_->bcm_field_qualify_DstClassL2
#define bcm_field_qualify_EtherTypeClass ::Shim::sdk_->bcm_field_qualify_EtherTypeClass
#define bcm_field_qualify_IpProtocolClass ::Shim::sdk_->bcm_field_qualify_IpProtocolClass
#define bcm_field_qualify_L4SrcPortClass ::Shim::sdk_->bcm_field_qualify_L4SrcPortClass
#define bcm_field_qualify_L4DstPortClass ::Shim::sdk_->bcm_field_qualify_L4DstPortClass
#define bcm_field_qualify_DstIpClassMsbNibble ::Shim::sdk_->bcm_field_qualify_DstIpClassMsbNibble
#define bcm_field_qualify_DstIp6ClassMsbNibble ::Shim::sdk_->bcm_field_qualify_DstIp6ClassMsbNibble
#define bcm_field_qualify_IpFrag ::Shim::sdk_->bcm_field_qualify_IpFrag
#define bcm_field_qualify_IpType ::Shim::sdk_->bcm_field_qualify_IpType
#define bcm_field_qualify_SrcIp_get ::Shim::sdk_->bcm_field_qualify_SrcIp_get
#define bcm_field_qualify_DstIp_get ::Shim::sdk_->bcm_field_qualify_DstIp_get
#define bcm_field_qualify_SrcIp6_get ::Shim::sdk_->bcm_field_qualify_SrcIp6_get
#define bcm_field_qualify_DstIp6_get ::Shim::sdk_->bcm_field_qualify_DstIp6_get
#define bcm_field_qualify_SrcIp6High_get ::Shim::sdk_->bcm_field_qualify_SrcIp6High_get
#define bcm_field_qualify_DstIp6High_get ::Shim::sdk_->bcm_field_qualify_DstIp6High_get
#define bcm_field_qualify_SrcMac_get ::Shim::sdk_->bcm_field_qualify_SrcMac_get
#define bcm_field_qualify_DstMac_get ::Shim::sdk_->bcm_field_qualify_DstMac_get
#define bcm_field_qualify_EtherType_get ::Shim::sdk_->bcm_field_qualify_EtherType_get
#define bcm_field_qualify_IpProtocol_get ::Shim::sdk_->bcm_field_qualify_IpProtocol_get
#define bcm_field_qualify_IpProtocolClass_get ::Shim::sdk_->bcm_field_qualify_IpProtocolClass_get
#define bcm_field_qualify_ExtensionHeaderType_get \
   ::Shim::sdk_->bcm_field_qualify_ExtensionHeaderType_get
#define bcm_field_qualify_L4SrcPort_get ::Shim::sdk_->bcm_field_qualify_L4SrcPort_get
#define bcm_field_qualify_L4DstPort_get ::Shim::sdk_->bcm_field_qualify_L4DstPort_get
#define bcm_field_qualify_L4SrcPortClass_get ::Shim::sdk_->bcm_field_qualify_L4SrcPortClass_get
#define bcm_field_qualify_L4DstPortClass_get ::Shim::sdk_->bcm_field_qualify_L4DstPortClass_get
#define bcm_field_qualify_DSCP_get ::Shim::sdk_->bcm_field_qualify_DSCP_get
#define bcm_field_qualify_Ip6TrafficClass_get ::Shim::sdk_->bcm_field_qualify_Ip6TrafficClass_get
#define bcm_field_qualify_Ip6HopLimit_get ::Shim::sdk_->bcm_field_qualify_Ip6HopLimit_get
#define bcm_field_qualify_TcpControl_get ::Shim::sdk_->bcm_field_qualify_TcpControl_get
#define bcm_field_qualify_IpFrag_get ::Shim::sdk_->bcm_field_qualify_IpFrag_get
#define bcm_field_qualify_OuterVlanId_get ::Shim::sdk_->bcm_field_qualify_OuterVlanId_get
#define bcm_field_qualify_ForwardingVlanId_get ::Shim::sdk_->bcm_field_qualify_ForwardingVlanId_get
#define bcm_field_qualify_EgressClassL3Interface_get \
   ::Shim::sdk_->bcm_field_qualify_EgressClassL3Interface_get
#define bcm_field_qualify_HiGig_get ::Shim::sdk_->bcm_field_qualify_HiGig_get
#define bcm_field_qualify_L3Routable_get ::Shim::sdk_->bcm_field_qualify_L3Routable_get
#define bcm_field_qualify_MyStationHit_get ::Shim::sdk_->bcm_field_qualify_MyStationHit_get
#define bcm_field_qualify_InterfaceClassPort_get \
   ::Shim::sdk_->bcm_field_qualify_InterfaceClassPort_get
#define bcm_field_qualify_InterfaceClassL3_get ::Shim::sdk_->bcm_field_qualify_InterfaceClassL3_get
#define bcm_field_qualify_DstClassField_get ::Shim::sdk_->bcm_field_qualify_DstClassField_get
#define bcm_field_qualify_DstIpClassMsbNibble_get \
   ::Shim::sdk_->bcm_field_qualify_DstIpClassMsbNibble_get
#define bcm_field_qualify_DstIp6ClassMsbNibble_get \
   ::Shim::sdk_->bcm_field_qualify_DstIp6ClassMsbNibble_get
#define bcm_field_qualify_data ::Shim::sdk_->bcm_field_qualify_data
#define bcm_field_qualify_data_get ::Shim::sdk_->bcm_field_qualify_data_get
#define bcm_field_qualify_udf ::Shim::sdk_->bcm_field_qualify_udf
#define bcm_field_qualify_udf_get ::Shim::sdk_->bcm_field_qualify_udf_get
#define bcm_field_action_add ::Shim::sdk_->bcm_field_action_add
#define bcm_field_action_get ::Shim::sdk_->bcm_field_action_get
#define bcm_field_action_remove ::Shim::sdk_->bcm_field_action_remove
#define bcm_field_action_ports_add ::Shim::sdk_->bcm_field_action_ports_add
#define bcm_field_action_ports_get ::Shim::sdk_->bcm_field_action_ports_get
#define BCM_HG_TRUNK_CANCEL_ACTION ::Shim::sdk_->BCM_HG_TRUNK_CANCEL_ACTION
#define bcm_range_get ::Shim::sdk_->bcm_range_get
#define bcm_range_config_t_init ::Shim::sdk_->bcm_range_config_t_init
#define bcm_field_range_get ::Shim::sdk_->bcm_field_range_get
#define bcm_field_qualify_RangeCheck_get ::Shim::sdk_->bcm_field_qualify_RangeCheck_get
#define bcm_port_class_get ::Shim::sdk_->bcm_port_class_get
#define bcm_port_class_set ::Shim::sdk_->bcm_port_class_set
#define bcm_port_control_set ::Shim::sdk_->bcm_port_control_set
#define bcm_port_modid_egress_get ::Shim::sdk_->bcm_port_modid_egress_get
#define bcm_port_modid_egress_set ::Shim::sdk_->bcm_port_modid_egress_set
#define PBMP_ALL ::Shim::sdk_->PBMP_ALL
#define PBMP_E_ALL ::Shim::sdk_->PBMP_E_ALL
#define PBMP_PORT_ALL ::Shim::sdk_->PBMP_PORT_ALL
#define BCM_PBMP_CLEAR ::Shim::sdk_->BCM_PBMP_CLEAR
#define BCM_PBMP_IS_NULL ::Shim::sdk_->BCM_PBMP_IS_NULL
#define BCM_PBMP_PORT_ADD ::Shim::sdk_->BCM_PBMP_PORT_ADD
#define BCM_PBMP_PORT_REMOVE ::Shim::sdk_->BCM_PBMP_PORT_REMOVE
#define BCM_PBMP_MEMBER ::Shim::sdk_->BCM_PBMP_MEMBER
#define BCM_PBMP_COUNT ::Shim::sdk_->BCM_PBMP_COUNT
#define isChipGroupA ::Shim::sdk_->isChipGroupA
#define isChipGroupB ::Shim::sdk_->isChipGroupB
#define isChipGroupC ::Shim::sdk_->isChipGroupC
#define isChipGroupD ::Shim::sdk_->isChipGroupD
#define isChipGroupE ::Shim::sdk_->isChipGroupE
#define isChipGroupF ::Shim::sdk_->isChipGroupF
#define soc_mem_read ::Shim::sdk_->soc_mem_read
#define soc_mem_field32_set ::Shim::sdk_->soc_mem_field32_set
#define soc_mem_write ::Shim::sdk_->soc_mem_write
#define soc_mem_lock ::Shim::sdk_->soc_mem_lock
#define soc_mem_unlock ::Shim::sdk_->soc_mem_unlock
#define PORT_LOCK ::Shim::sdk_->PORT_LOCK
#define PORT_UNLOCK ::Shim::sdk_->PORT_UNLOCK
#define bcm_field_entry_dump ::Shim::sdk_->bcm_field_entry_dump

// Constants, fetched when evaluated.
#define bcmFieldActionClassSourceSet ( ::Shim::sdk_->bcmFieldActionClassSourceSet() )
#define bcmFieldActionCopyToCpu ( ::Shim::sdk_->bcmFieldActionCopyToCpu() )
#define bcmFieldActionCosQCpuNew ( ::Shim::sdk_->bcmFieldActionCosQCpuNew() )
#define bcmFieldActionDrop ( ::Shim::sdk_->bcmFieldActionDrop() )
#define bcmFieldActionEgressMask ( ::Shim::sdk_->bcmFieldActionEgressMask() )
#define bcmFieldActionMirrorIngressIndex ( ::Shim::sdk_->bcmFieldActionMirrorIngressIndex() )
#define bcmFieldActionPrioIntNew ( ::Shim::sdk_->bcmFieldActionPrioIntNew() )
#define bcmFieldActionSwitchToCpuCancel ( ::Shim::sdk_->bcmFieldActionSwitchToCpuCancel() )
#define bcmFieldIpFragNon ( ::Shim::sdk_->bcmFieldIpFragNon() )
#define bcmFieldIpFragFirst ( ::Shim::sdk_->bcmFieldIpFragFirst() )
#define bcmFieldIpFragNonOrFirst ( ::Shim::sdk_->bcmFieldIpFragNonOrFirst() )
#define bcmFieldIpFragNotFirst ( ::Shim::sdk_->bcmFieldIpFragNotFirst() )
#define bcmFieldIpFragAny ( ::Shim::sdk_->bcmFieldIpFragAny() )
#define bcmFieldIpTypeIpv4Any ( ::Shim::sdk_->bcmFieldIpTypeIpv4Any() )
#define bcmFieldIpTypeIpv6 ( ::Shim::sdk_->bcmFieldIpTypeIpv6() )
#define BCM_STG_STP_BLOCK ( ::Shim::sdk_->BCM_STG_STP_BLOCK() )
#define BCM_STG_STP_LEARN ( ::Shim::sdk_->BCM_STG_STP_LEARN() )
#define BCM_STG_STP_FORWARD ( ::Shim::sdk_->BCM_STG_STP_FORWARD() )
#define bcmRangeTypeL4SrcPort ( ::Shim::sdk_->bcmRangeTypeL4SrcPort() )
#define bcmRangeTypeL4DstPort ( ::Shim::sdk_->bcmRangeTypeL4DstPort() )
#define bcmRangeTypePacketLength ( ::Shim::sdk_->bcmRangeTypePacketLength() )
#define bcmPortClassFieldIngress ( ::Shim::sdk_->bcmPortClassFieldIngress() )
#define bcmPortClassFieldEgress ( ::Shim::sdk_->bcmPortClassFieldEgress() )
#define bcmPortControlFilterEgress ( ::Shim::sdk_->bcmPortControlFilterEgress() )
#define PORT_TABm ( ::Shim::sdk_->PORT_TABm() )
#define LPORT_TABm ( ::Shim::sdk_->LPORT_TABm() )
#define MEM_BLOCK_ANY ( ::Shim::sdk_->MEM_BLOCK_ANY() )
#define MEM_BLOCK_ALL ( ::Shim::sdk_->MEM_BLOCK_ALL() )
#define USE_PORT_TABLE_GROUP_IDf ( ::Shim::sdk_->USE_PORT_TABLE_GROUP_IDf() )
#define BCM_E_NONE ( ::Shim::sdk_->BCM_E_NONE() )
#define BCM_E_NOT_FOUND ( ::Shim::sdk_->BCM_E_NOT_FOUND() )
#define BCM_E_RESOURCE ( ::Shim::sdk_->BCM_E_RESOURCE() )
#define enableEntryToleratedCode ( ::Shim::sdk_->enableEntryToleratedCode() )
