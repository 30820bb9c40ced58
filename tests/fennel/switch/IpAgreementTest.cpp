// Hand-made IPv4 and IPv6 lists that use every kind of match of the configuration language,
// applied by the generic machine in and out on ports of both units: packets unfragmented, first
// and later fragments get the hardware verdict and hit rule that the reference evaluator gives,
// on the default switch and on a switch of each chip kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/switch/GenericSwitch.h"
#include "tests/fennel/switch/RandomAcls.h"
#include "tests/support/SwitchLayout.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;
using namespace FennelTest;

void ipv4ListIs( const Acl::Config::Ptr& config ) {
   auto acl =
       listIs( config, AclType::ip, "v4",
               { ip4( 10, permit ).proto( tcp ).src( "10.0.0.0/8" ).dport( eq( { 80, 443 } ) ),
                 ip4( 20, deny ).proto( udp ).sport( range( 1000, 2000 ) ),
                 ip4( 30, permit )
                     .proto( tcp )
                     .sport( gt( 1023 ) )
                     .dport( eq( { 22 } ) )
                     .flags( Acl::tcpFlagSyn ),
                 ip4( 40, deny ).proto( tcp ).dst( "192.168.1.1" ).sport( lt( 1024 ) ),
                 ip4( 50, permit ).proto( icmp ).icmpType( 8, 0 ),
                 ip4( 60, deny ).proto( icmp ).icmpType( 3 ),
                 ip4( 70, permit ).src( "172.16.0.0/12" ).dscp( 46 ), ip4( 80, deny ).ttl( 1 ),
                 ip4( 90, permit ).src( "198.51.100.0/24" ).fragments(),
                 ip4( 100, permit ).proto( tcp ).flags( Acl::tcpFlagAck | Acl::tcpFlagRst ),
                 ip4( 110, deny ).proto( udp ).dport( range( 5000, 5999 ) ).ecn( 3 ) } );
   // Prefixes of every interesting length, on either address.
   U32 seq = 200;
   for ( U8 len : { 1, 7, 8, 9, 15, 16, 17, 23, 24, 25, 31, 32 } ) {
      const std::string prefix =
          "203." + std::to_string( len ) + ".113.77/" + std::to_string( len );
      Acl::RuleConfig r =
          ( len % 2 ? ip4( seq, deny ).src( prefix ) : ip4( seq, permit ).dst( prefix ) );
      acl->ruleIs( seq, r );
      seq += 10;
   }
   acl->ruleIs( 400, ip4( 400, permit ).proto( udp ).sport( lt( 1024 ) ) );
   acl->ruleIs( 410, ip4( 410, deny ).proto( udp ).dport( neq( { 53 } ) ) );
   acl->ruleIs( 420, ip4( 420, permit ).proto( 47 ).dst( "0.0.0.0/0" ) );
}

void ipv6ListIs( const Acl::Config::Ptr& config ) {
   auto acl =
       listIs( config, AclType::ipv6, "v6",
               { ip6( 10, permit ).proto( tcp ).src( "2001:db8::/32" ).dport( eq( { 80, 443 } ) ),
                 ip6( 20, deny ).proto( udp ).sport( range( 1000, 2000 ) ),
                 ip6( 30, permit )
                     .proto( tcp )
                     .sport( gt( 1023 ) )
                     .dport( eq( { 22 } ) )
                     .flags( Acl::tcpFlagSyn ),
                 ip6( 40, deny ).proto( tcp ).dst( "2001:db8::1" ).sport( range( 1, 1023 ) ),
                 ip6( 50, permit ).proto( icmp6 ).icmpType( 128, 0 ),
                 ip6( 60, deny ).proto( icmp6 ).icmpType( 1 ),
                 ip6( 70, permit ).src( "2001:db8:ac10::/48" ).trafficClass( 184, 0xFC ),
                 ip6( 80, deny ).ttl( 1 ),
                 ip6( 90, permit ).srcMasked( "0:0:0:0:1:0:0:1", "0:0:0:0:ffff:0:0:ffff" ),
                 ip6( 100, permit ).proto( tcp ).flags( Acl::tcpFlagAck | Acl::tcpFlagRst ) } );
   U32 seq = 200;
   for ( U8 len : { 1, 16, 48, 63, 64, 65, 96, 127, 128 } ) {
      const std::string prefix =
          "2001:db8:" + std::to_string( len ) + "::77/" + std::to_string( len );
      Acl::RuleConfig r =
          ( len % 2 ? ip6( seq, deny ).src( prefix ) : ip6( seq, permit ).dst( prefix ) );
      acl->ruleIs( seq, r );
      seq += 10;
   }
   acl->ruleIs( 400, ip6( 400, permit ).proto( udp ).sport( range( 1, 1023 ) ) );
   acl->ruleIs( 410, ip6( 410, deny ).proto( udp ).dport( range( 54, 65535 ) ) );
   acl->ruleIs( 420, ip6( 420, permit ).proto( 47 ).dst( "::/0" ) );
}

