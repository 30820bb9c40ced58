// Living with a short TCAM: VFP that runs dry moves the rest of an ACL to IFP (and gives the
// class back when no rule of the ACL is left in VFP); a group too small leaves its unit dirty,
// uninstalled and reported, while the other unit goes ahead; the next pass, with room, installs
// it. Packets show at each step that the hardware does what the rules say.
#include <gtest/gtest.h>

#include <vector>

#include "tests/acl/rules/MacAclFixture.h"
#include "tests/support/ChipReadback.h"

namespace AclRulesTest {
namespace {

using Halyard::tcamGroupMacAcl;
using Halyard::tcamGroupMacAclVfp;

const Pylon::EthAddr kDst( 2, 0, 0, 0, 0, 0x99 );

Pylon::EthAddr host( U8 last ) {
   return Pylon::EthAddr( 0, 0, 0, 0, 0, last );
}

// Rule i permits (even i) or denies (odd i) the packets from host i + 1.
std::vector<MacRuleSpec> rulesByHost( U32 count ) {
   std::vector<MacRuleSpec> rules;
   for ( U32 i = 0; i < count; ++i ) {
      MacRuleSpec r;
      r.seqNo = 10 * ( i + 1 );
      r.action = i % 2 ? Acl::Action::deny : Acl::Action::permit;
      r.source = HalyardTest::macHost( host( U8( i + 1 ) ) );
      rules.push_back( r );
   }
   return rules;
}

class ShortageTest : public MacAclFixture {
 protected:
   // Pushes one packet from each host of the rules, and one from a host none names, in on
   // `in` and out by `out`, and checks verdict and hit rule of the ACL on the unit.
   void packetsAgree( const HalyardTest::DrivenAcl& acl, U32 unit, const std::string& in,
                      const std::string& out, const std::vector<MacRuleSpec>& rules ) {
      for ( U32 i = 0; i <= rules.size(); ++i ) {
         const Sim::Packet p = macPacket( host( U8( i + 1 ) ), kDst, 0x0800 );
         const std::optional<size_t> match = firstMatch( rules, p );
         const bool permit = match && rules[*match].action == Acl::Action::permit;
         const Sim::SwitchVerdict v = sw().sim().inject( in, p, out );
         SCOPED_TRACE( "host " + std::to_string( i + 1 ) + ": " + v.text() );
         EXPECT_EQ( v.forwarded(), permit );
         EXPECT_EQ( acl.ruleHitIn( unit, v.ingress ), U32( match.value_or( rules.size() ) ) );
      }
   }
};

TEST_F( ShortageTest, ASmallVfpGroupKeepsTheFirstRulesAndSendsTheRestToIfp ) {
   build( layoutOf(), groupsSized( "trident3", { tcamGroupMacAclVfp }, 2 ) );
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ) } );
   const std::vector<MacRuleSpec> rules = rulesByHost( 5 );
   const std::vector<Acl::RuleConfig> configs = rulesOf( rules );
   ASSERT_EQ( acl.firstPass( configs ), Fennel::aclCreateSuccess );

   Sim::ChipModel& chip = sw().chip( 0 );
   for ( U32 ruleNum = 0; ruleNum < 5; ++ruleNum ) {
      const U32 e = acl.ruleEntries( 0, ruleNum ).at( 0 );
      EXPECT_EQ( HalyardTest::groupOf( chip, e ),
                 ruleNum < 2 ? tcamGroupMacAclVfp : tcamGroupMacAcl )
          << "rule " << ruleNum;
   }
   EXPECT_FALSE( acl.common( 0 )->canUseVfp() ) << "from the first dry VFP on";
   EXPECT_EQ( acl.unitData( 0 )->intfClass(), 255 ) << "the VFP rules still use the class";
   EXPECT_EQ( helper().vfpAclTypeForUnit( 0 )->vfpAclTypeForPort( "Ethernet1" ), Acl::mac_ );
   packetsAgree( acl, 0, "Ethernet1", "Ethernet2", rules );

   // Enabling and disabling never touches a VFP entry: it has no port bitmap to protect.
   const auto rule0 = acl.common( 0 )->aclRule( 0 );
   const auto rule2 = acl.common( 0 )->aclRule( 2 );
   helper().enableAclEntriesIs( rule0, 0, false );
   helper().enableAclEntriesIs( rule2, 0, false );
   EXPECT_TRUE( chip.entryEnabled( acl.ruleEntries( 0, 0 ).at( 0 ) ).value() );
   EXPECT_FALSE( chip.entryEnabled( acl.ruleEntries( 0, 2 ).at( 0 ) ).value() );
   helper().enableAclEntriesIs( rule2, 0, true );
   EXPECT_TRUE( chip.entryEnabled( acl.ruleEntries( 0, 2 ).at( 0 ) ).value() );
}

