#include "tests/fennel/switch/RandomAcls.h"

namespace FennelTest {

namespace {

constexpr U16 etherTypeIpv4 = 0x0800;
constexpr U16 etherTypeIpv6 = 0x86DD;

}  // namespace

RandomAcls::RandomAcls( U32 seed ) : rng_( seed ) {
   for ( int i = 0; i < 48; ++i ) {
      addrs_.push_back( randomAddr() );
   }
   addrs_.push_back( Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff ) );
   etherTypes_ = { etherTypeIpv4, 0x0806, etherTypeIpv6, 0x88CC, 0x8847, 0 };
}

Pylon::EthAddr RandomAcls::randomAddr() {
   Pylon::EthAddr::Bytes b{};
   for ( U8& byte : b ) {
      byte = static_cast<U8>( below( 256 ) );
   }
   b[0] &= 0xFE;  // unicast
   return Pylon::EthAddr( b );
}

Pylon::EthAddr RandomAcls::randomMask() {
   switch ( below( 4 ) ) {
      case 0:
         return Pylon::EthAddr( 0xff, 0xff, 0xff, 0, 0, 0 );
      case 1:
         return Pylon::EthAddr( 0, 0, 0, 0xff, 0xff, 0xff );
      case 2:
         return Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xf0 );
      default: {
         Pylon::EthAddr::Bytes b{};
         for ( U8& byte : b ) {
            byte = static_cast<U8>( below( 256 ) );
         }
         return Pylon::EthAddr( b );
      }
   }
}

Pylon::EthAddr RandomAcls::aimed( const Pylon::EthAddr& addr, const Pylon::EthAddr& mask ) {
   const Pylon::EthAddr other = below( 2 ) ? pick( addrs_ ) : randomAddr();
   Pylon::EthAddr::Bytes b{};
   for ( std::size_t i = 0; i < b.size(); ++i ) {
      b[i] = static_cast<U8>( ( addr.byte( i ) & mask.byte( i ) ) |
                              ( other.byte( i ) & ~mask.byte( i ) ) );
   }
   return Pylon::EthAddr( b );
}

Acl::AclConfig::Ptr RandomAcls::macListIs( const Acl::Config::Ptr& config, const std::string& name,
                                           U32 rules ) {
   auto acl = config->aclConfigIs( Acl::AclType::mac, Vesper::Name( name ) );
   acl->ruleDelAll();
   const Pylon::EthAddr all( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff );
   for ( U32 i = 0; i < rules; ++i ) {
      Acl::MacFilter f;
      // Host half the time, masked a third, wild a sixth: a rule wild in every term comes
      // rarely enough that most of the list stays within reach of the packets.
      auto term = [&]( auto set ) {
         const U32 roll = below( 6 );
         if ( roll < 3 ) {
            set( pick( addrs_ ), all );
         } else if ( roll < 5 ) {
            const Pylon::EthAddr addr = pick( addrs_ );
            set( addr, randomMask() );
         }
      };
      term( [&]( const auto& a, const auto& m ) { f.sourceIs( a, m ); } );
      term( [&]( const auto& a, const auto& m ) { f.destinationIs( a, m ); } );
      if ( below( 3 ) ) {
         f.protoIs( pick( etherTypes_ ) );
      }
      Acl::MacRuleConfig rule( f );
      rule.actionIs( below( 2 ) ? Acl::Action::permit : Acl::Action::deny );
      rule.logIs( below( 5 ) == 0 );
      rule.uniqueIdIs( Acl::UniqueId::next() );
      acl->ruleIs( 10 * ( i + 1 ), Acl::RuleConfig( rule ) );
   }
   return acl;
}

Fennel::Packet RandomAcls::packetOfType( const Pylon::EthAddr& src, const Pylon::EthAddr& dst,
                                         U16 type ) {
   Fennel::Packet p;
   p.eth.src = src;
   p.eth.dst = dst;
   p.eth.type = type;
   // The EtherTypes of IP carry their header, so that the chip parses what the rule names.
   if ( type == etherTypeIpv4 ) {
      Fennel::PacketIpv4 ip;
      ip.src = Pylon::IpAddr( rng_() );
      ip.dst = Pylon::IpAddr( rng_() );
      ip.proto = 17;
      p.ipv4 = ip;
      p.udp = Fennel::PacketL4Ports{ static_cast<U16>( rng_() ), 53, 0 };
   } else if ( type == etherTypeIpv6 ) {
      Fennel::PacketIpv6 ip;
      ip.next = 59;  // no next header
      p.ipv6 = ip;
   }
   return p;
}

