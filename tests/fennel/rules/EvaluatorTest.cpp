// The reference evaluator on hand-made cases, one semantic each: first match, the implicit
// deny and the ICMPv6 permits, fragments, which ACLs apply, and each kind of term at its ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fennel/Evaluator.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Fennel::AclDecider;
using Fennel::Frag;
using Fennel::Packet;
using Pylon::IntfId;
using namespace FennelTest;

const IntfId eth1 = IntfId::ethernet( 1 );
const IntfId eth2 = IntfId::ethernet( 2 );

class EvaluatorTest : public ::testing::Test {
 protected:
   void bind( AclType type, const std::string& name, AclDirection dir = AclDirection::in,
              IntfId intf = eth1 ) {
      intfConfig_->intfAclIs( type, dir, intf, Vesper::Name( name ) );
   }
   Fennel::Evaluation eval( const Packet& p ) const {
      return Fennel::Evaluator( config_, intfConfig_, params_, topology_ ).evaluate( p );
   }
   // The one ACL that applies: its deciding rule's sequence number, or -1 when an implicit rule
   // decided; and the verdict.
   std::pair<int, bool> only( const Packet& p ) const {
      const auto e = eval( p );
      EXPECT_EQ( 1u, e.acls.size() );
      if ( e.acls.empty() ) {
         return { -2, e.permit };
      }
      return { e.acls[0].seq ? int( *e.acls[0].seq ) : -1, e.permit };
   }

   Vesper::ActivityLockGuard activity_;
   Acl::Config::Ptr config_ = Acl::configFactory();
   Acl::IntfConfig::Ptr intfConfig_ = Acl::intfConfigFactory();
   Acl::ParamConfig::Ptr params_ = Acl::paramConfigFactory();
   Fennel::Topology topology_;
};

using P = std::pair<int, bool>;

TEST_F( EvaluatorTest, MacRulesFirstMatchMasksEtherTypeAndTheImplicitDeny ) {
   listIs( config_, AclType::mac, "m",
           { remark( AclType::mac, 5, "remarks match nothing" ),
             macRule( 10, deny ).src( "00:00:00:00:00:01" ).etherType( 0x0806 ),
             macRule( 20, permit ).src( "00:00:00:00:00:00", "ff:ff:ff:ff:ff:00" ).log(),
             macRule( 30, permit ).etherType( 0 ) } );
   bind( AclType::mac, "m" );
   EXPECT_EQ( P( 10, false ),
              only( ethPacket( "00:00:00:00:00:01", "ff:ff:ff:ff:ff:ff", 0x0806 ) ) );
   EXPECT_EQ( P( 20, true ),
              only( ethPacket( "00:00:00:00:00:01", "ff:ff:ff:ff:ff:ff", 0x0800 ) ) );
   EXPECT_TRUE( eval( ethPacket( "00:00:00:00:00:01", "00:00:00:00:00:02", 0x0800 ) ).acls[0].log );
   // EtherType 0 is a term on 0, not "any".
   EXPECT_EQ( P( 30, true ), only( ethPacket( "00:00:00:00:01:01", "00:00:00:00:00:02", 0 ) ) );
   EXPECT_EQ( P( -1, false ), only( ethPacket( "00:00:00:00:01:01", "00:00:00:00:00:02", 1 ) ) );
   // A MAC ACL applies to IP packets as well.
   EXPECT_EQ( P( 20, true ), only( l4Packet( tcp, "10.0.0.1", "10.0.0.2", 1, 2 ) ) );
}

