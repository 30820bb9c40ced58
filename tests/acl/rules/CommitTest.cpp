// Commit: entries reach the TCAM rule by rule in ascending rule number, once; a dirty unit is
// left alone; under SIMULATION_VMID the bookkeeping completes with nothing installed.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/acl/rules/MacAclFixture.h"
#include "tests/support/TraceLines.h"

namespace AclRulesTest {
namespace {

MacRuleSpec permitFrom( U8 last ) {
   MacRuleSpec r;
   r.source = HalyardTest::macHost( Pylon::EthAddr( 0, 0, 0, 0, 0, last ) );
   return r;
}

std::vector<std::string> installLines( const std::vector<U32>& entries ) {
   std::vector<std::string> lines;
   for ( const U32 e : entries ) {
      lines.push_back( "fp entry install " + std::to_string( e ) );
   }
   return lines;
}

class CommitTest : public MacAclFixture {
 protected:
   // Rules 2, 0 and 1 made in that order, so that entry ids do not follow rule numbers.
   void rulesOutOfOrder( HalyardTest::DrivenAcl& acl ) {
      acl.precreated();
      for ( const U32 ruleNum : { 2u, 0u, 1u } ) {
         const Acl::RuleConfig rule = HalyardTest::macRule( permitFrom( U8( ruleNum + 1 ) ) );
         ASSERT_EQ( helper().createMacAclRule( rule, rule.uniqueId(), acl.data(), ruleNum ),
                    Fennel::aclCreateSuccess );
      }
   }
   std::vector<U32> entriesInRuleOrder( HalyardTest::DrivenAcl& acl, U32 unit ) {
      std::vector<U32> all;
      for ( U32 ruleNum = 0; ruleNum < 3; ++ruleNum ) {
         for ( const U32 e : acl.ruleEntries( unit, ruleNum ) ) {
            all.push_back( e );
         }
      }
      return all;
   }
   bool installed( U32 unit, U32 entry ) {
      return sw().chip( unit ).entryInstalled( entry ).value_or( false );
   }
};

TEST_F( CommitTest, InstallsInAscendingRuleNumberOnceAndCountsFromZero ) {
   build();
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ) } );
   rulesOutOfOrder( acl );
   const std::vector<U32> entries = entriesInRuleOrder( acl, 0 );
   ASSERT_EQ( entries.size(), 3u );
   ASSERT_GT( entries[1], entries[0] ) << "rule 0 was made after rule 2";
   acl.common( 0 )->aclRule( 1 )->lastReadValueIs( 42 );

   HalyardTest::FpCmdCapture fp;
   helper().prepareToCommit();
   helper().commitAcl( acl.data() );
   EXPECT_EQ( HalyardTest::linesStartingWith( fp.lines(), "fp entry install" ),
              installLines( entries ) );
   for ( const U32 e : entries ) {
      EXPECT_TRUE( installed( 0, e ) );
   }
   EXPECT_TRUE( acl.common( 0 )->installed() );
   EXPECT_EQ( acl.common( 0 )->aclRule( 1 )->lastReadValue(), 0u );

   fp.clear();
   helper().commitAcl( acl.data() );
   EXPECT_TRUE( fp.lines().empty() ) << "a second commit installs nothing";
   EXPECT_TRUE( acl.common( 0 )->installed() );
}

TEST_F( CommitTest, ADirtyUnitIsLeftAloneAndTheOtherInstalled ) {
   build( layoutOf( { "trident3", "tomahawk" } ) );
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ), intfOf( 1, 1 ) } );
   rulesOutOfOrder( acl );
   acl.common( 1 )->dirtyIs( true );
   helper().commitAcl( acl.data() );
   for ( const U32 e : entriesInRuleOrder( acl, 0 ) ) {
      EXPECT_TRUE( installed( 0, e ) );
   }
   for ( const U32 e : entriesInRuleOrder( acl, 1 ) ) {
      EXPECT_FALSE( installed( 1, e ) );
   }
   EXPECT_TRUE( acl.common( 0 )->installed() );
   EXPECT_FALSE( acl.common( 1 )->installed() );
}

TEST_F( CommitTest, UnderSimulationNothingIsInstalledYetTheBookkeepingCompletes ) {
   clean_.simulationVmidIs( "1" );
   build();
   ASSERT_FALSE( helper().installEntries() );
   auto acl = macAcl( "m", Acl::in_, { intfOf( 0, 1 ) } );
   rulesOutOfOrder( acl );
   acl.common( 0 )->aclRule( 0 )->lastReadValueIs( 7 );
   HalyardTest::FpCmdCapture fp;
   helper().commitAcl( acl.data() );
   EXPECT_TRUE( HalyardTest::linesStartingWith( fp.lines(), "fp entry install" ).empty() );
   for ( const U32 e : entriesInRuleOrder( acl, 0 ) ) {
      EXPECT_FALSE( installed( 0, e ) );
   }
   EXPECT_TRUE( acl.common( 0 )->installed() );
   EXPECT_EQ( acl.common( 0 )->aclRule( 0 )->lastReadValue(), 0u );
}

TEST_F( CommitTest, AnAclWithoutRecordsCommitsNothing ) {
   build();
   HalyardTest::FpCmdCapture fp;
   helper().commitAcl( HalyardTest::aclDataOf( "none", Acl::mac_, Acl::in_ ) );
   EXPECT_TRUE( fp.lines().empty() );
   EXPECT_FALSE( helper().halyardAclDataHas( Fennel::AclKey( "none", Acl::mac_, Acl::in_ ) ) );
}

}  // namespace
}  // namespace AclRulesTest
