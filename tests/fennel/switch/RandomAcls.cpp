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
            set( pick( addrs_ ), randomMask() );
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
      return packetOfType( pick( addrs_ ), below( 3 ) ? pick( addrs_ ) : randomAddr(), type );
   }
   auto it = acl.rule().begin();
   std::advance( it, below( static_cast<U32>( acl.ruleCount() ) ) );
   const Acl::MacFilter& f = it->second.macFilter();
   const U16 type =
       f.proto() == Acl::MacFilter::protoAny ? pick( etherTypes_ ) : static_cast<U16>( f.proto() );
   return packetOfType( aimed( f.source(), f.sourceMask() ),
                        aimed( f.destination(), f.destinationMask() ), type );
}

}  // namespace FennelTest
