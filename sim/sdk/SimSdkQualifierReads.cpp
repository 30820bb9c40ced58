// Qualifier reads: what the entry holds, or the answer for a qualifier it lacks (SimSdk.h,
// contract 4).
#include <algorithm>

#include "sim/sdk/SdkValues.h"
#include "sim/sdk/SimSdk.h"

namespace Sim {

using namespace SdkValues;

template <typename T>
int SimSdk::readQual( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, Absent absent, T* data,
                      T* mask ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( op, unit, chip ) ) {
      return rc;
   }
   if ( !data || !mask ) {
      return kParam;
   }
   if ( !chip->entryExists( entry ) ) {
      return kNotFound;
   }
   const auto v = chip->qualifier( entry, q );
   if ( !v ) {
      if ( absent == Absent::notFound ) {
         return kNotFound;
      }
      *data = 0;
      *mask = 0;
      return kNone;
   }
   *data = static_cast<T>( v->dataU64() );
   *mask = static_cast<T>( v->maskU64() );
   return kNone;
}

template <std::size_t N>
int SimSdk::readQualBytes( SdkOp op, int unit, bcm_field_entry_t entry, QualId q, U8 ( *data )[N],
                           U8 ( *mask )[N] ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( op, unit, chip ) ) {
      return rc;
   }
   if ( !data || !mask ) {
      return kParam;
   }
   const auto v = chip->qualifier( entry, q );
   if ( !v || v->width != N ) {
      return kNotFound;
   }
   std::copy_n( v->data.begin(), N, *data );
   std::copy_n( v->mask.begin(), N, *mask );
   return kNone;
}

int SimSdk::bcm_field_qualify_SrcIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                         bcm_ip_t* mask ) {
   return readQual( SdkOp::bcm_field_qualify_SrcIp_get, unit, entry, QualId::SrcIp,
                    Absent::zeroMask, data, mask );
}

int SimSdk::bcm_field_qualify_DstIp_get( int unit, bcm_field_entry_t entry, bcm_ip_t* data,
                                         bcm_ip_t* mask ) {
   return readQual( SdkOp::bcm_field_qualify_DstIp_get, unit, entry, QualId::DstIp,
                    Absent::zeroMask, data, mask );
}

int SimSdk::bcm_field_qualify_SrcIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                          bcm_ip6_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_SrcIp6_get, unit, entry, QualId::SrcIp6, data,
                         mask );
}

int SimSdk::bcm_field_qualify_DstIp6_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                          bcm_ip6_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_DstIp6_get, unit, entry, QualId::DstIp6, data,
                         mask );
}

int SimSdk::bcm_field_qualify_SrcIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                              bcm_ip6_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_SrcIp6High_get, unit, entry, QualId::SrcIp6High,
                         data, mask );
}

int SimSdk::bcm_field_qualify_DstIp6High_get( int unit, bcm_field_entry_t entry, bcm_ip6_t* data,
                                              bcm_ip6_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_DstIp6High_get, unit, entry, QualId::DstIp6High,
                         data, mask );
}

int SimSdk::bcm_field_qualify_SrcMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                          bcm_mac_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_SrcMac_get, unit, entry, QualId::SrcMac, data,
                         mask );
}

int SimSdk::bcm_field_qualify_DstMac_get( int unit, bcm_field_entry_t entry, bcm_mac_t* data,
                                          bcm_mac_t* mask ) {
   return readQualBytes( SdkOp::bcm_field_qualify_DstMac_get, unit, entry, QualId::DstMac, data,
                         mask );
}

