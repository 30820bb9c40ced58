// MAC ACLs do what they say: a pseudo-random ingress ACL and egress ACL (masks, EtherTypes,
// permit, deny, logged deny) on a switch of each chip kind; every packet of a pseudo-random
// set gets the verdict and the hit rule that the rules' first match gives.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/acl/rules/MacAclFixture.h"

namespace AclRulesTest {
namespace {

// Addresses the rules and the packets draw from, so that rules hit.
const std::vector<Pylon::EthAddr> kHosts = {
    Pylon::EthAddr( 0, 0, 0, 0, 0, 1 ),       Pylon::EthAddr( 0, 0, 0, 0, 0, 2 ),
    Pylon::EthAddr( 0, 0, 0, 0, 1, 1 ),       Pylon::EthAddr( 2, 0, 0, 0, 0, 1 ),
    Pylon::EthAddr( 2, 0x11, 0, 0, 0, 0x80 ), Pylon::EthAddr( 0xaa, 0xbb, 0xcc, 0, 0, 7 ) };
const std::vector<Pylon::EthAddr> kMasks = { Pylon::EthAddr( 0xff, 0xff, 0xff, 0xff, 0xff, 0xff ),
                                             Pylon::EthAddr( 0xff, 0xff, 0xff, 0, 0, 0 ),
                                             Pylon::EthAddr( 0xff, 0, 0, 0, 0, 0 ),
                                             Pylon::EthAddr( 0, 0, 0, 0, 0, 0x01 ) };
const std::vector<U16> kEtherTypes = { 0x0800, 0x0806, 0x86DD, 0x88CC };

template <class T>
const T& pick( std::mt19937& rng, const std::vector<T>& from ) {
   return from[std::uniform_int_distribution<size_t>( 0, from.size() - 1 )( rng )];
}

std::vector<MacRuleSpec> randomRules( std::mt19937& rng, U32 count ) {
   std::vector<MacRuleSpec> rules;
   std::uniform_int_distribution<int> die( 0, 5 );
   for ( U32 i = 0; i < count; ++i ) {
      MacRuleSpec r;
      r.seqNo = 10 * ( i + 1 );
      r.action = die( rng ) < 3 ? Acl::Action::deny : Acl::Action::permit;
      r.log = r.action == Acl::Action::deny && die( rng ) == 0;
      if ( die( rng ) < 4 ) {
         r.source = HalyardTest::MacTerm{ pick( rng, kHosts ), pick( rng, kMasks ) };
      }
      if ( die( rng ) < 3 ) {
         r.destination = HalyardTest::MacTerm{ pick( rng, kHosts ), pick( rng, kMasks ) };
      }
      if ( die( rng ) < 2 ) {
         r.etherType = pick( rng, kEtherTypes );
      }
      rules.push_back( r );
   }
   // Most packets should get past the ingress list to meet the egress one.
   MacRuleSpec last;
   last.seqNo = 10 * ( count + 1 );
   last.etherType = 0x0800;
   rules.push_back( last );
   return rules;
}

class MacLookupTest : public MacAclFixture, public ::testing::WithParamInterface<std::string> {
 protected:
   MacLookupTest() { build( layoutOf( { GetParam() } ) ); }
};

TEST_P( MacLookupTest, EveryPacketGetsTheVerdictAndHitRuleOfTheFirstMatch ) {
   std::mt19937 rng( 7 );
   const std::vector<MacRuleSpec> in = randomRules( rng, 40 );
   const std::vector<MacRuleSpec> out = randomRules( rng, 40 );
   const auto inAcl = macAcl( "in", Acl::in_, { intfOf( 0, 1 ) } );
   const auto outAcl = macAcl( "out", Acl::out_, { intfOf( 0, 2 ) } );
   ASSERT_EQ( applied( inAcl, rulesOf( in ) ), Fennel::aclCreateSuccess );
   ASSERT_EQ( applied( outAcl, rulesOf( out ) ), Fennel::aclCreateSuccess );

   for ( int i = 0; i < 300; ++i ) {
      Sim::Packet p =
          macPacket( pick( rng, kHosts ), pick( rng, kHosts ), pick( rng, kEtherTypes ) );
      if ( i % 10 == 0 ) {
         p.srcMacIs( Sim::MacAddr{ 0x0e, 0, 0, 0, U8( i ), 0 } );
      }
      const std::optional<size_t> inMatch = firstMatch( in, p );
      const std::optional<size_t> outMatch = firstMatch( out, p );
      const bool inPermit = inMatch && in[*inMatch].action == Acl::Action::permit;
      const bool outPermit = outMatch && out[*outMatch].action == Acl::Action::permit;
      const Sim::SwitchVerdict v = sw().sim().inject( "Ethernet1", p, "Ethernet2" );
      SCOPED_TRACE( "packet " + std::to_string( i ) + ": " + v.text() );
      EXPECT_EQ( ruleHit( inAcl, 0, v.ingress ), U32( inMatch.value_or( in.size() ) ) );
      EXPECT_EQ( v.forwarded(), inPermit && outPermit );
      if ( inPermit ) {
         EXPECT_EQ( ruleHit( outAcl, 0, v.ingress, 2 ), U32( outMatch.value_or( out.size() ) ) );
      } else {
         EXPECT_EQ( v.copyToCpu(), inMatch && in[*inMatch].log ) << "a logged deny is copied";
      }
   }
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, MacLookupTest,
                          ::testing::ValuesIn( HalyardTest::catalogKindNames() ),
                          []( const auto& info ) { return info.param; } );

}  // namespace
}  // namespace AclRulesTest
