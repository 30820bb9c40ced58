// The peer agents: requests wait until a step carries them out, chip by chip; the chip is
// changed before the answer is published; a blocked VLAN's routed traffic meets the drop.
#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "platform/halyard/HalyardConstants.h"
#include "sim/switch/SimSwitch.h"
#include "tests/sim/switch/SwitchFixture.h"

namespace SimSwitchTest {
namespace {

using HalyardCentral::classDropRoutedTraffic_;
using HalyardVlanTopo::AclModSvi;
using Pylon::ModId;
using Pylon::VlanId;
using Sim::Status;

const ModId kMod0( 1 );  // unit 0
const ModId kMod1( 2 );  // unit 1

AclModSvi key( ModId mod, U16 vlan ) {
   return AclModSvi( mod, VlanId( vlan ) );
}

// What the chip held when each answer was published.
struct BlockedLog : HalyardVlanTopo::VlanTopoBlockedStatus::NotifieeConst {
   Sim::SimSwitch* sw = nullptr;
   std::vector<std::pair<AclModSvi, U32> > seen;  // key, L2 class of the VLAN on its unit
   void onBlocked( const AclModSvi& k ) override {
      const U32 unit = k.modId() == kMod0 ? 0 : 1;
      seen.emplace_back( k, sw->chip( unit ).vlans().l2Class( k.vlanId().value() ).value_or( 0 ) );
   }
};

class VlanTopoAgentTest : public ::testing::Test {
 protected:
   U32 l2Class( U32 unit, U16 vlan ) { return *sw.chip( unit ).vlans().l2Class( vlan ); }