TEST_F( ShortageTest, VfpDryAtTheFirstRuleGivesTheClassAndThePortClaimsBack ) {
   build( layoutOf(), groupsSized( "trident3", { tcamGroupMacAclVfp }, 0 ) );
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ), intfOf( 0, 2 ) } );
   acl.precreated();
   ASSERT_EQ( acl.unitData( 0 )->intfClass(), 255 );
   const std::vector<MacRuleSpec> rules = rulesByHost( 3 );
   const std::vector<Acl::RuleConfig> configs = rulesOf( rules );
   ASSERT_EQ( acl.rulesCreated( configs ), Fennel::aclCreateSuccess );

   EXPECT_FALSE( acl.unitData( 0 )->intfClassValid() );
   EXPECT_EQ( helper().halyardIntfClassData( 0 )->freeAclIntfClass().stack().size(), 255u );
   EXPECT_TRUE( helper().vfpAclTypeForUnit( 0 )->vfpAclTypeForPort().empty() );
   EXPECT_EQ( HalyardTest::ingressClass( sw().chip( 0 ), 1 ), 0u );
   EXPECT_TRUE( HalyardTest::groupEntries( sw().chip( 0 ), tcamGroupMacAclVfp ).empty() );
   helper().prepareToCommit();
   helper().commitAcl( acl.data() );
   packetsAgree( acl, 0, "Ethernet2", "Ethernet1", rules );
}

TEST_F( ShortageTest, AGroupTooSmallLeavesItsUnitDirtyAndUninstalledWhileTheOtherGoesAhead ) {
   build( layoutOf( { "trident3", "tomahawk" } ),
          groupsSized( "trident3", { tcamGroupMacAclVfp }, 0 ) );
   // Another user has all but one entry of unit 1's group.
   const auto manager = sw().manager( tcamGroupMacAcl );
   std::vector<U32> filler;
   while ( manager->entriesAvailable( 1 ) > 1 ) {
      filler.push_back( manager->getEntry( 1, "filler" ) );
   }
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ), intfOf( 1, 1 ) } );
   const std::vector<MacRuleSpec> rules = rulesByHost( 3 );
   const std::vector<Acl::RuleConfig> configs = rulesOf( rules );
   EXPECT_EQ( acl.firstPass( configs ), Fennel::aclCreateNoEntries );

   const Vesper::Name chip1 = sw().sim().hcsd()->halyardModId( 1 ).chipName();
   EXPECT_TRUE( acl.common( 1 )->dirty() );
   EXPECT_TRUE( helper().unitDirty( 1 ) );
   EXPECT_TRUE( helper().dirty() );
   EXPECT_EQ( helper().unitError( chip1 ), Fennel::aclCreateNoEntries );
   EXPECT_TRUE( helper().publishUnitError( chip1 ) );
   EXPECT_FALSE( acl.common( 0 )->dirty() );
   EXPECT_FALSE( helper().unitDirty( 0 ) );
   EXPECT_TRUE( acl.common( 0 )->installed() );
   EXPECT_FALSE( acl.common( 1 )->installed() );
   EXPECT_TRUE( acl.ruleEntries( 1, 1 ).empty() ) << "the rule that did not fit has none";
   for ( const U32 e : acl.ruleEntries( 1, 0 ) ) {
      EXPECT_FALSE( sw().chip( 1 ).entryInstalled( e ).value() ) << "nothing of it is installed";
   }
   packetsAgree( acl, 0, "Ethernet1", "Ethernet2", rules );

   // Room is made; the next pass replaces the earlier entries and installs the ACL.
   for ( const U32 e : filler ) {
      manager->releaseEntry( 1, e );
   }
   const U32 inUse0 = manager->entriesInUse( 0 );
   EXPECT_EQ( acl.firstPass( configs ), Fennel::aclCreateSuccess );
   EXPECT_EQ( manager->entriesInUse( 0 ), inUse0 ) << "earlier versions were given back";
   EXPECT_FALSE( acl.common( 1 )->dirty() );
   EXPECT_TRUE( acl.common( 1 )->installed() );
   packetsAgree( acl, 1, "Ethernet101", "Ethernet102", rules );
}

}  // namespace
}  // namespace AclRulesTest
