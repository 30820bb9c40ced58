// Short builders of rules, lists and packets for the tests of the generic layer: a rule reads
// as the configuration line it stands for.
//   ip4( 20, deny ).proto( tcp ).src( "10.0.0.0/8" ).dport( eq( { 80 } ) )
//     "20 deny tcp 10.0.0.0/8 any eq 80"
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "fennel/Packet.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/FieldTerm.h"
#include "platform/acl/RuleConfig.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/pylon/ValueText.h"

namespace FennelTest {

inline constexpr Acl::Action permit = Acl::Action::permit;
inline constexpr Acl::Action deny = Acl::Action::deny;
inline constexpr U8 icmp = 1;
inline constexpr U8 tcp = 6;
inline constexpr U8 udp = 17;
inline constexpr U8 icmp6 = 58;

inline Acl::FieldTerm eq( std::vector<U16> v ) {
   return Acl::FieldTerm::eq( std::move( v ) );
}
inline Acl::FieldTerm neq( std::vector<U16> v ) {
   return Acl::FieldTerm::neq( std::move( v ) );
}
inline Acl::FieldTerm gt( U16 v ) {
   return Acl::FieldTerm::gt( v );
}
inline Acl::FieldTerm lt( U16 v ) {
   return Acl::FieldTerm::lt( v );
}
inline Acl::FieldTerm range( U16 low, U16 high ) {
   return Acl::FieldTerm::range( low, high );
}

// "any", "10.1.2.3" (a host) or "10.1.0.0/16".
inline Pylon::IpAddrWithFullMask ip4Term( std::string_view text ) {
   if ( text == "any" ) {
      return {};
   }
   const std::string t( text );
   return Pylon::IpAddrWithFullMask( Pylon::strepToValue<Pylon::IpAddrWithMask>(
       t.find( '/' ) == std::string::npos ? t + "/32" : t ) );
}
inline Pylon::Ip6AddrWithFullMask ip6Term( std::string_view text ) {
   if ( text == "any" ) {
      return {};
   }
   const std::string t( text );
   return Pylon::Ip6AddrWithFullMask( Pylon::strepToValue<Pylon::Ip6AddrWithMask>(
       t.find( '/' ) == std::string::npos ? t + "/128" : t ) );
}
inline Pylon::IpAddr ip4Addr( std::string_view text ) {
   return Pylon::strepToValue<Pylon::IpAddr>( text );
}
inline Pylon::Ip6Addr ip6Addr( std::string_view text ) {
   return Pylon::strepToValue<Pylon::Ip6Addr>( text );
}
inline Pylon::EthAddr mac( std::string_view text ) {
   return Pylon::strepToValue<Pylon::EthAddr>( text );
}

// The filter terms both IP families share.
template <typename Self, typename Config>
class IpRuleBuilder {
 public:
   IpRuleBuilder( U32 seq, Acl::Action action ) {
      rule_.seqNoIs( seq );
      rule_.actionIs( action );
   }
   Self& proto( U8 p ) {
      return edit( [&]( auto& f ) { f.protoIs( p ); } );
   }
   Self& sport( const Acl::FieldTerm& t ) {
      return edit( [&]( auto& f ) { f.srcPortIs( t ); } );
   }
   Self& dport( const Acl::FieldTerm& t ) {
      return edit( [&]( auto& f ) { f.dstPortIs( t ); } );
   }
   Self& length( const Acl::FieldTerm& t ) {
      return edit( [&]( auto& f ) { f.ipLengthIs( t ); } );
   }
   Self& flags( U8 bits ) {
      return edit( [&]( auto& f ) { f.tcpFlagsIs( bits ); } );
   }
   Self& icmpType( U16 type, U16 code = Acl::icmpAny ) {
      return edit( [&]( auto& f ) {
         f.icmpTypeIs( type );
         f.icmpCodeIs( code );
      } );
   }
   Self& ttl( U8 value, Acl::TtlOp op = Acl::TtlOp::eq ) {
      return edit( [&]( auto& f ) { f.ttlIs( Acl::TtlSpec( op, value ) ); } );
   }
   Self& ecn( U8 value, U8 mask = 3 ) {
      return edit( [&]( auto& f ) { f.ecnIs( value, mask ); } );
   }
   Self& vlan( U16 value, U16 mask ) {
      return edit( [&]( auto& f ) { f.vlanIs( value, mask ); } );
   }
   Self& payload( Acl::PayloadStart start, std::vector<Acl::PayloadValue> words ) {
      return edit(
          [&]( auto& f ) { f.payloadIs( Acl::PayloadSpec( start, std::move( words ) ) ); } );
   }
   Self& log() {
      rule_.logIs( true );
      return self();
   }
   Self& id( U64 value ) {
      rule_.uniqueIdIs( Acl::UniqueId( value ) );
      return self();
   }
   operator Acl::RuleConfig() const { return Acl::RuleConfig( rule_ ); }
   Acl::RuleConfig rule() const { return Acl::RuleConfig( rule_ ); }

