#include "fennel/RuleChecks.h"

#include <algorithm>
#include <bit>

namespace Fennel {

namespace {

using Acl::AclDirection;
using Acl::AclType;

constexpr U8 protoIcmp = 1;
constexpr U8 protoTcp = 6;
constexpr U8 protoUdp = 17;
constexpr U8 protoIcmp6 = 58;
// The back-end names a payload byte by an 8-bit offset from its header.
constexpr U32 lastPayloadByte = 255;

bool isPrefix( U32 mask ) {
   return ( ~mask & ( ~mask + 1 ) ) == 0;  // the zeros, if any, are all at the bottom
}

bool isPrefix( const Pylon::Ip6Addr& mask ) {
   bool zeros = false;
   for ( std::size_t i = 0; i < Pylon::Ip6Addr::size; ++i ) {
      const U8 b = mask.byte( i );
      if ( ( zeros && b != 0 ) || ( b != 0xFF && b != U8( 0xFF << ( 8 - std::popcount( b ) ) ) ) ) {
         return false;
      }
      zeros = zeros || b != 0xFF;
   }
   return true;
}

std::optional<std::string> payloadRefusal( const Acl::PayloadSpec& payload, bool ipv6,
                                           AclDirection direction, const BackEndFeatures& can ) {
   if ( payload.values().empty() ) {
      return std::nullopt;
   }
   if ( !can.payload ) {
      return "payload terms are not served by this switch's chips";
   }
   if ( direction == AclDirection::out ) {
      return "payload terms are served on ingress only";
   }
   if ( ipv6 ) {
      return "payload terms are not served in IPv6 ACLs";
   }
   const bool far = std::ranges::any_of( payload.values(), []( const Acl::PayloadValue& v ) {
      return v.mask != 0 && v.offset * 4 + 3 > lastPayloadByte;
   } );
   if ( far ) {
      return "payload words beyond byte 255 of their header are not served";
   }
   return std::nullopt;
}

std::optional<std::string> macRefusal( const Acl::MacFilter& f, AclDirection direction,
                                       const BackEndFeatures& can ) {
   if ( f.vlanMask() != 0 || f.innerVlanMask() != 0 ) {
      return "VLAN terms of MAC rules are not served";
   }
   if ( f.matchMplsLabel() || f.matchMplsInnerLabel() ) {
      return "MPLS label terms are not served";
   }
   return payloadRefusal( f.payload(), false, direction, can );
}

std::optional<std::string> layer4Refusal( const Acl::IpFilterBase& f, U8 supportedTcpFlags ) {
   const bool icmp = f.proto() == protoIcmp || f.proto() == protoIcmp6;
   if ( f.icmpCode() != Acl::icmpAny && f.icmpType() == Acl::icmpAny ) {
      return "an ICMP code needs an ICMP type";
   }
   if ( f.icmpType() != Acl::icmpAny && !icmp ) {
      return "ICMP type and code need protocol icmp or icmpv6";
   }
   if ( ( !f.srcPort().isAny() || !f.dstPort().isAny() ) && f.proto() != protoTcp &&
        f.proto() != protoUdp ) {
      return "port terms need protocol tcp or udp";
   }
   if ( f.tcpFlags() != 0 && f.proto() != protoTcp ) {
      return "TCP flags need protocol tcp";
   }
   if ( ( f.tcpFlags() & ~supportedTcpFlags ) != 0 ) {
      return "TCP flags beyond those the hardware matches";
   }
   return std::nullopt;
}

std::optional<std::string> ipRefusal( const Acl::IpFilterBase& f, bool ipv6, AclDirection direction,
                                      const BackEndFeatures& can ) {
   if ( f.vlanMask() != 0 ) {
      return "VLAN terms of IP rules are not served";
   }
   if ( f.matchVni() || f.matchTni() ) {
      return "VNI and TNI terms are not served";
   }
   if ( f.ttl().op() != Acl::TtlOp::any && f.ttl().op() != Acl::TtlOp::eq ) {
      return "only ttl eq is served";
   }
   if ( f.ecnMask() != 0 && !can.ecn ) {
      return "ECN terms are not served";
   }
   if ( !f.ipLength().isAny() && ( direction == AclDirection::out || !can.ipLength ) ) {
      return "IP length terms need range checkers, which this lookup lacks";
   }
   if ( auto why = layer4Refusal( f, can.tcpFlags ) ) {
      return why;
   }
   return payloadRefusal( f.payload(), ipv6, direction, can );
}

std::optional<std::string> familyRefusal( const Acl::RuleConfig& rule,
                                          const BackEndFeatures& can ) {
   if ( rule.aclType() == AclType::ip ) {
      const Acl::IpFilter& f = rule.ipFilter();
      if ( f.matchDscp() && !can.dscp ) {
         return "DSCP terms are not served";
      }
      if ( !can.nonPrefixMasks &&
           ( !isPrefix( f.source().mask() ) || !isPrefix( f.destination().mask() ) ) ) {
         return "address masks that are no prefix are not served";
      }
   } else if ( rule.aclType() == AclType::ipv6 ) {
      const Acl::Ip6Filter& f = rule.ip6Filter();
      if ( f.trafficClassMask() != 0 && !can.trafficClass ) {
         return "traffic class terms are not served";
      }
      if ( !can.nonPrefixMasks && ( !isPrefix( f.sourceFullMask().mask() ) ||
                                    !isPrefix( f.destinationFullMask().mask() ) ) ) {
         return "address masks that are no prefix are not served";
      }
   }
   return std::nullopt;
}

}  // namespace

BackEndFeatures BackEndFeatures::of( const FennelHelper::AclHelper& helper, const AclKey& key ) {
   BackEndFeatures can;
   can.tcpFlags = helper.supportedTcpFlags();
   can.payload = helper.aclPayloadSupported();
   can.dscp = helper.aclDscpSupported();
   can.trafficClass = helper.aclTcSupported();
   can.ecn = helper.aclEcnSupported();
   can.ipLength = helper.aclIpLenMatchSupported();
   can.logging = key.vlanId().value() != 0 ? helper.routerAclLoggingSupported()
                                           : helper.aclLoggingSupported();
   can.nonPrefixMasks = helper.nonContiguousIpMaskSupported();
   return can;
}

std::optional<std::string> aclKindRefusal( const FennelHelper::AclHelper& helper,
                                           const AclKey& key ) {
   const bool egress = key.direction() == AclDirection::out;
   const bool router = key.vlanId().value() != 0;
   bool served = true;
   switch ( key.aclType() ) {
      case AclType::mac:
         served = helper.macAclSupported() && ( !egress || helper.macEgressAclSupported() );
         break;
      case AclType::ip:
         served = egress ? helper.ipEgressAclSupported() : helper.ipIngressAclSupported();
         break;
      case AclType::ipv6:
         served = helper.ip6AclSupported() && ( !egress || helper.ip6EgressAclSupported() );
         break;
   }
   if ( router ) {
      served =
          served && helper.routerAclSupported() &&
          ( !egress || ( key.aclType() == AclType::ipv6 ? helper.ip6RouterEgressAclSupported()
                                                        : helper.routerEgressAclSupported() ) );
   }
   if ( served ) {
      return std::nullopt;
   }
   return std::string( Vesper::stringValue( key.aclType() ) ) + ( router ? " router" : "" ) +
          " ACLs " + ( egress ? "out" : "in" ) + " are not served by the back-end";
}

std::optional<std::string> ruleRefusal( const Acl::RuleConfig& rule, AclDirection direction,
                                        const BackEndFeatures& can ) {
   if ( rule.isRemark() ) {
      return std::nullopt;
   }
   if ( rule.log() && !can.logging ) {
      return "logging is not served";
   }
   switch ( rule.aclType() ) {
      case AclType::mac:
         return macRefusal( rule.macFilter(), direction, can );
      case AclType::ip:
         if ( auto why = familyRefusal( rule, can ) ) {
            return why;
         }
         return ipRefusal( rule.ipFilter(), false, direction, can );
      case AclType::ipv6:
         if ( auto why = familyRefusal( rule, can ) ) {
            return why;
         }
         return ipRefusal( rule.ip6Filter(), true, direction, can );
   }
   return std::nullopt;
}

}  // namespace Fennel
