#include "fennel/EvaluatorRules.h"

#include <algorithm>
#include <optional>

#include "fennel/PacketWire.h"

namespace Fennel::EvaluatorRules {

namespace {

constexpr U8 protoIcmp = 1;
constexpr U8 protoIcmp6 = 58;

template <typename Bytes>
bool maskedEqual( const Bytes& value, const Bytes& pattern, const Bytes& mask ) {
   for ( std::size_t i = 0; i < value.size(); ++i ) {
      if ( ( value[i] & mask[i] ) != ( pattern[i] & mask[i] ) ) {
         return false;
      }
   }
   return true;
}

bool ipv4Matches( Pylon::IpAddr addr, const Pylon::IpAddrWithFullMask& term ) {
   return ( ( addr.value() ^ term.address().value() ) & term.mask() ) == 0;
}

bool ipv6Matches( const Pylon::Ip6Addr& addr, const Pylon::Ip6AddrWithFullMask& term ) {
   return maskedEqual( addr.bytes(), term.address().bytes(), term.mask().bytes() );
}

bool ttlMatches( const Acl::TtlSpec& term, U8 ttl ) {
   switch ( term.op() ) {
      case Acl::TtlOp::any:
         return true;
      case Acl::TtlOp::eq:
         return ttl == term.ttl();
      case Acl::TtlOp::gt:
         return ttl > term.ttl();
      case Acl::TtlOp::lt:
         return ttl < term.ttl();
      case Acl::TtlOp::neq:
         return ttl != term.ttl();
   }
   return false;
}

bool vlanMatches( U16 vlan, U16 mask, const Packet& p ) {
   return ( p.vlan.value_or( 0 ) & mask ) == ( vlan & mask );
}

// Some value of the field meets the term (gt 65535 and lt 0 admit none; neither does a neq
// list that names every value).
bool termAdmitsSome( const Acl::FieldTerm& term ) {
   switch ( term.op() ) {
      case Acl::FieldOp::gt:
         return term.values()[0] != 0xFFFF;
      case Acl::FieldOp::lt:
         return term.values()[0] != 0;
      case Acl::FieldOp::neq: {
         std::vector<U16> v = term.values();
         std::sort( v.begin(), v.end() );
         return std::unique( v.begin(), v.end() ) - v.begin() < 0x10000;
      }
      default:
         return true;
   }
}

// The start of the header a payload word counts from: the ACL's own header (Ethernet for MAC,
// the IP header for IP) or the first byte after it.
std::optional<std::size_t> payloadBase( const Acl::PayloadSpec& spec, const WireImage& image,
                                        bool macAcl ) {
   if ( spec.start() == Acl::PayloadStart::headerStart ) {
      return macAcl ? 0 : image.l3;
   }
   return macAcl ? std::optional<std::size_t>( image.l3 ) : image.l4;
}

bool payloadMatches( const Acl::PayloadSpec& spec, const Packet& p, bool macAcl ) {
   if ( spec.values().empty() ) {
      return true;
   }
   const WireImage image = wireImage( p );
   const auto base = payloadBase( spec, image, macAcl );
   for ( const Acl::PayloadValue& v : spec.values() ) {
      if ( v.mask == 0 ) {
         continue;
      }
      if ( !base ) {
         return false;
      }
      const std::size_t at = *base + std::size_t{ v.offset } * 4;
      U32 word = 0;
      for ( std::size_t i = 0; i < 4; ++i ) {
         word = ( word << 8 ) | image.byte( at + i );
      }
      if ( ( word & v.mask ) != ( v.pattern & v.mask ) ) {
         return false;
      }
   }
   return true;
}

bool layer4TermsPresent( const Acl::IpFilterBase& f ) {
   const bool icmpTerm =
       ( f.proto() == protoIcmp || f.proto() == protoIcmp6 ) && f.icmpType() != Acl::icmpAny;
   return !f.srcPort().isAny() || !f.dstPort().isAny() || f.tcpFlags() != 0 || icmpTerm;
}

const PacketL4Ports* ports( const Packet& p ) {
   if ( p.tcp ) {
      return &*p.tcp;
   }
   return p.udp ? &*p.udp : nullptr;
}

// The layer 4 terms, on a packet that carries its layer 4 header.
bool layer4Matches( const Acl::IpFilterBase& f, const Packet& p ) {
   if ( !f.srcPort().isAny() || !f.dstPort().isAny() ) {
      const PacketL4Ports* l4 = ports( p );
      if ( !l4 || !f.srcPort().matches( l4->sport ) || !f.dstPort().matches( l4->dport ) ) {
         return false;
      }
   }
   if ( f.tcpFlags() != 0 && ( !p.tcp || ( p.tcp->flags & f.tcpFlags() ) != f.tcpFlags() ) ) {
      return false;
   }
   if ( ( f.proto() == protoIcmp || f.proto() == protoIcmp6 ) && f.icmpType() != Acl::icmpAny ) {
      if ( !p.icmp || p.icmp->type != f.icmpType() ) {
         return false;
      }
      if ( f.icmpCode() != Acl::icmpAny && p.icmp->code != f.icmpCode() ) {
         return false;
      }
   }
   return true;
}

bool layer4TermsSatisfiable( const Acl::IpFilterBase& f ) {
   return termAdmitsSome( f.srcPort() ) && termAdmitsSome( f.dstPort() );
}

// Terms shared by both families that are neither addresses nor layer 4: ECN, TTL or hop limit,
// VLAN, IP length, VNI and TNI (which no packet here carries), and payload.
bool commonTermsMatch( const Acl::IpFilterBase& f, const Packet& p, U8 ecn, U8 ttl ) {
   return ( ecn & f.ecnMask() ) == ( f.ecn() & f.ecnMask() ) && ttlMatches( f.ttl(), ttl ) &&
          vlanMatches( f.vlan(), f.vlanMask(), p ) && f.ipLength().matches( ipLength( p ) ) &&
          !f.matchVni() && !f.matchTni() && payloadMatches( f.payload(), p, false );
}

// The terms that name an IPv4 flow: addresses, protocol and DSCP.
bool ipv4FlowMatches( const Acl::IpFilter& f, const PacketIpv4& ip ) {
   return ipv4Matches( ip.src, f.source() ) && ipv4Matches( ip.dst, f.destination() ) &&
          ( f.proto() == 0 || f.proto() == ip.proto ) && ( !f.matchDscp() || f.dscp() == ip.dscp );
}

bool headFragmentMatches( const Acl::IpFilterBase& f, const Packet& p ) {
   return hasLayer4Header( p ) && layer4Matches( f, p );
}

}  // namespace

bool hasLayer4Header( const Packet& p ) {
   return p.isIp() && p.frag() != Frag::later && ( p.tcp || p.udp || p.icmp );
}

bool macRuleMatches( const Acl::MacFilter& f, const Packet& p ) {
   return maskedEqual( p.eth.src.bytes(), f.source().bytes(), f.sourceMask().bytes() ) &&
          maskedEqual( p.eth.dst.bytes(), f.destination().bytes(), f.destinationMask().bytes() ) &&
          ( f.proto() == Acl::MacFilter::protoAny || f.proto() == p.eth.type ) &&
          vlanMatches( f.vlan(), f.vlanMask(), p ) && ( f.innerVlan() & f.innerVlanMask() ) == 0 &&
          !f.matchMplsLabel() && !f.matchMplsInnerLabel() && payloadMatches( f.payload(), p, true );
}

bool ipv4RuleMatches( const Acl::IpRuleConfig& rule, const Packet& p ) {
   const Acl::IpFilter& f = rule.filter();
   const PacketIpv4& ip = *p.ipv4;
   const bool whole = ipv4FlowMatches( f, ip ) && commonTermsMatch( f, p, ip.ecn, ip.ttl );
   if ( layer4TermsPresent( f ) ) {
      if ( whole && headFragmentMatches( f, p ) ) {
         return true;
      }
      // The later fragments of a flow that the rule permits.
      return rule.action() == Acl::Action::permit && ip.frag == Frag::later &&
             layer4TermsSatisfiable( f ) && ipv4FlowMatches( f, ip );
   }
   if ( f.fragments() == 1 ) {
      return whole && ip.frag == Frag::later;
   }
   return whole;
}

bool ipv6RuleMatches( const Acl::Ip6RuleConfig& rule, const Packet& p ) {
   const Acl::Ip6Filter& f = rule.filter();
   const PacketIpv6& ip = *p.ipv6;
   const U8 tc = static_cast<U8>( ( ip.dscp << 2 ) | ( ip.ecn & 3 ) );
   const bool whole =
       ipv6Matches( ip.src, f.sourceFullMask() ) &&
       ipv6Matches( ip.dst, f.destinationFullMask() ) &&
       ( f.proto() == 0 || f.proto() == ip.next ) &&
       ( tc & f.trafficClassMask() ) == ( f.trafficClass() & f.trafficClassMask() ) &&
       commonTermsMatch( f, p, ip.ecn, ip.hlim );
   if ( layer4TermsPresent( f ) ) {
      return whole && headFragmentMatches( f, p );
   }
   return whole;
}

}  // namespace Fennel::EvaluatorRules