TEST_F( EvaluatorTest, PortOperatorsAtTheirEnds ) {
   listIs( config_, AclType::ip, "p",
           { ip4( 10, permit ).proto( tcp ).dport( gt( 1023 ) ),
             ip4( 20, permit ).proto( udp ).dport( lt( 1024 ) ),
             ip4( 30, permit ).proto( tcp ).sport( range( 1000, 2000 ) ),
             ip4( 40, permit ).proto( udp ).sport( neq( { 80, 81 } ) ),
             ip4( 50, permit ).proto( tcp ).sport( eq( { 7, 9 } ) ) } );
   bind( AclType::ip, "p" );
   auto t = [&]( U16 s, U16 d ) { return only( l4Packet( tcp, "1.1.1.1", "2.2.2.2", s, d ) ); };
   auto u = [&]( U16 s, U16 d ) { return only( l4Packet( udp, "1.1.1.1", "2.2.2.2", s, d ) ); };
   EXPECT_EQ( P( 10, true ), t( 0, 1024 ) );
   EXPECT_EQ( P( -1, false ), t( 0, 1023 ) );
   EXPECT_EQ( P( 20, true ), u( 80, 1023 ) );
   EXPECT_EQ( P( 40, true ), u( 79, 1024 ) );
   EXPECT_EQ( P( -1, false ), u( 81, 1024 ) );
   EXPECT_EQ( P( 30, true ), t( 1000, 1 ) );
   EXPECT_EQ( P( 30, true ), t( 2000, 1 ) );
   EXPECT_EQ( P( -1, false ), t( 999, 1 ) );
   EXPECT_EQ( P( -1, false ), t( 2001, 1 ) );
   EXPECT_EQ( P( 50, true ), t( 9, 1 ) );
   EXPECT_EQ( P( -1, false ), t( 8, 1 ) );
}

TEST_F( EvaluatorTest, AddressesPrefixesAndNonPrefixMasks ) {
   auto acl = listIs( config_, AclType::ipv6, "v6",
                      { ip6( 10, deny ).src( "2001:db8::/32" ).dst( "2001:db8:1::5" ),
                        ip6( 20, permit ).srcMasked( "0:0:0:0:1:0:0:1", "0:0:0:0:ffff:0:0:ffff" ),
                        ip6( 30, permit ).src( "::/0" ) } );
   listIs( config_, AclType::ip, "v4",
           { ip4( 10, deny ).src( "10.0.0.0/8" ).dst( "0.0.0.0/0" ),
             ip4( 20, permit ).dst( "192.168.1.1" ) } );
   bind( AclType::ipv6, "v6" );
   bind( AclType::ip, "v4" );
   EXPECT_EQ( P( 10, false ), only( ipv6Packet( "2001:db8:ff::1", "2001:db8:1::5", 17 ) ) );
   EXPECT_EQ( P( 30, true ), only( ipv6Packet( "2001:db8:ff::1", "2001:db8:1::6", 17 ) ) );
   EXPECT_EQ( P( 20, true ), only( ipv6Packet( "fe80::1:2:3:1", "::1", 17 ) ) );
   EXPECT_EQ( P( 10, false ), only( ipv4Packet( "10.255.0.1", "1.2.3.4", 0 ) ) );
   EXPECT_EQ( P( 20, true ), only( ipv4Packet( "11.0.0.1", "192.168.1.1", 0 ) ) );
   EXPECT_EQ( P( -1, false ), only( ipv4Packet( "11.0.0.1", "192.168.1.2", 0 ) ) );
}

TEST_F( EvaluatorTest, Layer4TermsMatchOnlyPacketsThatCarryTheHeader ) {
   listIs( config_, AclType::ip, "f",
           { ip4( 10, deny ).proto( tcp ).dport( eq( { 22 } ) ),
             ip4( 20, permit ).proto( tcp ).src( "10.0.0.1" ).dport( eq( { 80 } ) ),
             ip4( 30, deny ).proto( tcp ).src( "10.0.0.2" ) } );
   bind( AclType::ip, "f" );
   const auto head = []( Frag f, const char* src, U16 dport ) {
      return l4Packet( tcp, src, "10.9.9.9", 1, dport, f );
   };
   EXPECT_EQ( P( 10, false ), only( head( Frag::none, "10.0.0.1", 22 ) ) );
   EXPECT_EQ( P( 10, false ), only( head( Frag::first, "10.0.0.1", 22 ) ) );
   // A later fragment carries no port: the deny on port 22 lets it by, and the permit of its
   // flow (10.0.0.1, tcp) lets it pass.
   EXPECT_EQ( P( 20, true ), only( head( Frag::later, "10.0.0.1", 0 ) ) );
   // Not the flow the permit names: on to the next rule that matches without layer 4.
   EXPECT_EQ( P( 30, false ), only( head( Frag::later, "10.0.0.2", 0 ) ) );
   EXPECT_EQ( P( -1, false ), only( head( Frag::later, "10.0.0.3", 0 ) ) );
}

