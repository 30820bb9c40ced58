// Which entry of a group a packet hits: installed and enabled entries only, the highest
// priority, then the lowest ordinal; one hit per group, each group of a stage yielding its own.
#include <optional>

#include "platform/tcam/HalyardBoundedTcamEntryManager.h"
#include "tests/sim/lookup/LookupFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimLookupTest::Order" )

namespace SimLookupTest {
namespace {

class OrderTest : public LookupTest {
 protected:
   // An entry of `a` that matches every packet and sends CPU copies to queue `queue`; its
   // priority is set before it is installed, as the manager requires.
   U32 queueEntry( TcamGroupAssignment a, U32 queue, std::optional<U32> priority = {} ) {
      const U32 e = acquire( a );
      SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionCosQCpuNew, queue, 0 ) );
      if ( priority ) {
         manager( e ).setPriorityForEntry( kUnit, e, *priority );
      }
      install( e );
      return e;
   }
};

TEST_F( OrderTest, TheHighestPriorityWinsWhateverTheOrderOfAcquisition ) {
   const U32 low = queueEntry( tcamGroupIpAcl, 1, 10 );
   const U32 high = queueEntry( tcamGroupIpAcl, 2, 0x7fffffff );
   const U32 mid = queueEntry( tcamGroupIpAcl, 3, 500 );
   SwitchVerdict v = inject( 80 );
   EXPECT_EQ( 2u, v.ingress.cpuQueue ) << v.text();
   EXPECT_EQ( high, v.ingress.hitIn( tcamGroupIpAcl ) );
   EXPECT_EQ( 1u, hits( high ) );
   EXPECT_EQ( 0u, hits( mid ) + hits( low ) );

   // Out of the chip, the winner gives way to the next priority.
   manager( high ).removeEntry( kUnit, high );
   v = inject( 80 );
   EXPECT_EQ( 3u, v.ingress.cpuQueue ) << v.text();
   EXPECT_EQ( 1u, hits( mid ) );
   EXPECT_EQ( 1u, hits( high ) );
   EXPECT_EQ( 0u, hits( low ) );
}

TEST_F( OrderTest, EqualPrioritiesHitInOrderOfAcquisitionAndCompressionKeepsIt ) {
   const U32 gone = acquire( tcamGroupIpAcl );
   const U32 first = queueEntry( tcamGroupIpAcl, 1 );
   const U32 second = queueEntry( tcamGroupIpAcl, 2 );
   EXPECT_EQ( first, inject( 80 ).ingress.hitIn( tcamGroupIpAcl ) );

   sw_.groupManager()->unboundedEntryManager( tcamGroupIpAcl )->releaseEntry( kUnit, gone );
   manager( first ).compressEntries( kUnit );
   const SwitchVerdict v = inject( 80 );
   EXPECT_EQ( first, v.ingress.hitIn( tcamGroupIpAcl ) ) << v.text();
   EXPECT_EQ( 1u, v.ingress.cpuQueue );
   EXPECT_EQ( 2u, hits( first ) );
   EXPECT_EQ( 0u, hits( second ) );
}

TEST_F( OrderTest, ABoundedEntryIsOrderedByItsIndexNotByAcquisition ) {
   const auto mgmt = sw_.groupManager()->entryManager( tcamGroupAclMgmt );
   ASSERT_TRUE( mgmt );
   const U32 later = mgmt->getEntry( kUnit, mgmt->entryBase() + 3, "index 3" );
   const U32 earlier = mgmt->getEntry( kUnit, mgmt->entryBase() + 1, "index 1" );
   SDK_CHECK( bcm_field_action_add( kUnit, later, bcmFieldActionCosQCpuNew, 3, 0 ) );
   SDK_CHECK( bcm_field_action_add( kUnit, earlier, bcmFieldActionCosQCpuNew, 1, 0 ) );
   install( later );
   EXPECT_EQ( 3u, inject( 80 ).ingress.cpuQueue );
   install( earlier );
   const SwitchVerdict v = inject( 80 );
   EXPECT_EQ( 1u, v.ingress.cpuQueue ) << v.text();
   EXPECT_EQ( earlier, v.ingress.hitIn( tcamGroupAclMgmt ) );
   EXPECT_EQ( 1u, hits( later ) );
   EXPECT_EQ( 1u, hits( earlier ) );
}

TEST_F( OrderTest, EveryGroupOfAStageYieldsOneHitInGroupPrecedence ) {
   const U32 mac = queueEntry( tcamGroupMacAcl, 1 );
   const U32 macLower = queueEntry( tcamGroupMacAcl, 2, 0 );
   const U32 ip = queueEntry( tcamGroupIpAcl, 3 );
   const SwitchVerdict v = inject( 80 );
   // The IP ACL group stands above the MAC ACL group.
   ASSERT_EQ( 2u, v.ingress.hits.size() ) << v.text();
   EXPECT_EQ( ( StageHit{ Stage::Ifp, tcamGroupIpAcl, ip, std::nullopt } ), v.ingress.hits[0] );
   EXPECT_EQ( ( StageHit{ Stage::Ifp, tcamGroupMacAcl, mac, std::nullopt } ), v.ingress.hits[1] );
   EXPECT_EQ( 1u, hits( ip ) );
   EXPECT_EQ( 1u, hits( mac ) );
   EXPECT_EQ( 0u, hits( macLower ) );
}

TEST_F( OrderTest, EntriesNotInstalledOrDisabledNeverHit ) {
   const U32 e = acquire( tcamGroupIpAcl );
   SDK_CHECK( bcm_field_qualify_L4DstPort( kUnit, e, 22, 0xffff ) );
   SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) );
   SwitchVerdict v = inject( 22 );
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_EQ( 0u, hits( e ) );

   install( e );
   EXPECT_TRUE( inject( 22 ).dropped() );
   EXPECT_EQ( 1u, hits( e ) );

   manager( e ).enableEntry( kUnit, e, false, 0 );
   v = inject( 22 );
   EXPECT_FALSE( v.dropped() ) << v.text();
   EXPECT_EQ( std::nullopt, v.ingress.hitIn( tcamGroupIpAcl ) );
   EXPECT_EQ( 1u, hits( e ) );

   manager( e ).enableEntry( kUnit, e, true, 0 );
   EXPECT_TRUE( inject( 22 ).dropped() );
   EXPECT_EQ( 2u, hits( e ) );

   manager( e ).removeEntry( kUnit, e );
   EXPECT_TRUE( inject( 22 ).forwarded() );
   EXPECT_EQ( 2u, hits( e ) );
   // Removed is not released: the entry is still the caller's, and installs again.
   install( e );
   EXPECT_TRUE( inject( 22 ).dropped() );
   EXPECT_EQ( 3u, hits( e ) );
}

}  // namespace
}  // namespace SimLookupTest
