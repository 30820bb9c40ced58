// Qualifier setters: each stores data and mask on the entry under the chip model's name.
#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

int SimSdk::qualify( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, U64 data, U64 mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( op, unit, chip ) ) {
      return rc;
   }
   return codeOf( chip->qualifierIs( entry, q, data, mask ) );
}

int SimSdk::qualifyBytes( SdkOp op, int unit, bcm_field_entry_t entry, QualId q,
                          std::span<const U8> data, std::span<const U8> mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( op, unit, chip ) ) {
      return rc;
   }
   return codeOf( chip->qualifierIs( entry, q, data, mask ) );
}

int SimSdk::bcm_field_qualify_SrcIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                     bcm_ip_t mask ) {
   return qualify( SdkOp::bcm_field_qualify_SrcIp, unit, entry, QualId::SrcIp, data, mask );
}

int SimSdk::bcm_field_qualify_DstIp( int unit, bcm_field_entry_t entry, bcm_ip_t data,
                                     bcm_ip_t mask ) {
   return qualify( SdkOp::bcm_field_qualify_DstIp, unit, entry, QualId::DstIp, data, mask );
}

int SimSdk::bcm_field_qualify_SrcIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                      const bcm_ip6_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_SrcIp6, unit, entry, QualId::SrcIp6, data, mask );
}

int SimSdk::bcm_field_qualify_DstIp6( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                      const bcm_ip6_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_DstIp6, unit, entry, QualId::DstIp6, data, mask );
}

int SimSdk::bcm_field_qualify_SrcIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                          const bcm_ip6_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_SrcIp6High, unit, entry, QualId::SrcIp6High, data,
                        mask );
}

int SimSdk::bcm_field_qualify_DstIp6High( int unit, bcm_field_entry_t entry, const bcm_ip6_t& data,
                                          const bcm_ip6_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_DstIp6High, unit, entry, QualId::DstIp6High, data,
                        mask );
}

int SimSdk::bcm_field_qualify_SrcMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                      const bcm_mac_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_SrcMac, unit, entry, QualId::SrcMac, data, mask );
}

int SimSdk::bcm_field_qualify_DstMac( int unit, bcm_field_entry_t entry, const bcm_mac_t& data,
                                      const bcm_mac_t& mask ) {
   return qualifyBytes( SdkOp::bcm_field_qualify_DstMac, unit, entry, QualId::DstMac, data, mask );
}

int SimSdk::bcm_field_qualify_EtherType( int unit, bcm_field_entry_t entry, U16 data, U16 mask ) {
   return qualify( SdkOp::bcm_field_qualify_EtherType, unit, entry, QualId::EtherType, data, mask );
}

int SimSdk::bcm_field_qualify_IpProtocol( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_IpProtocol, unit, entry, QualId::IpProtocol, data,
                   mask );
}

int SimSdk::bcm_field_qualify_ExtensionHeaderType( int unit, bcm_field_entry_t entry, U8 data,
                                                   U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_ExtensionHeaderType, unit, entry,
                   QualId::ExtensionHeaderType, data, mask );
}

int SimSdk::bcm_field_qualify_L4SrcPort( int unit, bcm_field_entry_t entry, U16 data, U16 mask ) {
   return qualify( SdkOp::bcm_field_qualify_L4SrcPort, unit, entry, QualId::L4SrcPort, data, mask );
}

int SimSdk::bcm_field_qualify_L4DstPort( int unit, bcm_field_entry_t entry, U16 data, U16 mask ) {
   return qualify( SdkOp::bcm_field_qualify_L4DstPort, unit, entry, QualId::L4DstPort, data, mask );
}

int SimSdk::bcm_field_qualify_DSCP( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_DSCP, unit, entry, QualId::Dscp, data, mask );
}

int SimSdk::bcm_field_qualify_Ip6TrafficClass( int unit, bcm_field_entry_t entry, U8 data,
                                               U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_Ip6TrafficClass, unit, entry, QualId::Ip6TrafficClass,
                   data, mask );
}

int SimSdk::bcm_field_qualify_Ttl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_Ttl, unit, entry, QualId::Ttl, data, mask );
}

int SimSdk::bcm_field_qualify_Ip6HopLimit( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_Ip6HopLimit, unit, entry, QualId::Ip6HopLimit, data,
                   mask );
}

int SimSdk::bcm_field_qualify_TcpControl( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_TcpControl, unit, entry, QualId::TcpControl, data,
                   mask );
}

int SimSdk::bcm_field_qualify_OuterVlanId( int unit, bcm_field_entry_t entry, U16 data, U16 mask ) {
   return qualify( SdkOp::bcm_field_qualify_OuterVlanId, unit, entry, QualId::OuterVlanId, data,
                   mask );
}

int SimSdk::bcm_field_qualify_ForwardingVlanId( int unit, bcm_field_entry_t entry, U16 data,
                                                U16 mask ) {
   return qualify( SdkOp::bcm_field_qualify_ForwardingVlanId, unit, entry, QualId::ForwardingVlanId,
                   data, mask );
}

int SimSdk::bcm_field_qualify_EgressClassL3Interface( int unit, bcm_field_entry_t entry, U32 data,
                                                      U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_EgressClassL3Interface, unit, entry,
                   QualId::EgressClassL3Interface, data, mask );
}

int SimSdk::bcm_field_qualify_VxlanNetworkId( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_VxlanNetworkId, unit, entry, QualId::VxlanNetworkId,
                   data, mask );
}

