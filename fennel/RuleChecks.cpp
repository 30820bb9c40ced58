#include "fennel/RuleChecks.h"

#include <algorithm>

namespace Fennel {

namespace {

using Acl::AclDirection;

constexpr U8 protoIcmp = 1;
constexpr U8 protoTcp = 6;
constexpr U8 protoUdp = 17;
constexpr U8 protoIcmp6 = 58;
// The back-end names a payload byte by an 8-bit offset from its header.
constexpr U32 lastPayloadByte = 255;

std::optional<std::string> payloadRefusal( const Acl::PayloadSpec& payload, bool ipv6,
                                           AclDirection direction ) {
   if ( payload.values().empty() ) {
      return std::nullopt;
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

std::optional<std::string> macRefusal( const Acl::MacFilter& f, AclDirection direction ) {
   if ( f.vlanMask() != 0 || f.innerVlanMask() != 0 ) {
      return "VLAN terms of MAC rules are not served";
   }
   if ( f.matchMplsLabel() || f.matchMplsInnerLabel() ) {
      return "MPLS label terms are not served";
   }
   return payloadRefusal( f.payload(), false, direction );
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
                                      U8 supportedTcpFlags ) {
   if ( f.vlanMask() != 0 ) {
      return "VLAN terms of IP rules are not served";
   }
   if ( f.matchVni() || f.matchTni() ) {
      return "VNI and TNI terms are not served";
   }
   if ( f.ttl().op() != Acl::TtlOp::any && f.ttl().op() != Acl::TtlOp::eq ) {
      return "only ttl eq is served";
   }
   if ( !f.ipLength().isAny() && direction == AclDirection::out ) {
      return "IP length terms need range checkers, which egress lookups lack";
   }
   if ( auto why = layer4Refusal( f, supportedTcpFlags ) ) {
      return why;
   }
   return payloadRefusal( f.payload(), ipv6, direction );
}

}  // namespace

std::optional<std::string> ruleRefusal( const Acl::RuleConfig& rule, AclDirection direction,
                                        U8 supportedTcpFlags ) {
   if ( rule.isRemark() ) {
      return std::nullopt;
   }
   switch ( rule.aclType() ) {
      case Acl::AclType::mac:
         return macRefusal( rule.macFilter(), direction );
      case Acl::AclType::ip:
         return ipRefusal( rule.ipFilter(), false, direction, supportedTcpFlags );
      case Acl::AclType::ipv6:
         return ipRefusal( rule.ip6Filter(), true, direction, supportedTcpFlags );
   }
   return std::nullopt;
}

}  // namespace Fennel