   Sim::SimSwitch sw;
   HalyardVlanTopo::VlanTopoSliceStatus& requests = *sw.vlanTopoSliceStatus();
   HalyardVlanTopo::VlanTopoBlockedStatus& answers = *sw.vlanTopoBlockedStatus();
   Sim::VlanTopoAgent& agent = sw.vlanTopoAgent();
};

TEST_F( VlanTopoAgentTest, BlockWaitsForTheStepOfItsChip ) {
   requests.blockIs( key( kMod0, 100 ), true );
   EXPECT_EQ( 1u, agent.pending() );
   EXPECT_EQ( 1u, agent.pending( kMod0 ) );
   EXPECT_EQ( 0u, agent.pending( kMod1 ) );
   EXPECT_EQ( 0u, l2Class( 0, 100 ) );
   EXPECT_TRUE( answers.blocked().empty() );

   EXPECT_EQ( 0u, agent.step( kMod1 ) );
   EXPECT_TRUE( answers.blocked().empty() );
   EXPECT_EQ( 1u, agent.step( kMod0 ) );
   EXPECT_EQ( classDropRoutedTraffic_, l2Class( 0, 100 ) );
   EXPECT_EQ( 0u, l2Class( 1, 100 ) );
   EXPECT_TRUE( answers.blocked( key( kMod0, 100 ) ) );
   EXPECT_EQ( 0u, agent.pending() );
   EXPECT_EQ( 0u, agent.step() );  // nothing twice
}

TEST_F( VlanTopoAgentTest, ChipIsChangedBeforeTheAnswer ) {
   BlockedLog log;
   log.sw = &sw;
   log.notifierIs( sw.vlanTopoBlockedStatus() );
   requests.blockIs( key( kMod0, 100 ), true );
   requests.blockIs( key( kMod1, 100 ), true );
   requests.blockIs( key( kMod0, 200 ), true );
   EXPECT_EQ( 3u, sw.stepAgents() );
   using Seen = std::vector<std::pair<AclModSvi, U32> >;
   EXPECT_EQ( ( Seen{ { key( kMod0, 100 ), classDropRoutedTraffic_ },
                      { key( kMod0, 200 ), classDropRoutedTraffic_ },
                      { key( kMod1, 100 ), classDropRoutedTraffic_ } } ),
              log.seen );

   log.seen.clear();
   requests.blockDel( key( kMod1, 100 ) );
   requests.blockIs( key( kMod0, 200 ), false );
   EXPECT_EQ( 2u, agent.pending() );
   EXPECT_EQ( 2u, agent.step() );
   EXPECT_EQ( ( Seen{ { key( kMod0, 200 ), 0 }, { key( kMod1, 100 ), 0 } } ), log.seen );
   EXPECT_FALSE( answers.blockedHas( key( kMod1, 100 ) ) );
   EXPECT_FALSE( answers.blockedHas( key( kMod0, 200 ) ) );
   EXPECT_TRUE( answers.blocked( key( kMod0, 100 ) ) );
}

TEST_F( VlanTopoAgentTest, ClassRequestsShareTheL2ClassWithTheDropBit ) {
   const auto classes = requests.aclVlanClassIdPerChipIs( 0 );  // chip number of unit 0
   classes->vlanClassIdIs( 100, 0x21 | classDropRoutedTraffic_ );
   requests.blockIs( key( kMod0, 100 ), true );
   EXPECT_EQ( 2u, agent.pending( kMod0 ) );
   EXPECT_EQ( 2u, agent.step() );
   EXPECT_EQ( 0x21 | classDropRoutedTraffic_, l2Class( 0, 100 ) );

   classes->vlanClassIdDel( 100 );  // the block stands
   EXPECT_EQ( 1u, agent.step() );
   EXPECT_EQ( classDropRoutedTraffic_, l2Class( 0, 100 ) );

   classes->vlanClassIdIs( 100, 0x30 );
   requests.blockDel( key( kMod0, 100 ) );  // the class stands
   EXPECT_EQ( 2u, agent.step() );
   EXPECT_EQ( 0x30u, l2Class( 0, 100 ) );
   EXPECT_EQ( 0u, l2Class( 1, 100 ) );
}

TEST_F( VlanTopoAgentTest, RequestsForOtherModulesAreLeftAlone ) {
   requests.blockIs( key( ModId( 9 ), 100 ), true );
   requests.aclVlanClassIdPerChipIs( 7 )->vlanClassIdIs( 100, 1 );
   EXPECT_EQ( 0u, agent.pending() );
   EXPECT_EQ( 0u, agent.step() );
   EXPECT_TRUE( answers.blocked().empty() );
}

TEST_F( VlanTopoAgentTest, AnswerChangedBehindTheAgentIsPutRight ) {
   answers.blockedIs( key( kMod1, 200 ), true );  // left from an earlier life
   EXPECT_EQ( 1u, agent.pending( kMod1 ) );
   agent.step();
   EXPECT_FALSE( answers.blockedHas( key( kMod1, 200 ) ) );
}

TEST_F( VlanTopoAgentTest, BlockedVlanDropsRoutedTrafficOnceStepped ) {
   // What the VLAN-blocking management entry matches: the drop class on routed traffic.
   const auto mgmt = sw.groupManager()->entryManager( Halyard::tcamGroupAclMgmt );
   const U32 e = mgmt->getEntry( 0, mgmt->entryBase() + 5, "VLAN blocking entry" );
   Sim::ChipModel& chip = sw.chip( 0 );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, Sim::QualId::InterfaceClassL2,
                                            classDropRoutedTraffic_, classDropRoutedTraffic_ ) );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, Sim::QualId::L3Routable, 1, 1 ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, Sim::ActionId::Drop, 0, 0 ) );
   install( sw, 0, e );

   const auto routed = [&] {
      return sw.inject( "Ethernet1", tcpPacket().vlanIs( 100 ), "Vlan200" );
   };
   requests.blockIs( key( kMod0, 100 ), true );
   EXPECT_TRUE( routed().forwarded() );
   agent.step();
   EXPECT_TRUE( routed().dropped() );
   // Bridged traffic of the VLAN passes.
   EXPECT_TRUE( sw.inject( "Ethernet1", tcpPacket().vlanIs( 100 ), "Vlan100" ).forwarded() );
   requests.blockDel( key( kMod0, 100 ) );
   agent.step();
   EXPECT_TRUE( routed().forwarded() );
}

class L3AgentTest : public ::testing::Test {
 protected:
   U32 l3Class( U32 unit, U16 vlan ) { return *sw.chip( unit ).vlans().l3Class( vlan ); }
   HalyardL3::IntfClassIdPerChip::Ptr response( ModId mod ) {
      return sw.l3IntfStatus()->intfClassIdPerChipResponse( mod );
   }