int SimSdk::bcm_field_qualify_HiGig( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_HiGig, unit, entry, QualId::HiGig, data, mask );
}

int SimSdk::bcm_field_qualify_L3Routable( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_L3Routable, unit, entry, QualId::L3Routable, data,
                   mask );
}

int SimSdk::bcm_field_qualify_MyStationHit( int unit, bcm_field_entry_t entry, U8 data, U8 mask ) {
   return qualify( SdkOp::bcm_field_qualify_MyStationHit, unit, entry, QualId::MyStationHit, data,
                   mask );
}

int SimSdk::bcm_field_qualify_InterfaceClassPort( int unit, bcm_field_entry_t entry, U32 data,
                                                  U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_InterfaceClassPort, unit, entry,
                   QualId::InterfaceClassPort, data, mask );
}

int SimSdk::bcm_field_qualify_InterfaceClassL2( int unit, bcm_field_entry_t entry, U32 data,
                                                U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_InterfaceClassL2, unit, entry, QualId::InterfaceClassL2,
                   data, mask );
}

int SimSdk::bcm_field_qualify_InterfaceClassL3( int unit, bcm_field_entry_t entry, U32 data,
                                                U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_InterfaceClassL3, unit, entry, QualId::InterfaceClassL3,
                   data, mask );
}

int SimSdk::bcm_field_qualify_SrcClassField( int unit, bcm_field_entry_t entry, U32 data,
                                             U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_SrcClassField, unit, entry, QualId::SrcClassField, data,
                   mask );
}

int SimSdk::bcm_field_qualify_DstClassField( int unit, bcm_field_entry_t entry, U32 data,
                                             U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_DstClassField, unit, entry, QualId::DstClassField, data,
                   mask );
}

int SimSdk::bcm_field_qualify_DstClassL2( int unit, bcm_field_entry_t entry, U32 data, U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_DstClassL2, unit, entry, QualId::DstClassL2, data,
                   mask );
}

int SimSdk::bcm_field_qualify_EtherTypeClass( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_EtherTypeClass, unit, entry, QualId::EtherTypeClass,
                   data, mask );
}

int SimSdk::bcm_field_qualify_IpProtocolClass( int unit, bcm_field_entry_t entry, U32 data,
                                               U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_IpProtocolClass, unit, entry, QualId::IpProtocolClass,
                   data, mask );
}

int SimSdk::bcm_field_qualify_L4SrcPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_L4SrcPortClass, unit, entry, QualId::L4SrcPortClass,
                   data, mask );
}

int SimSdk::bcm_field_qualify_L4DstPortClass( int unit, bcm_field_entry_t entry, U32 data,
                                              U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_L4DstPortClass, unit, entry, QualId::L4DstPortClass,
                   data, mask );
}

int SimSdk::bcm_field_qualify_DstIpClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                                   U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_DstIpClassMsbNibble, unit, entry,
                   QualId::DstIpClassMsbNibble, data, mask );
}

int SimSdk::bcm_field_qualify_DstIp6ClassMsbNibble( int unit, bcm_field_entry_t entry, U32 data,
                                                    U32 mask ) {
   return qualify( SdkOp::bcm_field_qualify_DstIp6ClassMsbNibble, unit, entry,
                   QualId::DstIp6ClassMsbNibble, data, mask );
}

int SimSdk::bcm_field_qualify_IngressStpState( int unit, bcm_field_entry_t entry,
                                               bcm_stg_stp_t state, U8 mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_IngressStpState, unit, chip ) ) {
      return rc;
   }
   const auto s = stpStateOf( state );
   if ( !s ) {
      return kParam;
   }
   return codeOf(
       chip->qualifierIs( entry, QualId::IngressStpState, static_cast<U64>( *s ), mask ) );
}

// Given again on a live entry whenever its ports change: the new bitmaps replace the old.
int SimSdk::bcm_field_qualify_InPorts( int unit, bcm_field_entry_t entry, bcm_pbmp_t data,
                                       bcm_pbmp_t mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_InPorts, unit, chip ) ) {
      return rc;
   }
   return codeOf( chip->inPortsIs( entry, portBitmapOf( data ), portBitmapOf( mask ) ) );
}

int SimSdk::bcm_field_qualify_OutPort( int unit, bcm_field_entry_t entry, bcm_port_t data,
                                       bcm_port_t mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_OutPort, unit, chip ) ) {
      return rc;
   }
   if ( data < 0 || mask < 0 ) {
      return kParam;
   }
   return codeOf( chip->qualifierIs( entry, QualId::OutPort, static_cast<U64>( data ),
                                     static_cast<U64>( mask ) ) );
}

int SimSdk::bcm_field_qualify_IpFrag( int unit, bcm_field_entry_t entry, bcm_field_IpFrag_t frag ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_IpFrag, unit, chip ) ) {
      return rc;
   }
   const auto f = ipFragOf( frag );
   return f ? codeOf( chip->ipFragIs( entry, *f ) ) : kParam;
}

int SimSdk::bcm_field_qualify_IpType( int unit, bcm_field_entry_t entry, bcm_field_IpType_t type ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_IpType, unit, chip ) ) {
      return rc;
   }
   const auto t = ipTypeOf( type );
   return t ? codeOf( chip->ipTypeIs( entry, *t ) ) : kParam;
}

}  // namespace Sim
