// Internal to sim/record: the SDK decorator of CallRecorder. Every member forwards to the
// decorated SDK and, while the recorder records, writes the call to its log first.
#pragma once

#include "platform/shim/Sdk.h"
#include "sim/record/CallOps.h"
#include "sim/record/CallRecorder.h"

namespace Sim {

class RecordingSdk : public Shim::Sdk {
 public:
   RecordingSdk( Shim::Sdk& inner, CallRecorder& recorder )
       : inner_( inner ), recorder_( recorder ) {}

   int bcm_field_qualify_SrcIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                bcm_ip_t mask ) override;
   int bcm_field_qualify_DstIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                bcm_ip_t mask ) override;
   int bcm_field_qualify_SrcIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                 const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_DstIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                 const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_SrcIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                     const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_DstIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                     const bcm_ip6_t& mask ) override;
   int bcm_field_qualify_SrcMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                 const bcm_mac_t& mask ) override;
   int bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                 const bcm_mac_t& mask ) override;
   int bcm_field_qualify_EtherType( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_IpProtocol( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_ExtensionHeaderType( int unit, bcm_field_entry_t entry, U8 data,
                                              U8 mask ) override;
   int bcm_field_qualify_L4SrcPort( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_L4DstPort( int unit, bcm_field_entry_t entry, U16 data,
                                    U16 mask ) override;
   int bcm_field_qualify_DSCP( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_Ip6TrafficClass( int unit, bcm_field_entry_t entry, U8 data,
                                          U8 mask ) override;
   int bcm_field_qualify_Ttl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_Ip6HopLimit( int unit, bcm_field_entry_t entry, U8 data,
                                      U8 mask ) override;
   int bcm_field_qualify_TcpControl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_OuterVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                      U16 mask ) override;
   int bcm_field_qualify_ForwardingVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                           U16 mask ) override;
   int bcm_field_qualify_EgressClassL3Interface( int unit, bcm_field_entry_t entry, U32 data,
                                                 U32 mask ) override;
   int bcm_field_qualify_VxlanNetworkId( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_HiGig( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_L3Routable( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) override;
   int bcm_field_qualify_MyStationHit( int unit, bcm_field_entry_t entry, U8 data,
                                       U8 mask ) override;
   int bcm_field_qualify_IngressStpState( int unit, bcm_field_entry_t entry, bcm_stg_stp_t state,
                                          U8 mask ) override;
   int bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                  bcm_pbmp_t mask ) override;
   int bcm_field_qualify_OutPort( int unit, bcm_field_entry_t entry, bcm_port_t data,
                                  bcm_port_t mask ) override;
   int bcm_field_qualify_InterfaceClassPort( int unit, bcm_field_entry_t entry, U32 data,
                                             U32 mask ) override;
   int bcm_field_qualify_InterfaceClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                           U32 mask ) override;
   int bcm_field_qualify_InterfaceClassL3( int unit, bcm_field_entry_t entry, U32 data,
                                           U32 mask ) override;
   int bcm_field_qualify_SrcClassField( int unit, bcm_field_entry_t entry, U32 data,
                                        U32 mask ) override;
   int bcm_field_qualify_DstClassField( int unit, bcm_field_entry_t entry, U32 data,
                                        U32 mask ) override;
   int bcm_field_qualify_DstClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                     U32 mask ) override;
   int bcm_field_qualify_EtherTypeClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_IpProtocolClass( int unit, bcm_field_entry_t entry, U32 data,
                                          U32 mask ) override;
   int bcm_field_qualify_L4SrcPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_L4DstPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                         U32 mask ) override;
   int bcm_field_qualify_DstIpClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) override;
   int bcm_field_qualify_DstIp6ClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                               U32 mask ) override;
   int bcm_field_qualify_IpFrag( int unit, bcm_field_entry_t entry,
                                 bcm_field_IpFrag_t frag ) override;
   int bcm_field_qualify_IpType( int unit, bcm_field_entry_t entry,
                                 bcm_field_IpType_t type ) override;
   int bcm_field_qualify_SrcIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                    bcm_ip_t* mask ) override;
   int bcm_field_qualify_DstIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                    bcm_ip_t* mask ) override;
   int bcm_field_qualify_SrcIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                     bcm_ip6_t* mask ) override;
   int bcm_field_qualify_DstIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                     bcm_ip6_t* mask ) override;
   int bcm_field_qualify_SrcIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                         bcm_ip6_t* mask ) override;
   int bcm_field_qualify_DstIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                         bcm_ip6_t* mask ) override;
   int bcm_field_qualify_SrcMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                     bcm_mac_t* mask ) override;
   int bcm_field_qualify_DstMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                     bcm_mac_t* mask ) override;
   int bcm_field_qualify_EtherType_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_IpProtocol_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_IpProtocolClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                              U32* mask ) override;
   int bcm_field_qualify_ExtensionHeaderType_get( int unit, bcm_field_entry_t entry, U8* data,
                                                  U8* mask ) override;
   int bcm_field_qualify_L4SrcPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_L4DstPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                        U16* mask ) override;
   int bcm_field_qualify_L4SrcPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                             U32* mask ) override;
   int bcm_field_qualify_L4DstPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                             U32* mask ) override;
   int bcm_field_qualify_DSCP_get( int unit, bcm_field_entry_t entry, U8* data, U8* mask ) override;
   int bcm_field_qualify_Ip6TrafficClass_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) override;
   int bcm_field_qualify_Ip6HopLimit_get( int unit, bcm_field_entry_t entry, U8* data,
                                          U8* mask ) override;
   int bcm_field_qualify_TcpControl_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                     bcm_field_IpFrag_t* frag ) override;
   int bcm_field_qualify_OuterVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                          U16* mask ) override;
   int bcm_field_qualify_ForwardingVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                               U16* mask ) override;
   int bcm_field_qualify_EgressClassL3Interface_get( int unit, bcm_field_entry_t entry, U32* data,
                                                     U32* mask ) override;
   int bcm_field_qualify_HiGig_get( int unit, bcm_field_entry_t entry, U8* data,
                                    U8* mask ) override;
   int bcm_field_qualify_L3Routable_get( int unit, bcm_field_entry_t entry, U8* data,
                                         U8* mask ) override;
   int bcm_field_qualify_MyStationHit_get( int unit, bcm_field_entry_t entry, U8* data,
                                           U8* mask ) override;
   int bcm_field_qualify_InterfaceClassPort_get( int unit, bcm_field_entry_t entry, U32* data,
                                                 U32* mask ) override;
   int bcm_field_qualify_InterfaceClassL3_get( int unit, bcm_field_entry_t entry, U32* data,
                                               U32* mask ) override;
   int bcm_field_qualify_DstClassField_get( int unit, bcm_field_entry_t entry, U32* data,
                                            U32* mask ) override;
   int bcm_field_qualify_DstIpClassMsbNibble_get( int unit, bcm_field_entry_t entry, U32* data,
                                                  U32* mask ) override;
   int bcm_field_qualify_DstIp6ClassMsbNibble_get( int unit, bcm_field_entry_t entry, U32* data,
                                                   U32* mask ) override;
   int bcm_field_qualify_data( int unit, bcm_field_entry_t entry, int qualId, const U8* data,
                               const U8* mask, U16 length ) override;
   int bcm_field_qualify_data_get( int unit, bcm_field_entry_t entry, int qualId, U16 maxLength,
                                   U8* data, U8* mask, U16* actualLength ) override;
   int bcm_field_qualify_udf( int unit, bcm_field_entry_t entry, int udfId, U16 length,
                              const U8* data, const U8* mask ) override;
   int bcm_field_qualify_udf_get( int unit, bcm_field_entry_t entry, int udfId, U16 maxLength,
                                  U8* data, U8* mask, U16* actualLength ) override;
   int bcm_field_action_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                             U32 param1, U32 param2 ) override;
   int bcm_field_action_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                             U32* param1, U32* param2 ) override;
   int bcm_field_action_remove( int unit, bcm_field_entry_t entry,
                                bcm_field_action_t action ) override;
   int bcm_field_action_ports_add( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                   bcm_pbmp_t pbmp ) override;
   int bcm_field_action_ports_get( int unit, bcm_field_entry_t entry, bcm_field_action_t action,
                                   bcm_pbmp_t* pbmp ) override;
   bcm_field_action_t bcmFieldActionClassSourceSet() override;
   bcm_field_action_t bcmFieldActionCopyToCpu() override;
   bcm_field_action_t bcmFieldActionCosQCpuNew() override;
   bcm_field_action_t bcmFieldActionDrop() override;
   bcm_field_action_t bcmFieldActionEgressMask() override;
   bcm_field_action_t bcmFieldActionMirrorIngressIndex() override;
   bcm_field_action_t bcmFieldActionPrioIntNew() override;
   bcm_field_action_t bcmFieldActionSwitchToCpuCancel() override;
   bcm_field_action_t BCM_HG_TRUNK_CANCEL_ACTION( int unit ) override;
   bcm_field_IpFrag_t bcmFieldIpFragNon() override;
   bcm_field_IpFrag_t bcmFieldIpFragFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragNonOrFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragNotFirst() override;
   bcm_field_IpFrag_t bcmFieldIpFragAny() override;
   bcm_field_IpType_t bcmFieldIpTypeIpv4Any() override;
   bcm_field_IpType_t bcmFieldIpTypeIpv6() override;
   bcm_stg_stp_t BCM_STG_STP_BLOCK() override;
   bcm_stg_stp_t BCM_STG_STP_LEARN() override;
   bcm_stg_stp_t BCM_STG_STP_FORWARD() override;
   int bcm_range_get( int unit, bcm_range_config_s* conf ) override;
   void bcm_range_config_t_init( bcm_range_config_s* conf ) override;
   int bcm_field_range_get( int unit, bcm_field_range_t range, U32* flags, int* low,
                            int* high ) override;
   int bcm_field_qualify_RangeCheck_get( int unit, bcm_field_entry_t entry, int maxRanges,
                                         bcm_field_range_t* ranges, int* inverts,
                                         int* numRanges ) override;
   bcm_range_type_t bcmRangeTypeL4SrcPort() override;
   bcm_range_type_t bcmRangeTypeL4DstPort() override;
   bcm_range_type_t bcmRangeTypePacketLength() override;
   int bcm_port_class_get( int unit, bcm_port_t port, bcm_port_class_t pclass,
                           U32* classId ) override;
   int bcm_port_class_set( int unit, bcm_port_t port, bcm_port_class_t pclass,
                           U32 classId ) override;
   int bcm_port_control_set( int unit, bcm_port_t port, bcm_port_control_t type,
                             int value ) override;
   int bcm_port_modid_egress_get( int unit, bcm_port_t port, bcm_module_t modid,
                                  bcm_pbmp_t* pbmp ) override;
   int bcm_port_modid_egress_set( int unit, bcm_port_t port, bcm_module_t modid,
                                  bcm_pbmp_t pbmp ) override;
   bcm_port_class_t bcmPortClassFieldIngress() override;
   bcm_port_class_t bcmPortClassFieldEgress() override;
   bcm_port_control_t bcmPortControlFilterEgress() override;
   bcm_pbmp_t PBMP_ALL( int unit ) override;
   bcm_pbmp_t PBMP_E_ALL( int unit ) override;
   bcm_pbmp_t PBMP_PORT_ALL( int unit ) override;
   void BCM_PBMP_CLEAR( bcm_pbmp_t& pbmp ) override;
   bool BCM_PBMP_IS_NULL( const bcm_pbmp_t& pbmp ) override;
   void BCM_PBMP_PORT_ADD( bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   void BCM_PBMP_PORT_REMOVE( bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   bool BCM_PBMP_MEMBER( const bcm_pbmp_t& pbmp, bcm_port_t port ) override;
   void BCM_PBMP_COUNT( const bcm_pbmp_t& pbmp, int& count ) override;
   bool isChipGroupA( int unit ) override;
   bool isChipGroupB( int unit ) override;
   bool isChipGroupC( int unit ) override;
   bool isChipGroupD( int unit ) override;
   bool isChipGroupE( int unit ) override;
   bool isChipGroupF( int unit ) override;
   int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                     port_tab_entry_s* row ) override;
   int soc_mem_read( int unit, soc_mem_t mem, int block, int index,
                     lport_tab_entry_s* row ) override;
   void soc_mem_field32_set( int unit, soc_mem_t mem, port_tab_entry_s* row, soc_field_t field,
                             U32 value ) override;
   void soc_mem_field32_set( int unit, soc_mem_t mem, lport_tab_entry_s* row, soc_field_t field,
                             U32 value ) override;
   int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                      port_tab_entry_s* row ) override;
   int soc_mem_write( int unit, soc_mem_t mem, int block, int index,
                      lport_tab_entry_s* row ) override;
   int soc_mem_lock( int unit, soc_mem_t mem ) override;
   int soc_mem_unlock( int unit, soc_mem_t mem ) override;
   soc_mem_t PORT_TABm() override;
   soc_mem_t LPORT_TABm() override;
   int MEM_BLOCK_ANY() override;
   int MEM_BLOCK_ALL() override;
   soc_field_t USE_PORT_TABLE_GROUP_IDf() override;
   void PORT_LOCK( int unit ) override;
   void PORT_UNLOCK( int unit ) override;
   int bcm_field_entry_dump( int unit, bcm_field_entry_t entry ) override;
   const char* bcm_errmsg( int rc ) override;
   int BCM_E_NONE() override;
   int BCM_E_NOT_FOUND() override;
   int BCM_E_RESOURCE() override;
   int enableEntryToleratedCode() override;

 private:
   template <auto M, class... A>
   auto call( A&&... args )
       -> decltype( ( std::declval<Shim::Sdk&>().*M )( std::forward<A>( args )... ) ) {
      if ( !recorder_.recording() ) {
         return ( inner_.*M )( std::forward<A>( args )... );
      }
      return record::Op<M>::record( recorder_.log(), 0, inner_, std::forward<A>( args )... );
   }

   Shim::Sdk& inner_;
   CallRecorder& recorder_;
};

}  // namespace Sim
