// The update-consistency probe over every kind of update the generic layer makes, and against
// a port update driven in the wrong order.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "cli/config/ConfigText.h"
#include "cli/switch/AclSwitch.h"
#include "platform/shim/Sdk.h"
#include "sim/probe/UpdateProbe.h"

namespace {

const char* const kList =
    "ip access-list web\n"
    " 10 permit tcp any any eq 80\n"
    " 20 deny udp any any\n"
    " 30 permit ip 10.0.0.0/8 any\n"
    " 40 deny ip any any\n"
    "mac access-list frames\n"
    " 10 permit any any 0x0806\n"
    " 20 deny any any\n";

std::string setup( bool permitDuringUpdate, const std::string& bindings ) {
   return std::string( permitDuringUpdate ? "hardware access-list update default-result permit\n"
                                          : "" ) +
          kList + bindings;
}

std::string bind( const std::vector<std::string>& intfs, const char* kind, const char* name,
                  const char* direction ) {
   std::string s;
   for ( const std::string& i : intfs ) {
      s += "interface " + i + "\n " + kind + " access-group " + name + " " + direction + "\n";
   }
   return s;
}

struct UpdateCase {
   const char* name;
   const char* kind;  // ip or mac
   const char* direction;
   std::vector<std::string> before;
   std::vector<std::string> after;
};

class UpdateProbeTest
    : public ::testing::TestWithParam<std::tuple<UpdateCase, bool /* permitDuringUpdate */> > {};

// Each change is applied as the tool applies it; the probe watches the whole application.
TEST_P( UpdateProbeTest, EveryPortMeetsAPrefixOfTheOldOrTheNewList ) {
   const auto& [c, permit] = GetParam();
   HalyardCli::AclSwitch sw( Sim::defaultProfile() );
   const std::string listName = std::string( c.kind ) == "ip" ? "web" : "frames";
   sw.apply( HalyardCli::parseConfig(
       setup( permit, bind( c.before, c.kind, listName.c_str(), c.direction ) ), "before" ) );

   Sim::UpdateProbe probe( sw.simSwitch() );
   probe.begin();
   sw.apply( HalyardCli::parseConfig(
       setup( permit, bind( c.after, c.kind, listName.c_str(), c.direction ) ), "after" ) );
   const std::vector<std::string> findings = probe.end();

   for ( const std::string& f : findings ) {
      ADD_FAILURE() << f;
   }
   // The change reached what the ports meet, so the probe had something to judge.
   EXPECT_TRUE( probe.changed() );
   EXPECT_GT( probe.callsSeen(), 0u );
}

const UpdateCase kCases[] = {
    { "ipInPortAdded", "ip", "in", { "Ethernet1" }, { "Ethernet1", "Ethernet2" } },
    { "ipInPortRemoved", "ip", "in", { "Ethernet1", "Ethernet2" }, { "Ethernet1" } },
    { "ipInOtherUnitAdded", "ip", "in", { "Ethernet1" }, { "Ethernet1", "Ethernet25" } },
    { "ipInFirstBinding", "ip", "in", {}, { "Ethernet3", "Ethernet26" } },
    { "ipInLastUnbound", "ip", "in", { "Ethernet3", "Ethernet26" }, {} },
    { "ipOutPortAdded", "ip", "out", { "Ethernet1" }, { "Ethernet1", "Ethernet2" } },
    { "ipOutPortRemoved", "ip", "out", { "Ethernet1", "Ethernet2" }, { "Ethernet2" } },
    { "macInPortAdded", "mac", "in", { "Ethernet4" }, { "Ethernet4", "Ethernet27" } },
    { "macInPortRemoved", "mac", "in", { "Ethernet4", "Ethernet27" }, { "Ethernet27" } },
    { "macOutPortAdded", "mac", "out", { "Ethernet4" }, { "Ethernet4", "Ethernet5" } },
};

INSTANTIATE_TEST_SUITE_P( Updates, UpdateProbeTest,
                          ::testing::Combine( ::testing::ValuesIn( kCases ), ::testing::Bool() ),
                          []( const auto& info ) {
                             return std::string( std::get<0>( info.param ).name ) +
                                    ( std::get<1>( info.param ) ? "_permitDuringUpdate" : "" );
                          } );

// Whether a packet at `port` meets the entry: its InPorts and its port class qualifier.
bool admits( const Sim::ChipModel& chip, Sim::EntryId id, U32 port ) {
   const auto in = chip.inPorts( id );
   if ( in && in->mask.test( port ) && !in->data.test( port ) ) {
      return false;
   }
   const auto cls = chip.qualifier( id, Sim::QualId::InterfaceClassPort );
   const U32 portClass = *chip.ports().portClass( port, Sim::PortClassKind::FieldIngress );
   return !cls || ( portClass & cls->maskU64() ) == ( cls->dataU64() & cls->maskU64() );
}

// The installed entries, in lookup order, of the ingress group that serves the port ACL bound on
// `bound` alone: they admit `bound` and not `other`.
std::vector<Sim::EntryId> portAclEntries( const Sim::ChipModel& chip, U32 bound, U32 other ) {
   for ( Sim::GroupId g : chip.groups() ) {
      std::vector<Sim::EntryId> found;
      for ( Sim::EntryId id : chip.entries( g ) ) {
         if ( chip.entryInstalled( id ).value_or( false ) && admits( chip, id, bound ) &&
              !admits( chip, id, other ) ) {
            found.push_back( id );
         }
      }
      if ( chip.group( g )->stage != Sim::Stage::Efp && found.size() >= 3 ) {
         return found;
      }
   }
   return {};
}

// A port taken away from an ACL must leave from the last rule backward (updateAclPorts with
// active false). The same hardware calls, made by hand, hold in that order and are reported
// in the reverse one, where the port keeps the later rules after losing the first.
TEST( UpdateProbeReversed, PortRemovedFromTheFirstRuleIsReported ) {
   HalyardCli::AclSwitch sw( Sim::defaultProfile() );
   sw.apply( HalyardCli::parseConfig(
       std::string( kList ) + bind( { "Ethernet1" }, "ip", "web", "in" ), "standing" ) );
   Sim::ChipModel& chip = sw.simSwitch().chip( 0 );
   const U32 bound = 1;  // Ethernet1 is port 1 of unit 0
   const std::vector<Sim::EntryId> entries = portAclEntries( chip, bound, 9 );
   ASSERT_GE( entries.size(), 3u ) << "no ingress entries of the ACL on unit 0";

   bcm_pbmp_t none{};
   bcm_pbmp_t all{};
   for ( U32 p = 0; p < chip.config().portCount; ++p ) {
      Shim::sdk_->BCM_PBMP_PORT_ADD( all, static_cast<int>( p ) );
   }
   const auto removeInOrder = [&]( bool descending, bcm_pbmp_t data ) {
      Sim::UpdateProbe probe( sw.simSwitch() );
      probe.begin();
      std::vector<Sim::EntryId> order = entries;
      if ( descending ) {
         std::reverse( order.begin(), order.end() );
      }
      for ( Sim::EntryId id : order ) {
         EXPECT_EQ( Shim::sdk_->bcm_field_qualify_InPorts( 0, id, data, all ), 0 );
         EXPECT_EQ( chip.entryInstall( id ), Sim::Status::Ok );
      }
      std::vector<std::string> findings = probe.end();
      EXPECT_TRUE( probe.changed() );
      return findings;
   };
   bcm_pbmp_t back{};
   Shim::sdk_->BCM_PBMP_PORT_ADD( back, static_cast<int>( bound ) );

   EXPECT_TRUE( removeInOrder( true, none ).empty() );
   // Back in ascending order, as a port is added: holds.
   EXPECT_TRUE( removeInOrder( false, back ).empty() );

   const std::vector<std::string> reversed = removeInOrder( false, none );
   ASSERT_FALSE( reversed.empty() );
   EXPECT_NE( reversed.front().find( "port 1 meets" ), std::string::npos ) << reversed.front();
   EXPECT_NE( reversed.front().find( "a prefix of neither the old [" ), std::string::npos )
       << reversed.front();
}

}  // namespace
