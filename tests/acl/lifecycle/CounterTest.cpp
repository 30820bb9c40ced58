// Rule counters: packets pushed through the switch show up on the rules they hit, added over
// the rule's entries and units; each poll gives only what is new; the entry that lets later
// fragments of a permitted flow through does not count for its rule; a rebuilt rule counts
// from zero.
#include <gtest/gtest.h>

#include "platform/vesper/ActivityLock.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclLifecycleTest {

using namespace HalyardTest;
namespace {

using HalyardTest::intfOf;

class CounterTest : public ::testing::Test {
 protected:
   void SetUp() override {
      acl_.bound( intfOf( 0, 1 ) );
      acl_.bound( intfOf( 1, 1 ) );
      web_.fragmentRule = true;
      ASSERT_EQ( Fennel::aclCreateSuccess, acl_.applied( { web_, udp_ } ) );
   }

   // Sends `count` copies in on port 1 of the unit, out by its port 4; the rule each hit.
   void sent( U32 unit, const Sim::Packet& p, U32 count, std::optional<U32> rule ) {
      for ( U32 i = 0; i < count; ++i ) {
         const Sim::SwitchVerdict v =
             sw_.sim().inject( intfName( unit, 1 ), p, intfName( unit, 4 ) );
         ASSERT_EQ( rule, acl_.ruleHit( v ) ) << v.text();
      }
   }
   U64 polled( const Rule& rule ) {
      return sw_.helper()->aclRuleCountersSinceLastPoll( acl_.data(), 10, rule.config.uniqueId() );
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3", "trident3" } ) };
   DrivenAcl acl_{ sw_, "cnt", Acl::ip_, Acl::in_ };
   Rule web_ = ip4( Acl::permit_, 6, "10.0.0.0/8", { dstPortEq( 80 ), dstPortEq( 443 ) } );
   Rule udp_ = ip4( Acl::deny_, 17, "0.0.0.0/0" );
};

TEST_F( CounterTest, HitsAddUpOverEntriesAndUnitsAndEachPollGivesWhatIsNew ) {
   EXPECT_TRUE( sw_.helper()->aclCountersAllocated( acl_.data() ) );
   sent( 0, tcpPacket( "10.1.1.1", 80 ), 3, 0 );
   sent( 1, tcpPacket( "10.1.1.1", 443 ), 2, 0 );
   Sim::Packet later = tcpPacket( "10.1.1.1", 80 );
   later.fragmentIs( false, 100 );
   sent( 0, later, 1, 0 );
   sent( 1, udpPacket( "11.0.0.1", 53 ), 4, 1 );
   sent( 0, tcpPacket( "11.0.0.1", 80 ), 1, 2 );

   EXPECT_EQ( 5u, polled( web_ ) );
   EXPECT_EQ( 4u, polled( udp_ ) );
   EXPECT_EQ( 0u, polled( web_ ) );
   EXPECT_EQ( 0u, polled( udp_ ) );
   sent( 1, tcpPacket( "10.1.1.1", 80 ), 1, 0 );
   EXPECT_EQ( 1u, polled( web_ ) );
}

// The hardware count of an entry went down (it was replaced under the rule): the poll treats it
// as a restart from zero and reports it whole.
TEST_F( CounterTest, ACountThatWentBackIsReportedWhole ) {
   sent( 0, udpPacket( "11.0.0.1", 53 ), 3, 1 );
   EXPECT_EQ( 3u, polled( udp_ ) );
   for ( const U32 entry : acl_.ruleEntries( 0, 1 ) ) {
      ASSERT_EQ( Sim::Status::Ok, sw_.chip( 0 ).entryHitsIs( entry, 0 ) );
   }
   sent( 0, udpPacket( "11.0.0.1", 53 ), 1, 1 );
   EXPECT_EQ( 1u, polled( udp_ ) );
   sent( 0, udpPacket( "11.0.0.1", 53 ), 2, 1 );
   EXPECT_EQ( 2u, polled( udp_ ) );
}

TEST_F( CounterTest, ARecommittedRuleCountsFromZero ) {
   sent( 0, tcpPacket( "10.1.1.1", 80 ), 4, 0 );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl_.reapplied() );
   EXPECT_EQ( 0u, polled( web_ ) );
   sent( 0, tcpPacket( "10.1.1.1", 443 ), 2, 0 );
   EXPECT_EQ( 2u, polled( web_ ) );
}

}  // namespace
}  // namespace AclLifecycleTest
