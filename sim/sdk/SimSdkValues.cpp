// The enumerators, role codes and table ids that the simulated SDK build answers with.
#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

bcm_field_action_t SimSdk::bcmFieldActionClassSourceSet() {
   return sdkAction( ActionId::ClassSourceSet );
}

bcm_field_action_t SimSdk::bcmFieldActionCopyToCpu() {
   return sdkAction( ActionId::CopyToCpu );
}

bcm_field_action_t SimSdk::bcmFieldActionCosQCpuNew() {
   return sdkAction( ActionId::CosQCpuNew );
}

bcm_field_action_t SimSdk::bcmFieldActionDrop() {
   return sdkAction( ActionId::Drop );
}

bcm_field_action_t SimSdk::bcmFieldActionEgressMask() {
   return sdkAction( ActionId::EgressMask );
}

bcm_field_action_t SimSdk::bcmFieldActionMirrorIngressIndex() {
   return sdkAction( ActionId::MirrorIngressIndex );
}

bcm_field_action_t SimSdk::bcmFieldActionPrioIntNew() {
   return sdkAction( ActionId::PrioIntNew );
}

bcm_field_action_t SimSdk::bcmFieldActionSwitchToCpuCancel() {
   return sdkAction( ActionId::SwitchToCpuCancel );
}

bcm_field_IpFrag_t SimSdk::bcmFieldIpFragNon() {
   return sdkIpFrag( IpFrag::Non );
}

bcm_field_IpFrag_t SimSdk::bcmFieldIpFragFirst() {
   return sdkIpFrag( IpFrag::First );
}

bcm_field_IpFrag_t SimSdk::bcmFieldIpFragNonOrFirst() {
   return sdkIpFrag( IpFrag::NonOrFirst );
}

bcm_field_IpFrag_t SimSdk::bcmFieldIpFragNotFirst() {
   return sdkIpFrag( IpFrag::NotFirst );
}

bcm_field_IpFrag_t SimSdk::bcmFieldIpFragAny() {
   return sdkIpFrag( IpFrag::Any );
}

bcm_field_IpType_t SimSdk::bcmFieldIpTypeIpv4Any() {
   return sdkIpType( IpType::Ipv4Any );
}

bcm_field_IpType_t SimSdk::bcmFieldIpTypeIpv6() {
   return sdkIpType( IpType::Ipv6 );
}

bcm_stg_stp_t SimSdk::BCM_STG_STP_BLOCK() {
   return sdkStpState( StpState::Block );
}

bcm_stg_stp_t SimSdk::BCM_STG_STP_LEARN() {
   return sdkStpState( StpState::Learn );
}

bcm_stg_stp_t SimSdk::BCM_STG_STP_FORWARD() {
   return sdkStpState( StpState::Forward );
}

bcm_range_type_t SimSdk::bcmRangeTypeL4SrcPort() {
   return sdkRangeType( RangeType::SrcPort );
}

bcm_range_type_t SimSdk::bcmRangeTypeL4DstPort() {
   return sdkRangeType( RangeType::DstPort );
}

bcm_range_type_t SimSdk::bcmRangeTypePacketLength() {
   return sdkRangeType( RangeType::IpLength );
}

bcm_port_class_t SimSdk::bcmPortClassFieldIngress() {
   return sdkPortClass( PortClassKind::FieldIngress );
}

bcm_port_class_t SimSdk::bcmPortClassFieldEgress() {
   return sdkPortClass( PortClassKind::FieldEgress );
}

bcm_port_control_t SimSdk::bcmPortControlFilterEgress() {
   return kPortControlFilterEgress;
}

soc_mem_t SimSdk::PORT_TABm() {
   return kPortTable;
}

soc_mem_t SimSdk::LPORT_TABm() {
   return kLPortTable;
}

int SimSdk::MEM_BLOCK_ANY() {
   return kMemBlockAny;
}

int SimSdk::MEM_BLOCK_ALL() {
   return kMemBlockAll;
}

soc_field_t SimSdk::USE_PORT_TABLE_GROUP_IDf() {
   return kUsePortTableGroupIdField;
}

int SimSdk::BCM_E_NONE() {
   return kNone;
}

int SimSdk::BCM_E_NOT_FOUND() {
   return kNotFound;
}

int SimSdk::BCM_E_RESOURCE() {
   return kResource;
}

// Enabling an entry that is not in hardware answers kDisabled; the managers let that pass.
int SimSdk::enableEntryToleratedCode() {
   return kDisabled;
}

}  // namespace Sim
