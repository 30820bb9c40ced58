// A recording stand-in for the SDK, for the tests of the shim itself.
//
// Every member of Shim::Sdk is implemented from the two lists below, so the
// fake stays complete as the interface grows (a missing member makes it
// abstract, a wrong one fails to override). Each operation and each constant
// fetch is recorded with whether the activity lock was held at that moment.
// Operations answer the code set for their name in `rcFor` (0 otherwise);
// constants answer the values in the list.
//
// Include this before platform/shim/SdkNames.h.
#pragma once

#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/shim/Sdk.h"

// Every operation with arguments: X( result, name, parameter types... ).
#define SHIM_TEST_SDK_OPERATIONS( X )                                                             \
   X( int, bcm_field_qualify_SrcIp, int, bcm_field_entry_t, bcm_ip_t, bcm_ip_t )                  \
   X( int, bcm_field_qualify_DstIp, int, bcm_field_entry_t, bcm_ip_t, bcm_ip_t )                  \
   X( int, bcm_field_qualify_SrcIp6, int, bcm_field_entry_t, const bcm_ip6_t&, const bcm_ip6_t& ) \
   X( int, bcm_field_qualify_DstIp6, int, bcm_field_entry_t, const bcm_ip6_t&, const bcm_ip6_t& ) \
   X( int, bcm_field_qualify_SrcIp6High, int, bcm_field_entry_t, const bcm_ip6_t&,                \
      const bcm_ip6_t& )                                                                          \
   X( int, bcm_field_qualify_DstIp6High, int, bcm_field_entry_t, const bcm_ip6_t&,                \
      const bcm_ip6_t& )                                                                          \
   X( int, bcm_field_qualify_SrcMac, int, bcm_field_entry_t, const bcm_mac_t&, const bcm_mac_t& ) \
   X( int, bcm_field_qualify_DstMac, int, bcm_field_entry_t, const bcm_mac_t&, const bcm_mac_t& ) \
   X( int, bcm_field_qualify_EtherType, int, bcm_field_entry_t, U16, U16 )                        \
   X( int, bcm_field_qualify_IpProtocol, int, bcm_field_entry_t, U8, U8 )                         \
   X( int, bcm_field_qualify_ExtensionHeaderType, int, bcm_field_entry_t, U8, U8 )                \
   X( int, bcm_field_qualify_L4SrcPort, int, bcm_field_entry_t, U16, U16 )                        \
   X( int, bcm_field_qualify_L4DstPort, int, bcm_field_entry_t, U16, U16 )                        \
   X( int, bcm_field_qualify_DSCP, int, bcm_field_entry_t, U8, U8 )                               \
   X( int, bcm_field_qualify_Ip6TrafficClass, int, bcm_field_entry_t, U8, U8 )                    \
   X( int, bcm_field_qualify_Ttl, int, bcm_field_entry_t, U8, U8 )                                \
   X( int, bcm_field_qualify_Ip6HopLimit, int, bcm_field_entry_t, U8, U8 )                        \
   X( int, bcm_field_qualify_TcpControl, int, bcm_field_entry_t, U8, U8 )                         \
   X( int, bcm_field_qualify_OuterVlanId, int, bcm_field_entry_t, U16, U16 )                      \
   X( int, bcm_field_qualify_ForwardingVlanId, int, bcm_field_entry_t, U16, U16 )                 \
   X( int, bcm_field_qualify_EgressClassL3Interface, int, bcm_field_entry_t, U32, U32 )           \
   X( int, bcm_field_qualify_VxlanNetworkId, int, bcm_field_entry_t, U32, U32 )                   \
   X( int, bcm_field_qualify_HiGig, int, bcm_field_entry_t, U8, U8 )                              \
   X( int, bcm_field_qualify_L3Routable, int, bcm_field_entry_t, U8, U8 )                         \
   X( int, bcm_field_qualify_MyStationHit, int, bcm_field_entry_t, U8, U8 )                       \
   X( int, bcm_field_qualify_IngressStpState, int, bcm_field_entry_t, bcm_stg_stp_t, U8 )         \
   X( int, bcm_field_qualify_InPorts, int, bcm_field_entry_t, bcm_pbmp_t, bcm_pbmp_t )            \
   X( int, bcm_field_qualify_OutPort, int, bcm_field_entry_t, bcm_port_t, bcm_port_t )            \
   X( int, bcm_field_qualify_InterfaceClassPort, int, bcm_field_entry_t, U32, U32 )               \
   X( int, bcm_field_qualify_InterfaceClassL2, int, bcm_field_entry_t, U32, U32 )                 \
   X( int, bcm_field_qualify_InterfaceClassL3, int, bcm_field_entry_t, U32, U32 )                 \
   X( int, bcm_field_qualify_SrcClassField, int, bcm_field_entry_t, U32, U32 )                    \
   X( int, bcm_field_qualify_DstClassField, int, bcm_field_entry_t, U32, U32 )                    \
   X( int, bcm_field_qualify_DstClassL2, int, bcm_field_entry_t, U32, U32 )                       \
   X( int, bcm_field_qualify_EtherTypeClass, int, bcm_field_entry_t, U32, U32 )                   \
   X( int, bcm_field_qualify_IpProtocolClass, int, bcm_field_entry_t, U32, U32 )                  \
   X( int, bcm_field_qualify_L4SrcPortClass, int, bcm_field_entry_t, U32, U32 )                   \
   X( int, bcm_field_qualify_L4DstPortClass, int, bcm_field_entry_t, U32, U32 )                   \
   X( int, bcm_field_qualify_DstIpClassMsbNibble, int, bcm_field_entry_t, U32, U32 )              \
   X( int, bcm_field_qualify_DstIp6ClassMsbNibble, int, bcm_field_entry_t, U32, U32 )             \
   X( int, bcm_field_qualify_IpFrag, int, bcm_field_entry_t, bcm_field_IpFrag_t )                 \
   X( int, bcm_field_qualify_IpType, int, bcm_field_entry_t, bcm_field_IpType_t )                 \
   X( int, bcm_field_qualify_SrcIp_get, int, bcm_field_entry_t, bcm_ip_t*, bcm_ip_t* )            \
   X( int, bcm_field_qualify_DstIp_get, int, bcm_field_entry_t, bcm_ip_t*, bcm_ip_t* )            \
   X( int, bcm_field_qualify_SrcIp6_get, int, bcm_field_entry_t, bcm_ip6_t*, bcm_ip6_t* )         \
   X( int, bcm_field_qualify_DstIp6_get, int, bcm_field_entry_t, bcm_ip6_t*, bcm_ip6_t* )         \
   X( int, bcm_field_qualify_SrcIp6High_get, int, bcm_field_entry_t, bcm_ip6_t*, bcm_ip6_t* )     \
   X( int, bcm_field_qualify_DstIp6High_get, int, bcm_field_entry_t, bcm_ip6_t*, bcm_ip6_t* )     \
   X( int, bcm_field_qualify_SrcMac_get, int, bcm_field_entry_t, bcm_mac_t*, bcm_mac_t* )         \
   X( int, bcm_field_qualify_DstMac_get, int, bcm_field_entry_t, bcm_mac_t*, bcm_mac_t* )         \
   X( int, bcm_field_qualify_EtherType_get, int, bcm_field_entry_t, U16*, U16* )                  \
   X( int, bcm_field_qualify_IpProtocol_get, int, bcm_field_entry_t, U8*, U8* )                   \
   X( int, bcm_field_qualify_IpProtocolClass_get, int, bcm_field_entry_t, U32*, U32* )            \
   X( int, bcm_field_qualify_ExtensionHeaderType_get, int, bcm_field_entry_t, U8*, U8* )          \
   X( int, bcm_field_qualify_L4SrcPort_get, int, bcm_field_entry_t, U16*, U16* )                  \
   X( int, bcm_field_qualify_L4DstPort_get, int, bcm_field_entry_t, U16*, U16* )                  \
   X( int, bcm_field_qualify_L4SrcPortClass_get, int, bcm_field_entry_t, U32*, U32* )             \
   X( int, bcm_field_qualify_L4DstPortClass_get, int, bcm_field_entry_t, U32*, U32* )             \
   X( int, bcm_field_qualify_DSCP_get, int, bcm_field_entry_t, U8*, U8* )                         \
   X( int, bcm_field_qualify_Ip6TrafficClass_get, int, bcm_field_entry_t, U8*, U8* )              \
   X( int, bcm_field_qualify_Ip6HopLimit_get, int, bcm_field_entry_t, U8*, U8* )                  \
   X( int, bcm_field_qualify_TcpControl_get, int, bcm_field_entry_t, U8*, U8* )                   \
   X( int, bcm_field_qualify_IpFrag_get, int, bcm_field_entry_t, bcm_field_IpFrag_t* )            \
   X( int, bcm_field_qualify_OuterVlanId_get, int, bcm_field_entry_t, U16*, U16* )                \
   X( int, bcm_field_qualify_ForwardingVlanId_get, int, bcm_field_entry_t, U16*, U16* )           \
   X( int, bcm_field_qualify_EgressClassL3Interface_get, int, bcm_field_entry_t, U32*, U32* )     \
   X( int, bcm_field_qualify_HiGig_get, int, bcm_field_entry_t, U8*, U8* )                        \
   X( int, bcm_field_qualify_L3Routable_get, int, bcm_field_entry_t, U8*, U8* )                   \
   X( int, bcm_field_qualify_MyStationHit_get, int, bcm_field_entry_t, U8*, U8* )                 \
   X( int, bcm_field_qualify_InterfaceClassPort_get, int, bcm_field_entry_t, U32*, U32* )         \
   X( int, bcm_field_qualify_InterfaceClassL3_get, int, bcm_field_entry_t, U32*, U32* )           \
   X( int, bcm_field_qualify_DstClassField_get, int, bcm_field_entry_t, U32*, U32* )              \
   X( int, bcm_field_qualify_DstIpClassMsbNibble_get, int, bcm_field_entry_t, U32*, U32* )        \
   X( int, bcm_field_qualify_DstIp6ClassMsbNibble_get, int, bcm_field_entry_t, U32*, U32* )       \
   X( int, bcm_field_qualify_data, int, bcm_field_entry_t, int, const U8*, const U8*, U16 )       \
   X( int, bcm_field_qualify_data_get, int, bcm_field_entry_t, int, U16, U8*, U8*, U16* )         \
   X( int, bcm_field_qualify_udf, int, bcm_field_entry_t, int, U16, const U8*, const U8* )        \
   X( int, bcm_field_qualify_udf_get, int, bcm_field_entry_t, int, U16, U8*, U8*, U16* )          \
   X( int, bcm_field_action_add, int, bcm_field_entry_t, bcm_field_action_t, U32, U32 )           \
   X( int, bcm_field_action_get, int, bcm_field_entry_t, bcm_field_action_t, U32*, U32* )         \
   X( int, bcm_field_action_remove, int, bcm_field_entry_t, bcm_field_action_t )                  \
   X( int, bcm_field_action_ports_add, int, bcm_field_entry_t, bcm_field_action_t, bcm_pbmp_t )   \
   X( int, bcm_field_action_ports_get, int, bcm_field_entry_t, bcm_field_action_t, bcm_pbmp_t* )  \
   X( bcm_field_action_t, BCM_HG_TRUNK_CANCEL_ACTION, int )                                       \
   X( int, bcm_range_get, int, bcm_range_config_s* )                                              \
   X( void, bcm_range_config_t_init, bcm_range_config_s* )                                        \
   X( int, bcm_field_range_get, int, bcm_field_range_t, U32*, int*, int* )                        \
   X( int, bcm_field_qualify_RangeCheck_get, int, bcm_field_entry_t, int, bcm_field_range_t*,     \
      int*, int* )                                                                                \
   X( int, bcm_port_class_get, int, bcm_port_t, bcm_port_class_t, U32* )                          \
   X( int, bcm_port_class_set, int, bcm_port_t, bcm_port_class_t, U32 )                           \
   X( int, bcm_port_control_set, int, bcm_port_t, bcm_port_control_t, int )                       \
   X( int, bcm_port_modid_egress_get, int, bcm_port_t, bcm_module_t, bcm_pbmp_t* )                \
   X( int, bcm_port_modid_egress_set, int, bcm_port_t, bcm_module_t, bcm_pbmp_t )                 \
   X( bcm_pbmp_t, PBMP_ALL, int )                                                                 \
   X( bcm_pbmp_t, PBMP_E_ALL, int )                                                               \
   X( bcm_pbmp_t, PBMP_PORT_ALL, int )                                                            \
   X( void, BCM_PBMP_CLEAR, bcm_pbmp_t& )                                                         \
   X( bool, BCM_PBMP_IS_NULL, const bcm_pbmp_t& )                                                 \
   X( void, BCM_PBMP_PORT_ADD, bcm_pbmp_t&, bcm_port_t )                                          \
   X( void, BCM_PBMP_PORT_REMOVE, bcm_pbmp_t&, bcm_port_t )                                       \
   X( bool, BCM_PBMP_MEMBER, const bcm_pbmp_t&, bcm_port_t )                                      \
   X( void, BCM_PBMP_COUNT, const bcm_pbmp_t&, int& )                                             \
   X( bool, isChipGroupA, int )                                                                   \
   X( bool, isChipGroupB, int )                                                                   \
   X( bool, isChipGroupC, int )                                                                   \
   X( bool, isChipGroupD, int )                                                                   \
   X( bool, isChipGroupE, int )                                                                   \
   X( bool, isChipGroupF, int )                                                                   \
   X( int, soc_mem_read, int, soc_mem_t, int, int, port_tab_entry_s* )                            \
   X( int, soc_mem_read, int, soc_mem_t, int, int, lport_tab_entry_s* )                           \
   X( void, soc_mem_field32_set, int, soc_mem_t, port_tab_entry_s*, soc_field_t, U32 )            \
   X( void, soc_mem_field32_set, int, soc_mem_t, lport_tab_entry_s*, soc_field_t, U32 )           \
   X( int, soc_mem_write, int, soc_mem_t, int, int, port_tab_entry_s* )                           \
   X( int, soc_mem_write, int, soc_mem_t, int, int, lport_tab_entry_s* )                          \
   X( int, soc_mem_lock, int, soc_mem_t )                                                         \
   X( int, soc_mem_unlock, int, soc_mem_t )                                                       \
   X( void, PORT_LOCK, int )                                                                      \
   X( void, PORT_UNLOCK, int )                                                                    \
   X( int, bcm_field_entry_dump, int, bcm_field_entry_t )