TEST_F( EvaluatorTest, TheFragmentPassNamesTheFlowByAddressesProtocolAndDscpOnly ) {
   listIs( config_, AclType::ip, "f",
           { ip4( 10, permit ).proto( udp ).dport( eq( { 53 } ) ).dscp( 46 ).ttl( 64 ),
             ip4( 20, permit ).proto( udp ).dport( gt( 65535 ) ) } );
   bind( AclType::ip, "f" );
   Packet later = l4Packet( udp, "1.1.1.1", "2.2.2.2", 0, 0, Frag::later );
   later.ipv4->dscp = 46;
   later.ipv4->ttl = 3;  // the TTL changes on the way: not part of the flow
   EXPECT_EQ( P( 10, true ), only( later ) );
   later.ipv4->dscp = 0;
   // Rule 20 permits no first fragment at all, so it has no flow whose later fragments pass.
   EXPECT_EQ( P( -1, false ), only( later ) );
}

TEST_F( EvaluatorTest, FragmentsKeywordMatchesLaterFragmentsOnly ) {
   listIs( config_, AclType::ip, "f",
           { ip4( 10, deny ).src( "10.0.0.0/8" ).fragments(), ip4( 20, permit ) } );
   bind( AclType::ip, "f" );
   EXPECT_EQ( P( 10, false ), only( ipv4Packet( "10.0.0.1", "1.1.1.1", 17, Frag::later ) ) );
   EXPECT_EQ( P( 20, true ), only( ipv4Packet( "10.0.0.1", "1.1.1.1", 17, Frag::first ) ) );
   EXPECT_EQ( P( 20, true ), only( ipv4Packet( "10.0.0.1", "1.1.1.1", 17 ) ) );
}

TEST_F( EvaluatorTest, Ipv6HasNoFragmentPass ) {
   listIs( config_, AclType::ipv6, "f", { ip6( 10, permit ).proto( tcp ).dport( eq( { 80 } ) ) } );
   bind( AclType::ipv6, "f" );
   EXPECT_EQ( P( 10, true ), only( l4Packet( tcp, "::1", "::2", 1, 80, Frag::first ) ) );
   EXPECT_EQ( P( -1, false ), only( l4Packet( tcp, "::1", "::2", 0, 0, Frag::later ) ) );
}

TEST_F( EvaluatorTest, Icmp6PermitsAtTheEndOfAnIpv6List ) {
   listIs( config_, AclType::ipv6, "v6",
           { ip6( 10, deny ).proto( icmp6 ).icmpType( 128 ), ip6( 20, deny ).proto( tcp ) } );
   bind( AclType::ipv6, "v6" );
   const Packet echo = icmpPacket( "::1", "::2", 128, 0 );
   const Packet solicit = icmpPacket( "::1", "::2", 135, 0 );
   const Packet unreachable = icmpPacket( "::1", "::2", 1, 4 );
   // defaultTypes, the default: every ICMPv6 packet that reaches the end passes, later
   // fragments too.
   EXPECT_EQ( P( 10, false ), only( echo ) );
   EXPECT_EQ( P( -1, true ), only( unreachable ) );
   EXPECT_EQ( AclDecider::icmp6Permit, eval( solicit ).acls[0].decider );
   EXPECT_EQ( P( -1, true ), only( icmpPacket( "::1", "::2", 0, 0, Frag::later ) ) );
   EXPECT_EQ( P( -1, false ), only( ipv6Packet( "::1", "::2", 17 ) ) );

   params_->permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::neighborDiscovery );
   EXPECT_EQ( P( -1, true ), only( solicit ) );
   EXPECT_EQ( AclDecider::neighborDiscovery, eval( solicit ).acls[0].decider );
   EXPECT_EQ( P( -1, true ), only( icmpPacket( "::1", "::2", 133, 0 ) ) );
   EXPECT_EQ( P( -1, false ), only( icmpPacket( "::1", "::2", 137, 0 ) ) );
   EXPECT_EQ( P( -1, false ), only( unreachable ) );

   params_->permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::none );
   EXPECT_EQ( AclDecider::implicitDeny, eval( solicit ).acls[0].decider );
   EXPECT_FALSE( eval( solicit ).permit );
}

