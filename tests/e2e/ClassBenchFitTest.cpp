// Does a large list fit? acl1_1k and fw1_1k in one IPv4 list, bound in on both units: it stands
// on the default switch, its groups holding slices of their own; on units shrunk to four IFP
// slices it does not fit, and the summary says why on each unit; taken away, it leaves every
// slice free again.
#include <gtest/gtest.h>

#include "cli/config/ConfigText.h"
#include "cli/report/ApplySummary.h"
#include "sim/switch/ProfileText.h"
#include "tests/e2e/ClassBenchFiles.h"

namespace {

using namespace HalyardCli;

const GroupOnUnit* group( const UnitSummary& unit, const std::string& name ) {
   for ( const GroupOnUnit& g : unit.groups ) {
      if ( g.name == name ) {
         return &g;
      }
   }
   return nullptr;
}

class TwoSetsInOneList : public testing::Test {
 protected:
   void SetUp() override {
      std::size_t rules = 0;
      setup_ =
          parseConfig( HalyardE2e::classBenchConfig( { "acl1_1k", "fw1_1k" }, &rules ), "cb.acl" );
      ASSERT_GT( rules, 1500u );
   }
   AclSetup setup_;
};

TEST_F( TwoSetsInOneList, StandsOnTheDefaultSwitchAndGivesItsSlicesBack ) {
   AclSwitch sw( Sim::defaultProfile() );
   sw.apply( setup_ );
   const ApplySummary summary = summarize( sw );
   EXPECT_TRUE( summary.allStand() );
   for ( const UnitSummary& unit : summary.units ) {
      const GroupOnUnit* ip = group( unit, "tcamGroupIpAcl" );
      ASSERT_TRUE( ip );
      EXPECT_GT( ip->slices, 1u ) << "unit " << unit.unit << ": more than one slice's entries";
   }

   sw.apply( parseConfig( "", "empty.acl" ) );
   for ( const UnitSummary& unit : summarize( sw ).units ) {
      for ( const StageSlices& stage : unit.stages ) {
         // IFP keeps the slices of the management and port-blocking groups.
         EXPECT_EQ( stage.slices - ( stage.stage == "IFP" ? 2 : 0 ), stage.free )
             << "unit " << unit.unit << " " << stage.stage;
      }
   }
}

TEST_F( TwoSetsInOneList, DoesNotFitFourIfpSlicesAndSaysWhyOnEachUnit ) {
   std::string text = Sim::profileText( Sim::defaultProfile() );
   for ( const char* name : { "name chip0", "name chip1" } ) {
      text.replace( text.find( name ), std::string( name ).size(),
                    std::string( name ) + " slices ifp:4" );
   }
   AclSwitch sw( Sim::parseProfile( text, "four-ifp-slices" ) );
   sw.apply( setup_ );
   const ApplySummary summary = summarize( sw );
   EXPECT_FALSE( summary.allStand() );
   for ( const UnitSummary& unit : summary.units ) {
      ASSERT_EQ( 1u, unit.acls.size() );
      EXPECT_FALSE( unit.acls[0].stands() );
      ASSERT_TRUE( unit.acls[0].error ) << "unit " << unit.unit;
      EXPECT_NE( std::string::npos, unit.acls[0].error->find( "no TCAM entries" ) )
          << *unit.acls[0].error;
   }
}

}  // namespace