 protected:
   template <typename Edit>
   Self& edit( Edit change ) {
      auto f = rule_.filter();
      change( f );
      rule_.filterIs( f );
      return self();
   }
   Self& self() { return static_cast<Self&>( *this ); }
   Config rule_;
};

class Ip4Rule : public IpRuleBuilder<Ip4Rule, Acl::IpRuleConfig> {
 public:
   using IpRuleBuilder::IpRuleBuilder;
   Ip4Rule& src( std::string_view t ) {
      return edit( [&]( auto& f ) { f.sourceIs( ip4Term( t ) ); } );
   }
   Ip4Rule& dst( std::string_view t ) {
      return edit( [&]( auto& f ) { f.destinationIs( ip4Term( t ) ); } );
   }
   Ip4Rule& dscp( U8 v ) {
      return edit( [&]( auto& f ) { f.dscpIs( v ); } );
   }
   Ip4Rule& fragments() {
      return edit( [&]( auto& f ) { f.fragmentsIs( 1 ); } );
   }
};

class Ip6Rule : public IpRuleBuilder<Ip6Rule, Acl::Ip6RuleConfig> {
 public:
   using IpRuleBuilder::IpRuleBuilder;
   Ip6Rule& src( std::string_view t ) {
      return edit( [&]( auto& f ) { f.sourceIs( ip6Term( t ) ); } );
   }
   Ip6Rule& dst( std::string_view t ) {
      return edit( [&]( auto& f ) { f.destinationIs( ip6Term( t ) ); } );
   }
   Ip6Rule& srcMasked( std::string_view addr, std::string_view mask ) {
      return edit( [&]( auto& f ) {
         f.sourceIs( Pylon::Ip6AddrWithFullMask( ip6Addr( addr ), ip6Addr( mask ) ) );
      } );
   }
   Ip6Rule& trafficClass( U8 value, U8 mask ) {
      return edit( [&]( auto& f ) { f.trafficClassIs( value, mask ); } );
   }
};

inline Ip4Rule ip4( U32 seq, Acl::Action action ) {
   return Ip4Rule( seq, action );
}
inline Ip6Rule ip6( U32 seq, Acl::Action action ) {
   return Ip6Rule( seq, action );
}

class MacRule {
 public:
   MacRule( U32 seq, Acl::Action action ) {
      rule_.seqNoIs( seq );
      rule_.actionIs( action );
   }
   MacRule& src( std::string_view addr, std::string_view mask = "ff:ff:ff:ff:ff:ff" ) {
      auto f = rule_.filter();
      f.sourceIs( mac( addr ), mac( mask ) );
      rule_.filterIs( f );
      return *this;
   }
   MacRule& dst( std::string_view addr, std::string_view mask = "ff:ff:ff:ff:ff:ff" ) {
      auto f = rule_.filter();
      f.destinationIs( mac( addr ), mac( mask ) );
      rule_.filterIs( f );
      return *this;
   }
   MacRule& etherType( S32 type ) {
      auto f = rule_.filter();
      f.protoIs( type );
      rule_.filterIs( f );
      return *this;
   }
   MacRule& payload( Acl::PayloadStart start, std::vector<Acl::PayloadValue> words ) {
      auto f = rule_.filter();
      f.payloadIs( Acl::PayloadSpec( start, std::move( words ) ) );
      rule_.filterIs( f );
      return *this;
   }
   MacRule& log() {
      rule_.logIs( true );
      return *this;
   }
   operator Acl::RuleConfig() const { return Acl::RuleConfig( rule_ ); }