Fennel::Packet RandomAcls::macPacketFor( const Acl::AclConfig& acl ) {
   if ( acl.ruleCount() == 0 || below( 4 ) == 0 ) {
      const U16 type = below( 4 ) ? pick( etherTypes_ ) : static_cast<U16>( below( 0x10000 ) );
      const Pylon::EthAddr src = pick( addrs_ );
      const Pylon::EthAddr dst = below( 3 ) ? pick( addrs_ ) : randomAddr();
      return packetOfType( src, dst, type );
   }
   auto it = acl.rule().begin();
   std::advance( it, below( static_cast<U32>( acl.ruleCount() ) ) );
   const Acl::MacFilter& f = it->second.macFilter();
   const U16 type =
       f.proto() == Acl::MacFilter::protoAny ? pick( etherTypes_ ) : static_cast<U16>( f.proto() );
   const Pylon::EthAddr src = aimed( f.source(), f.sourceMask() );
   const Pylon::EthAddr dst = aimed( f.destination(), f.destinationMask() );
   return packetOfType( src, dst, type );
}

U16 RandomAcls::near( const Acl::FieldTerm& term ) {
   const std::vector<U16>& v = term.values();
   const auto anyValue = [&]() -> U16 {
      static const std::vector<U16> common = { 0, 1, 22, 53, 80, 443, 1023, 1024, 8080, 65535 };
      return below( 2 ) ? pick( common ) : static_cast<U16>( below( 0x10000 ) );
   };
   if ( term.isAny() || below( 8 ) == 0 ) {
      return anyValue();
   }
   const U16 edge = term.op() == Acl::FieldOp::range ? v[below( 2 )] : pick( v );
   switch ( below( 3 ) ) {
      case 0:
         return static_cast<U16>( edge - 1 );
      case 1:
         return static_cast<U16>( edge + 1 );
      default:
         if ( term.op() == Acl::FieldOp::range && below( 2 ) ) {
            return static_cast<U16>( v[0] + below( U32{ v[1] } - v[0] + 1 ) );
         }
         return edge;
   }
}

U32 RandomAcls::nearIp4( const Pylon::IpAddrWithFullMask& term ) {
   const U32 mask = term.mask();
   U32 a = ( term.address().value() & mask ) | ( static_cast<U32>( rng_() ) & ~mask );
   if ( mask != 0 && below( 5 ) == 0 ) {
      a ^= mask & -mask;  // just outside: the last bit the term compares
   }
   return a;
}

Pylon::Ip6Addr RandomAcls::nearIp6( const Pylon::Ip6AddrWithFullMask& term ) {
   Pylon::Ip6Addr::Bytes b{};
   int lastMasked = -1;
   for ( std::size_t i = 0; i < b.size(); ++i ) {
      const U8 m = term.mask().byte( i );
      b[i] = static_cast<U8>( ( term.address().byte( i ) & m ) | ( below( 256 ) & ~m ) );
      if ( m != 0 ) {
         lastMasked = static_cast<int>( i );
      }
   }
   if ( lastMasked >= 0 && below( 5 ) == 0 ) {
      const U8 m = term.mask().byte( lastMasked );
      b[lastMasked] ^= static_cast<U8>( m & -m );
   }
   return Pylon::Ip6Addr( b );
}

U8 RandomAcls::nearU8( bool term, U8 value, U8 bits ) {
   const U32 span = 1u << bits;
   if ( !term || below( 4 ) == 0 ) {
      return static_cast<U8>( below( span ) );
   }
   return below( 4 ) == 0 ? static_cast<U8>( ( value + 1 ) % span ) : value;
}