   Sim::SimSwitch sw;
   HalyardL3::L3SliceAgentStatus& requests = *sw.l3SliceAgentStatus();
   Sim::L3Agent& agent = sw.l3Agent();
};

TEST_F( L3AgentTest, ClassWaitsForTheStepAndIsAnsweredPerChip ) {
   requests.intfClassIdPerChipRequestIs( kMod0 )->intfClassIdIs( 100, 0x1c );
   requests.intfClassIdPerChipRequestIs( kMod1 )->intfClassIdIs( 100, 0x1c );
   EXPECT_EQ( 2u, agent.pending() );
   EXPECT_EQ( 0u, l3Class( 0, 100 ) );
   EXPECT_FALSE( response( kMod0 )->intfClassIdHas( 100 ) );

   EXPECT_EQ( 1u, agent.step( kMod1 ) );
   EXPECT_EQ( 0x1cu, l3Class( 1, 100 ) );
   EXPECT_EQ( 0x1c, response( kMod1 )->intfClassId( 100 ) );
   EXPECT_EQ( 0u, l3Class( 0, 100 ) );
   EXPECT_FALSE( response( kMod0 )->intfClassIdHas( 100 ) );
   EXPECT_EQ( 1u, agent.pending() );

   EXPECT_EQ( 1u, sw.stepAgents() );
   EXPECT_EQ( 0x1cu, l3Class( 0, 100 ) );
   EXPECT_EQ( 0x1c, response( kMod0 )->intfClassId( 100 ) );
   EXPECT_EQ( 0u, agent.pending() );
}

TEST_F( L3AgentTest, WithdrawnRequestGoesBackToZeroAndKeepsTheAnswer ) {
   const auto request = requests.intfClassIdPerChipRequestIs( kMod0 );
   request->intfClassIdIs( 200, 0x84 );
   agent.step();
   request->intfClassIdIs( 200, 0x88 );
   EXPECT_EQ( 1u, agent.step() );
   EXPECT_EQ( 0x88u, l3Class( 0, 200 ) );

   request->intfClassIdDel( 200 );
   EXPECT_EQ( 1u, agent.pending() );
   EXPECT_EQ( 0x88u, l3Class( 0, 200 ) );
   EXPECT_EQ( 1u, agent.step() );
   EXPECT_EQ( 0u, l3Class( 0, 200 ) );
   EXPECT_TRUE( response( kMod0 )->intfClassIdHas( 200 ) );
   EXPECT_EQ( 0, response( kMod0 )->intfClassId( 200 ) );
   EXPECT_EQ( 0u, agent.pending() );
}

TEST_F( L3AgentTest, AnswerLeftFromARestartGoesBackToZero ) {
   response( kMod1 )->intfClassIdIs( 300, 5 );
   EXPECT_EQ( 1u, agent.pending( kMod1 ) );
   agent.step();
   EXPECT_EQ( 0, response( kMod1 )->intfClassId( 300 ) );
   EXPECT_EQ( 0u, l3Class( 1, 300 ) );
}

TEST_F( L3AgentTest, ClassReachesTheLookupOfTheVlan ) {
   const U32 e = newEntry( sw, 1, Halyard::tcamGroupRouterAcl );
   ASSERT_EQ( Status::Ok,
              sw.chip( 1 ).qualifierIs( e, Sim::QualId::InterfaceClassL3, 0x1c, 0x7c ) );
   ASSERT_EQ( Status::Ok, sw.chip( 1 ).actionIs( e, Sim::ActionId::Drop, 0, 0 ) );
   install( sw, 1, e );
   requests.intfClassIdPerChipRequestIs( kMod1 )->intfClassIdIs( 100, 0x1c );

   const auto fromVlan100 = [&] {
      return sw.inject( "Ethernet25", tcpPacket().vlanIs( 100 ), "Ethernet26" );
   };
   EXPECT_TRUE( fromVlan100().forwarded() );
   agent.step();
   EXPECT_TRUE( fromVlan100().dropped() );
   EXPECT_TRUE( sw.inject( "Ethernet25", tcpPacket().vlanIs( 200 ), "Ethernet26" ).forwarded() );
}

}  // namespace
}  // namespace SimSwitchTest