struct Ports {
   std::vector<IntfId> unit0;
   std::vector<IntfId> unit1;
};

void agreeOnIpLists( GenericSwitch& sw, const Ports& w, U32 seed, U32 packets ) {
   ipv4ListIs( sw.config() );
   ipv6ListIs( sw.config() );
   for ( const auto& ports : { w.unit0, w.unit1 } ) {
      sw.bind( AclType::ip, "v4", ports[0], AclDirection::in );
      sw.bind( AclType::ipv6, "v6", ports[0], AclDirection::in );
      sw.bind( AclType::ip, "v4", ports[1], AclDirection::out );
      sw.bind( AclType::ipv6, "v6", ports[1], AclDirection::out );
   }
   sw.settle();
   for ( const auto& [key, acl] : sw.machine().acls() ) {
      EXPECT_TRUE( acl.committed ) << key << ": " << acl.errorText;
      EXPECT_EQ( Fennel::PendingReason::none, acl.pending ) << key << ": " << acl.errorText;
      if ( key.direction() == AclDirection::out ) {
         EXPECT_FALSE( acl.expanded.empty() ) << key << ": egress ranges go in as blocks";
      }
   }

   RandomAcls random( seed );
   const auto v4 = sw.config()->aclConfig( AclType::ip, Vesper::Name( "v4" ) );
   const auto v6 = sw.config()->aclConfig( AclType::ipv6, Vesper::Name( "v6" ) );
   const std::vector<IntfId> ins = { w.unit0[0], w.unit1[0], w.unit0[2] };
   const std::vector<std::optional<IntfId>> outs = { std::nullopt, w.unit0[1], w.unit1[1],
                                                     w.unit1[2] };
   U32 disagreements = 0;
   U32 permitted = 0;
   std::set<std::pair<std::string, U32>> rulesHit;
   std::map<Fennel::Frag, U32> byFrag;
   for ( U32 i = 0; i < packets; ++i ) {
      Fennel::Packet p = random.ipPacketFor( random.below( 2 ) ? *v4 : *v6 );
      p.in = random.pick( ins );
      p.out = random.pick( outs );
      const Fennel::Evaluation reference = sw.reference( p );
      permitted += reference.permit ? 1 : 0;
      ++byFrag[p.frag()];
      for ( const Fennel::AclVerdict& v : reference.acls ) {
         rulesHit.insert(
             { v.aclName.str() + Vesper::stringValue( v.direction ), v.seq.value_or( 0 ) } );
      }
      const std::string why = sw.disagreement( p );
      if ( !why.empty() && ++disagreements <= 8 ) {
         const auto l4 = p.tcp ? p.tcp : p.udp;
         ADD_FAILURE() << "packet " << i << ( p.ipv4 ? " ipv4" : " ipv6" ) << " proto "
                       << int( p.ipv4 ? p.ipv4->proto : p.ipv6->next ) << " frag "
                       << int( p.frag() ) << " ports " << ( l4 ? l4->sport : 0 ) << "/"
                       << ( l4 ? l4->dport : 0 ) << " in " << p.in << ": " << why;
      }
   }
   EXPECT_EQ( 0u, disagreements ) << "of " << packets << " packets";
   // Most rules of both lists decide some packet, in both directions; and the packets are of
   // every fragment kind, permitted and denied.
   EXPECT_GT( rulesHit.size(), 60u );
   EXPECT_GT( permitted, packets / 5 );
   EXPECT_LT( permitted, packets - packets / 5 );
   EXPECT_GT( byFrag[Fennel::Frag::later], packets / 10 );
   EXPECT_GT( byFrag[Fennel::Frag::first], packets / 10 );
}

TEST( IpAclsOnTheDefaultSwitch, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw;
   agreeOnIpLists( sw,
                   { { IntfId::ethernet( 1 ), IntfId::ethernet( 2 ), IntfId::ethernet( 4 ) },
                     { IntfId::ethernet( 25 ), IntfId::ethernet( 26 ), IntfId::ethernet( 28 ) } },
                   3, 2000 );
}

class IpAclsOnEachChipKind : public ::testing::TestWithParam<std::string> {};

TEST_P( IpAclsOnEachChipKind, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw(
       HalyardTest::profileOf( HalyardTest::SwitchLayout( { GetParam(), GetParam() } ) ) );
   Ports w;
   for ( U32 port = 1; port <= 3; ++port ) {
      w.unit0.push_back( HalyardTest::intfOf( 0, port ) );
      w.unit1.push_back( HalyardTest::intfOf( 1, port ) );
   }
   agreeOnIpLists( sw, w, 4, 1500 );
}

INSTANTIATE_TEST_SUITE_P( Catalog, IpAclsOnEachChipKind,
                          ::testing::ValuesIn( HalyardTest::catalogKindNames() ),
                          []( const auto& info ) { return info.param; } );

}  // namespace