int SimSdk::bcm_field_qualify_EtherType_get( int unit, bcm_field_entry_t entry, U16* data,
                                             U16* mask ) {
   return readQual( SdkOp::bcm_field_qualify_EtherType_get, unit, entry, QualId::EtherType,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_IpProtocol_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_IpProtocol_get, unit, entry, QualId::IpProtocol,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_IpProtocolClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                   U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_IpProtocolClass_get, unit, entry,
                    QualId::IpProtocolClass, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_ExtensionHeaderType_get( int unit, bcm_field_entry_t entry, U8* data,
                                                       U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_ExtensionHeaderType_get, unit, entry,
                    QualId::ExtensionHeaderType, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_L4SrcPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                             U16* mask ) {
   return readQual( SdkOp::bcm_field_qualify_L4SrcPort_get, unit, entry, QualId::L4SrcPort,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_L4DstPort_get( int unit, bcm_field_entry_t entry, U16* data,
                                             U16* mask ) {
   return readQual( SdkOp::bcm_field_qualify_L4DstPort_get, unit, entry, QualId::L4DstPort,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_L4SrcPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                  U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_L4SrcPortClass_get, unit, entry,
                    QualId::L4SrcPortClass, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_L4DstPortClass_get( int unit, bcm_field_entry_t entry, U32* data,
                                                  U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_L4DstPortClass_get, unit, entry,
                    QualId::L4DstPortClass, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_DSCP_get( int unit, bcm_field_entry_t entry, U8* data, U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_DSCP_get, unit, entry, QualId::Dscp, Absent::notFound,
                    data, mask );
}

int SimSdk::bcm_field_qualify_Ip6TrafficClass_get( int unit, bcm_field_entry_t entry, U8* data,
                                                   U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_Ip6TrafficClass_get, unit, entry,
                    QualId::Ip6TrafficClass, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_Ip6HopLimit_get( int unit, bcm_field_entry_t entry, U8* data,
                                               U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_Ip6HopLimit_get, unit, entry, QualId::Ip6HopLimit,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_TcpControl_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_TcpControl_get, unit, entry, QualId::TcpControl,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_OuterVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                               U16* mask ) {
   return readQual( SdkOp::bcm_field_qualify_OuterVlanId_get, unit, entry, QualId::OuterVlanId,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_ForwardingVlanId_get( int unit, bcm_field_entry_t entry, U16* data,
                                                    U16* mask ) {
   return readQual( SdkOp::bcm_field_qualify_ForwardingVlanId_get, unit, entry,
                    QualId::ForwardingVlanId, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_EgressClassL3Interface_get( int unit, bcm_field_entry_t entry,
                                                          U32* data, U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_EgressClassL3Interface_get, unit, entry,
                    QualId::EgressClassL3Interface, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_HiGig_get( int unit, bcm_field_entry_t entry, U8* data, U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_HiGig_get, unit, entry, QualId::HiGig,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_L3Routable_get( int unit, bcm_field_entry_t entry, U8* data,
                                              U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_L3Routable_get, unit, entry, QualId::L3Routable,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_MyStationHit_get( int unit, bcm_field_entry_t entry, U8* data,
                                                U8* mask ) {
   return readQual( SdkOp::bcm_field_qualify_MyStationHit_get, unit, entry, QualId::MyStationHit,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_InterfaceClassPort_get( int unit, bcm_field_entry_t entry, U32* data,
                                                      U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_InterfaceClassPort_get, unit, entry,
                    QualId::InterfaceClassPort, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_InterfaceClassL3_get( int unit, bcm_field_entry_t entry, U32* data,
                                                    U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_InterfaceClassL3_get, unit, entry,
                    QualId::InterfaceClassL3, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_DstClassField_get( int unit, bcm_field_entry_t entry, U32* data,
                                                 U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_DstClassField_get, unit, entry, QualId::DstClassField,
                    Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_DstIpClassMsbNibble_get( int unit, bcm_field_entry_t entry, U32* data,
                                                       U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_DstIpClassMsbNibble_get, unit, entry,
                    QualId::DstIpClassMsbNibble, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_DstIp6ClassMsbNibble_get( int unit, bcm_field_entry_t entry,
                                                        U32* data, U32* mask ) {
   return readQual( SdkOp::bcm_field_qualify_DstIp6ClassMsbNibble_get, unit, entry,
                    QualId::DstIp6ClassMsbNibble, Absent::notFound, data, mask );
}

int SimSdk::bcm_field_qualify_IpFrag_get( int unit, bcm_field_entry_t entry,
                                          bcm_field_IpFrag_t* frag ) {
   ChipModel* chip = nullptr;
   if ( const int rc = begin( SdkOp::bcm_field_qualify_IpFrag_get, unit, chip ) ) {
      return rc;
   }
   if ( !frag ) {
      return kParam;
   }
   const auto f = chip->ipFrag( entry );
   if ( !f ) {
      return kNotFound;
   }
   *frag = sdkIpFrag( *f );
   return kNone;
}

}  // namespace Sim