void RandomAcls::layer4For( const Acl::IpFilterBase* f, U8 proto, Fennel::Packet& p ) {
   static const Acl::FieldTerm any;
   const Acl::FieldTerm& sport = f ? f->srcPort() : any;
   const Acl::FieldTerm& dport = f ? f->dstPort() : any;
   if ( proto == 6 || proto == 17 ) {
      Fennel::PacketL4Ports ports{ near( sport ), near( dport ), 0 };
      if ( proto == 6 ) {
         const U8 wanted = f ? f->tcpFlags() : 0;
         const U8 kept = below( 4 ) ? wanted : 0;
         ports.flags = static_cast<U8>( kept | below( 64 ) );
         p.tcp = ports;
      } else {
         p.udp = ports;
      }
   } else if ( proto == 1 || proto == 58 ) {
      const bool typed = f && f->icmpType() != Acl::icmpAny;
      const bool coded = f && f->icmpCode() != Acl::icmpAny;
      Fennel::PacketIcmp icmp;
      icmp.type = nearU8( typed, typed ? static_cast<U8>( f->icmpType() ) : 0, 8 );
      icmp.code = nearU8( coded, coded ? static_cast<U8>( f->icmpCode() ) : 0, 3 );
      p.icmp = icmp;
   }
}

Fennel::Packet RandomAcls::ipPacketFor( const Acl::AclConfig& acl ) {
   const bool v6 = acl.type() == Acl::AclType::ipv6;
   const Acl::IpFilterBase* f = nullptr;
   if ( acl.ruleCount() != 0 && below( 5 ) != 0 ) {
      auto it = acl.rule().begin();
      std::advance( it, below( static_cast<U32>( acl.ruleCount() ) ) );
      if ( !it->second.isRemark() ) {
         f = v6 ? static_cast<const Acl::IpFilterBase*>( &it->second.ip6Filter() )
                : &it->second.ipFilter();
      }
   }
   static const std::vector<U8> protos = { 6, 17, 6, 17, 47 };
   U8 proto = f && f->proto() != 0 && below( 10 ) != 0 ? f->proto() : pick( protos );
   if ( !f && below( 6 ) == 0 ) {
      proto = v6 ? 58 : 1;
   }
   const U32 fragRoll = below( 10 );
   const Fennel::Frag frag = fragRoll < 6   ? Fennel::Frag::none
                             : fragRoll < 8 ? Fennel::Frag::first
                                            : Fennel::Frag::later;
   const Pylon::EthAddr src = pick( addrs_ );
   const Pylon::EthAddr dst = pick( addrs_ );
   Fennel::Packet p = packetOfType( src, dst, v6 ? 0x86DD : 0x0800 );
   p.in = Pylon::IntfId::ethernet( 1 );
   p.udp.reset();
   const bool ttlTerm = f && f->ttl().op() == Acl::TtlOp::eq;
   const U8 ttl = nearU8( ttlTerm, ttlTerm ? f->ttl().ttl() : 64, 8 );
   if ( v6 ) {
      const auto* f6 = static_cast<const Acl::Ip6Filter*>( f );
      Fennel::PacketIpv6 ip;
      ip.src = nearIp6( f6 ? f6->sourceFullMask() : Pylon::Ip6AddrWithFullMask() );
      ip.dst = nearIp6( f6 ? f6->destinationFullMask() : Pylon::Ip6AddrWithFullMask() );
      ip.next = proto;
      const U8 tc = nearU8( f6 && f6->trafficClassMask() != 0, f6 ? f6->trafficClass() : 0, 8 );
      ip.dscp = static_cast<U8>( tc >> 2 );
      ip.ecn = static_cast<U8>( tc & 3 );
      ip.hlim = ttl;
      ip.frag = frag;
      p.ipv6 = ip;
   } else {
      const auto* f4 = static_cast<const Acl::IpFilter*>( f );
      Fennel::PacketIpv4 ip;
      ip.src = Pylon::IpAddr( nearIp4( f4 ? f4->source() : Pylon::IpAddrWithFullMask() ) );
      ip.dst = Pylon::IpAddr( nearIp4( f4 ? f4->destination() : Pylon::IpAddrWithFullMask() ) );
      ip.proto = proto;
      ip.dscp = nearU8( f4 && f4->matchDscp(), f4 ? f4->dscp() : 0, 6 );
      ip.ecn = static_cast<U8>( below( 4 ) );
      ip.ttl = ttl;
      ip.frag = frag;
      p.ipv4 = ip;
   }
   if ( frag != Fennel::Frag::later ) {
      layer4For( f, proto, p );
   }
   return p;
}

}  // namespace FennelTest