// Every constant: C( type, name, the value this fake gives ).
#define SHIM_TEST_SDK_CONSTANTS( C )                              \
   C( bcm_field_action_t, bcmFieldActionClassSourceSet, 101 )     \
   C( bcm_field_action_t, bcmFieldActionCopyToCpu, 102 )          \
   C( bcm_field_action_t, bcmFieldActionCosQCpuNew, 103 )         \
   C( bcm_field_action_t, bcmFieldActionDrop, 104 )               \
   C( bcm_field_action_t, bcmFieldActionEgressMask, 105 )         \
   C( bcm_field_action_t, bcmFieldActionMirrorIngressIndex, 106 ) \
   C( bcm_field_action_t, bcmFieldActionPrioIntNew, 107 )         \
   C( bcm_field_action_t, bcmFieldActionSwitchToCpuCancel, 108 )  \
   C( bcm_field_IpFrag_t, bcmFieldIpFragNon, 109 )                \
   C( bcm_field_IpFrag_t, bcmFieldIpFragFirst, 110 )              \
   C( bcm_field_IpFrag_t, bcmFieldIpFragNonOrFirst, 111 )         \
   C( bcm_field_IpFrag_t, bcmFieldIpFragNotFirst, 112 )           \
   C( bcm_field_IpFrag_t, bcmFieldIpFragAny, 113 )                \
   C( bcm_field_IpType_t, bcmFieldIpTypeIpv4Any, 114 )            \
   C( bcm_field_IpType_t, bcmFieldIpTypeIpv6, 115 )               \
   C( bcm_stg_stp_t, BCM_STG_STP_BLOCK, 116 )                     \
   C( bcm_stg_stp_t, BCM_STG_STP_LEARN, 117 )                     \
   C( bcm_stg_stp_t, BCM_STG_STP_FORWARD, 118 )                   \
   C( bcm_range_type_t, bcmRangeTypeL4SrcPort, 119 )              \
   C( bcm_range_type_t, bcmRangeTypeL4DstPort, 120 )              \
   C( bcm_range_type_t, bcmRangeTypePacketLength, 121 )           \
   C( bcm_port_class_t, bcmPortClassFieldIngress, 122 )           \
   C( bcm_port_class_t, bcmPortClassFieldEgress, 123 )            \
   C( bcm_port_control_t, bcmPortControlFilterEgress, 124 )       \
   C( soc_mem_t, PORT_TABm, 125 )                                 \
   C( soc_mem_t, LPORT_TABm, 126 )                                \
   C( int, MEM_BLOCK_ANY, 127 )                                   \
   C( int, MEM_BLOCK_ALL, 128 )                                   \
   C( soc_field_t, USE_PORT_TABLE_GROUP_IDf, 129 )                \
   C( int, BCM_E_NONE, 0 )                                        \
   C( int, BCM_E_NOT_FOUND, -7 )                                  \
   C( int, BCM_E_RESOURCE, -14 )                                  \
   C( int, enableEntryToleratedCode, -8 )