TEST_F( EvaluatorTest, WhichAclsApplyAndEveryOneMustPermit ) {
   listIs( config_, AclType::mac, "m", { macRule( 10, permit ) } );
   listIs( config_, AclType::ip, "in4", { ip4( 10, permit ).proto( udp ) } );
   listIs( config_, AclType::ip, "out4", { ip4( 10, deny ).dst( "9.9.9.9" ), ip4( 20, permit ) } );
   listIs( config_, AclType::ipv6, "in6", { ip6( 10, permit ) } );
   bind( AclType::mac, "m" );
   bind( AclType::ip, "in4" );
   bind( AclType::ipv6, "in6" );
   bind( AclType::ip, "out4", AclDirection::out, eth2 );
   bind( AclType::ip, "missing", AclDirection::in, eth2 );  // names no configured list

   const auto arp = eval( ethPacket( "00:00:00:00:00:01", "ff:ff:ff:ff:ff:ff", 0x0806 ) );
   ASSERT_EQ( 1u, arp.acls.size() );
   EXPECT_EQ( AclType::mac, arp.acls[0].type );

   Packet p = l4Packet( udp, "1.1.1.1", "9.9.9.9", 1, 2 );
   const auto ingressOnly = eval( p );
   EXPECT_EQ( 2u, ingressOnly.acls.size() );
   EXPECT_TRUE( ingressOnly.permit );
   p.out = eth2;
   const auto both = eval( p );
   ASSERT_EQ( 3u, both.acls.size() );
   EXPECT_EQ( AclDirection::out, both.acls[2].direction );
   EXPECT_EQ( eth2, both.acls[2].intf );
   EXPECT_FALSE( both.permit );
   ASSERT_NE( nullptr, both.acl( Vesper::Name( "out4" ), AclType::ip, AclDirection::out ) );
   EXPECT_EQ( 10u, *both.acl( Vesper::Name( "out4" ), AclType::ip, AclDirection::out )->seq );

   p.in = eth2;  // only the binding of a missing list stands there
   p.out.reset();
   EXPECT_TRUE( eval( p ).acls.empty() );
}

TEST_F( EvaluatorTest, PortChannelsSubInterfacesAndRouterAcls ) {
   const IntfId pc = IntfId::portChannel( 5 );
   const IntfId sub = pc.subIntf( 100 );
   const IntfId vlan = IntfId::vlan( Pylon::VlanId( 100 ) );
   topology_.portChannel[eth1] = pc;
   topology_.subIntf[{ pc, 100 }] = sub;
   listIs( config_, AclType::ip, "deny-all", {} );
   listIs( config_, AclType::ip, "all", { ip4( 10, permit ) } );
   bind( AclType::ip, "all", AclDirection::in, pc );
   bind( AclType::ip, "all", AclDirection::in, sub );
   bind( AclType::ip, "deny-all", AclDirection::in, vlan );
   Packet p = ipv4Packet( "1.1.1.1", "2.2.2.2", 17 );
   EXPECT_EQ( 1u, eval( p ).acls.size() );
   p.vlan = 100;
   EXPECT_EQ( 2u, eval( p ).acls.size() );
   EXPECT_TRUE( eval( p ).permit );
   p.routed = true;  // router ACLs see routed packets of their VLAN
   const auto routed = eval( p );
   ASSERT_EQ( 3u, routed.acls.size() );
   EXPECT_EQ( vlan, routed.acls[2].intf );
   EXPECT_FALSE( routed.permit );
}