 private:
   Acl::MacRuleConfig rule_;
};

inline MacRule macRule( U32 seq, Acl::Action action ) {
   return MacRule( seq, action );
}

inline Acl::RuleConfig remark( Acl::AclType type, U32 seq, std::string text ) {
   Acl::RuleConfig rule;
   if ( type == Acl::AclType::mac ) {
      rule = Acl::RuleConfig( Acl::MacRuleConfig() );
   } else if ( type == Acl::AclType::ipv6 ) {
      rule = Acl::RuleConfig( Acl::Ip6RuleConfig() );
   }
   rule.seqNoIs( seq );
   rule.remarkIs( std::move( text ) );
   return rule;
}

// The list NAME of `type` in `config`, with these rules (replacing any it had).
inline Acl::AclConfig::Ptr listIs( const Acl::Config::Ptr& config, Acl::AclType type,
                                   const std::string& name,
                                   std::initializer_list<Acl::RuleConfig> rules ) {
   auto acl = config->aclConfigIs( type, Vesper::Name( name ) );
   acl->ruleDelAll();
   for ( const Acl::RuleConfig& r : rules ) {
      acl->ruleIs( r.seqNo(), r );
   }
   return acl;
}

// ---- Packets, arriving on Ethernet1 unless moved.

inline Fennel::Packet ethPacket( std::string_view src, std::string_view dst, U16 type ) {
   Fennel::Packet p;
   p.in = Pylon::IntfId::ethernet( 1 );
   p.eth.src = mac( src );
   p.eth.dst = mac( dst );
   p.eth.type = type;
   return p;
}

inline Fennel::Packet ipv4Packet( std::string_view src, std::string_view dst, U8 proto,
                                  Fennel::Frag frag = Fennel::Frag::none ) {
   Fennel::Packet p = ethPacket( "00:00:00:00:00:01", "00:00:00:00:00:02", 0x0800 );
   Fennel::PacketIpv4 ip;
   ip.src = ip4Addr( src );
   ip.dst = ip4Addr( dst );
   ip.proto = proto;
   ip.frag = frag;
   p.ipv4 = ip;
   return p;
}

inline Fennel::Packet ipv6Packet( std::string_view src, std::string_view dst, U8 next,
                                  Fennel::Frag frag = Fennel::Frag::none ) {
   Fennel::Packet p = ethPacket( "00:00:00:00:00:01", "00:00:00:00:00:02", 0x86DD );
   Fennel::PacketIpv6 ip;
   ip.src = ip6Addr( src );
   ip.dst = ip6Addr( dst );
   ip.next = next;
   ip.frag = frag;
   p.ipv6 = ip;
   return p;
}

// A TCP or UDP packet of either family (by the form of `src`); a later fragment carries no
// layer 4 header.
inline Fennel::Packet l4Packet( U8 proto, std::string_view src, std::string_view dst, U16 sport,
                                U16 dport, Fennel::Frag frag = Fennel::Frag::none, U8 flags = 0 ) {
   const bool v6 = src.find( ':' ) != std::string_view::npos;
   Fennel::Packet p =
       v6 ? ipv6Packet( src, dst, proto, frag ) : ipv4Packet( src, dst, proto, frag );
   if ( frag != Fennel::Frag::later ) {
      Fennel::PacketL4Ports ports{ sport, dport, flags };
      if ( proto == tcp ) {
         p.tcp = ports;
      } else {
         p.udp = ports;
      }
   }
   return p;
}

inline Fennel::Packet icmpPacket( std::string_view src, std::string_view dst, U8 type, U8 code,
                                  Fennel::Frag frag = Fennel::Frag::none ) {
   const bool v6 = src.find( ':' ) != std::string_view::npos;
   Fennel::Packet p = v6 ? ipv6Packet( src, dst, icmp6, frag ) : ipv4Packet( src, dst, icmp, frag );
   if ( frag != Fennel::Frag::later ) {
      p.icmp = Fennel::PacketIcmp{ type, code };
   }
   return p;
}

}  // namespace FennelTest