namespace ShimTest {

struct FakeCall {
   std::string name;
   bool activityLockHeld;
};

class FakeSdk : public Shim::Sdk {
 public:
   // Operations and constant fetches, in the order they happened.
   std::vector<FakeCall> calls;
   // Return codes by operation name; 0 for the others.
   std::map<std::string, int> rcFor;

   std::vector<std::string> callNames() const;

#define SHIM_TEST_FAKE_OPERATION( Result, name, ... ) \
   Result name( __VA_ARGS__ ) override {              \
      return answer<Result>( #name );                 \
   }
   SHIM_TEST_SDK_OPERATIONS( SHIM_TEST_FAKE_OPERATION )
#undef SHIM_TEST_FAKE_OPERATION

#define SHIM_TEST_FAKE_CONSTANT( Type, name, value ) \
   Type name() override {                            \
      record( #name );                               \
      return Type{ value };                          \
   }
   SHIM_TEST_SDK_CONSTANTS( SHIM_TEST_FAKE_CONSTANT )
#undef SHIM_TEST_FAKE_CONSTANT

   // "Entry not found" while the activity lock is held, and a text that says
   // otherwise when it is not: death tests read it in the failure line.
   const char* bcm_errmsg( int rc ) override;

 protected:
   void record( const char* name );

   template <typename Result>
   Result answer( const char* name ) {
      record( name );
      if constexpr ( std::is_same_v<Result, int> ) {
         auto code = rcFor.find( name );
         return code == rcFor.end() ? 0 : code->second;
      } else if constexpr ( !std::is_void_v<Result> ) {
         return Result{};
      }
   }
};

}  // namespace ShimTest
