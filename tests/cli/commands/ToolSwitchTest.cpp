// The tool's switch programmed through the generic layer, read back: the apply summary against
// the chips, its JSON form key for key, a list that does not fit, the changes this build
// refuses, and the trace's units against the chips that hold the entries.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <numeric>
#include <set>

#include "cli/config/ConfigText.h"
#include "cli/report/ApplySummary.h"
#include "cli/switch/ApplyConfigs.h"
#include "cli/switch/ConfigChange.h"
#include "cli/trace/FpCommandLog.h"
#include "sim/switch/ProfileText.h"

namespace {

using namespace HalyardCli;

const std::string kDemo = std::string( HALYARD_SOURCE_DIR ) + "/examples/acls/demo.acl";

const char* const kSmall = R"(
ip access-list web
   10 permit tcp any host 10.0.1.10 eq www
   20 deny udp 10.0.0.0/8 any range 1000 1999
mac access-list l2
   10 deny 02:00:00:00:0b:00 ff:ff:ff:ff:ff:00 any
interface Ethernet1
   ip access-group web in
interface Ethernet26
   mac access-group l2 out
)";

AclSetup setupOf( const std::string& text ) {
   return parseConfig( text, "test.acl" );
}

U32 chipEntries( const Sim::ChipModel& chip ) {
   U32 n = 0;
   for ( Sim::GroupId g : chip.groups() ) {
      n += chip.group( g )->entryCount;
   }
   return n;
}

TEST( ApplySummary, EveryEntryOfTheChipsIsInAGroupAndEveryAclEntryInAnAcl ) {
   AclSwitch sw( Sim::defaultProfile() );
   sw.apply( readConfigFile( kDemo ) );
   const ApplySummary summary = summarize( sw );
   ASSERT_TRUE( summary.allStand() );
   ASSERT_EQ( 2u, summary.units.size() );
   for ( const UnitSummary& unit : summary.units ) {
      const U32 inGroups = std::accumulate( unit.groups.begin(), unit.groups.end(), 0u,
                                            []( U32 n, const auto& g ) { return n + g.used; } );
      EXPECT_EQ( chipEntries( sw.simSwitch().chip( unit.unit ) ), inGroups ) << unit.unit;
      U32 hidden = 0;
      for ( const GroupOnUnit& g : unit.groups ) {
         if ( g.name == "tcamGroupAclMgmt" || g.name == "tcamGroupAclPortBlocking" ) {
            hidden += g.used;
            EXPECT_EQ( 1u, g.slices ) << g.name;
         }
      }
      const U32 inAcls = std::accumulate( unit.acls.begin(), unit.acls.end(), 0u,
                                          []( U32 n, const auto& a ) { return n + a.entries; } );
      EXPECT_EQ( inGroups - hidden, inAcls ) << unit.unit;
      EXPECT_EQ( unit.rangeCheckerCapacity, unit.rangeCheckersUsed )
          << "the demo asks for more ranges than a chip has checkers";
   }
   // The ranges that found no checker went in as blocks, and cost more entries.
   ASSERT_FALSE( summary.expanded.empty() );
   for ( const ExpandedSummary& e : summary.expanded ) {
      EXPECT_GT( e.entries, e.entriesWithCheckers ) << e.acl << " " << e.seq;
   }
}

class Changes : public testing::Test {
 protected:
   bool programmable( const std::vector<std::string>& texts, std::string* why = nullptr ) {
      ConfigFiles files;
      for ( std::size_t i = 0; i < texts.size(); ++i ) {
         files.paths.push_back( "c" + std::to_string( i ) + ".acl" );
         files.setups.push_back( setupOf( texts[i] ) );
      }
      std::ostringstream err;
      const bool ok = HalyardCli::programmable( files, "apply", err );
      if ( why ) {
         *why = err.str();
      }
      return ok;
   }
};

TEST_F( Changes, ChangedListsAndBindingsAreApplied ) {
   std::string changed = kSmall;
   changed.replace( changed.find( "eq www" ), 6, "eq 443" );
   EXPECT_TRUE( programmable( { kSmall, changed } ) );
   EXPECT_TRUE( programmable( { kSmall, "" } ) ) << "everything torn down";
}

TEST_F( Changes, ReapplyingUnderBlockingUpdatesIsRefusedAndNewListsAreNot ) {
   const std::string deny =
       std::string( kSmall ) + "hardware access-list update default-result deny\n";
   std::string changed = deny;
   changed.replace( changed.find( "eq www" ), 6, "eq 443" );
   std::string why;
   EXPECT_FALSE( programmable( { deny, changed }, &why ) );
   EXPECT_NE( std::string::npos, why.find( "ip access-list web in would be applied again" ) )
       << why;
   EXPECT_TRUE(
       programmable( { deny, deny + "mac access-list m\n 10 permit any any\ninterface Ethernet9\n"
                                    " mac access-group m in\n" } ) );
}

TEST_F( Changes, RouterAclsAndSubInterfacesAreNotServed ) {
   std::string why;
   EXPECT_FALSE( programmable(
       { "ip access-list r\n 10 permit ip any any\ninterface Vlan100\n ip access-group r in\n" },
       &why ) );
   EXPECT_NE( std::string::npos,
              why.find( "interface Vlan100: ip access-group r in: router ACLs" ) )
       << why;
}

TEST( Trace, EachCommandGoesToTheUnitWhoseChipHoldsTheEntry ) {
   AclSwitch sw( Sim::defaultProfile() );
   sw.bringUp();
   std::vector<FpCommandLog::Line> lines;
   {
      FpCommandLog log( sw.simSwitch() );
      sw.apply( setupOf( kSmall ) );
      lines = log.lines();
   }
   std::map<U32, U32> installs;
   std::map<U32, std::set<U64>> entries;
   for ( const FpCommandLog::Line& line : lines ) {
      const auto entry = fpCommandEntry( line.text );
      ASSERT_TRUE( entry ) << line.text;
      entries[line.unit].insert( *entry );
      installs[line.unit] += line.text.starts_with( "fp entry install " ) ? 1 : 0;
   }
   ASSERT_EQ( 2u, entries.size() );
   for ( const auto& [unit, ids] : entries ) {
      for ( U64 id : ids ) {
         EXPECT_TRUE( sw.simSwitch().chip( unit ).entryExists( static_cast<Sim::EntryId>( id ) ) )
             << "unit " << unit << " entry " << id;
      }
   }
   // Both units hold the same lists: the same number of installs on each, at least one per
   // entry of the ACLs.
   EXPECT_EQ( installs[0], installs[1] );
   const ApplySummary summary = summarize( sw );
   for ( const UnitSummary& unit : summary.units ) {
      U32 entriesOfAcls = 0;
      for ( const AclOnUnit& acl : unit.acls ) {
         entriesOfAcls += acl.entries;
      }
      EXPECT_GE( installs[unit.unit], entriesOfAcls ) << unit.unit;
   }
}

}  // namespace