TEST_F( EvaluatorTest, FlagsIcmpDscpEcnTtlAndLength ) {
   listIs(
       config_, AclType::ip, "x",
       { ip4( 10, permit ).proto( tcp ).flags( Acl::tcpFlagSyn | Acl::tcpFlagAck ),
         ip4( 20, permit ).proto( icmp ).icmpType( 3, 4 ),
         ip4( 30, permit ).proto( icmp ).icmpType( 8 ), ip4( 40, permit ).dscp( 46 ).ecn( 1, 1 ),
         ip4( 50, permit ).ttl( 1 ), ip4( 60, permit ).proto( udp ).length( range( 100, 200 ) ) } );
   bind( AclType::ip, "x" );
   EXPECT_EQ( P( 10, true ),
              only( l4Packet( tcp, "1.1.1.1", "2.2.2.2", 1, 2, Frag::none, 0x12 | 0x01 ) ) );
   EXPECT_EQ( P( -1, false ),
              only( l4Packet( tcp, "1.1.1.1", "2.2.2.2", 1, 2, Frag::none, 0x02 ) ) );
   EXPECT_EQ( P( 20, true ), only( icmpPacket( "1.1.1.1", "2.2.2.2", 3, 4 ) ) );
   EXPECT_EQ( P( -1, false ), only( icmpPacket( "1.1.1.1", "2.2.2.2", 3, 3 ) ) );
   EXPECT_EQ( P( 30, true ), only( icmpPacket( "1.1.1.1", "2.2.2.2", 8, 77 ) ) );
   Packet q = ipv4Packet( "1.1.1.1", "2.2.2.2", 0 );
   q.ipv4->dscp = 46;
   q.ipv4->ecn = 3;
   EXPECT_EQ( P( 40, true ), only( q ) );
   q.ipv4->ecn = 2;
   EXPECT_EQ( P( -1, false ), only( q ) );
   q.ipv4->ttl = 1;
   EXPECT_EQ( P( 50, true ), only( q ) );
   // IPv4 total length: 20 + 8 + the payload.
   Packet u = l4Packet( udp, "1.1.1.1", "2.2.2.2", 1, 2 );
   u.payload.assign( 72, 0 );
   EXPECT_EQ( P( 60, true ), only( u ) );
   u.payload.assign( 71, 0 );
   EXPECT_EQ( P( -1, false ), only( u ) );
   u.ipv4->len = 200;
   EXPECT_EQ( P( 60, true ), only( u ) );
}

TEST_F( EvaluatorTest, PayloadWordsFromEitherEndOfTheHeader ) {
   using Acl::PayloadStart;
   // From the IP header's start: word 4 is the destination address. From its end: word 0 is
   // the UDP ports.
   listIs(
       config_, AclType::ip, "pl",
       { ip4( 10, deny ).payload( PayloadStart::headerStart, { { 4, 0x02020202, 0xFFFFFFFF } } ),
         ip4( 20, permit )
             .payload( PayloadStart::headerEnd,
                       { { 0, 0x00010035, 0xFFFFFFFF }, { 2, 0xAB000000, 0xFF000000 } } ) } );
   listIs( config_, AclType::mac, "m",
           { macRule( 10, permit )
                 .payload( PayloadStart::headerEnd, { { 0, 0x45000000, 0xFF000000 } } ) } );
   bind( AclType::ip, "pl" );
   Packet p = l4Packet( udp, "1.1.1.1", "2.2.2.2", 1, 53 );
   EXPECT_EQ( P( 10, false ), only( p ) );
   p.ipv4->dst = ip4Addr( "2.2.2.3" );
   EXPECT_EQ( P( -1, false ), only( p ) );  // no payload: the byte after the UDP header reads 0
   p.payload = { 0xAB, 0xCD };
   EXPECT_EQ( P( 20, true ), only( p ) );
   // A later fragment has no end of header to count from.
   EXPECT_EQ( P( -1, false ), only( ipv4Packet( "1.1.1.1", "2.2.2.3", 17, Frag::later ) ) );

   intfConfig_->intfAclDel( AclType::ip, AclDirection::in, eth1 );
   bind( AclType::mac, "m" );
   // After the Ethernet header (a tag included) comes the IPv4 header's first byte, 0x45.
   EXPECT_EQ( P( 10, true ), only( p ) );
   p.vlan = 7;
   EXPECT_EQ( P( 10, true ), only( p ) );
   EXPECT_EQ( P( -1, false ),
              only( ethPacket( "00:00:00:00:00:01", "00:00:00:00:00:02", 0x0806 ) ) );
}

TEST_F( EvaluatorTest, OnlyPermitAndDenyRulesMatch ) {
   Acl::RuleConfig odd = ip4( 10, permit );
   odd.actionIs( static_cast<Acl::Action>( 7 ) );
   listIs( config_, AclType::ip, "o", { odd, ip4( 20, deny ) } );
   bind( AclType::ip, "o" );
   EXPECT_EQ( P( 20, false ), only( ipv4Packet( "1.1.1.1", "2.2.2.2", 0 ) ) );
}

}  // namespace
