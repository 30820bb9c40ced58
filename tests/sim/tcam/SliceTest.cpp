// Slices on demand: the groups of a stage share its slices, take one when they need room and
// give it back once it is empty; entriesAvailable and the exhausted notices follow the pool.
#include <gtest/gtest.h>

#include <vector>

#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

constexpr U32 kUnit = 0;
constexpr U32 kSliceEntries = 8;

std::size_t at( Stage s ) {
   return static_cast<std::size_t>( s );
}

// IFP: four slices of 8 narrow entries; VFP: two of 4; EFP is not divided.
ChipConfig slicedChip() {
   ChipConfig c{ 32, 0, 4, 4 };
   c.slices[at( Stage::Ifp )].narrowEntries = { kSliceEntries, kSliceEntries, kSliceEntries,
                                                kSliceEntries };
   c.slices[at( Stage::Vfp )].narrowEntries = { 4, 4 };
   return c;
}

class SliceTest : public ::testing::Test {
 protected:
   static GroupTable table() {
      return GroupTable{
          { tcamGroupMacAcl, { Stage::Ifp, 50, 5, false } },  // a group shrunk to 5 entries
          { tcamGroupIpAcl, { Stage::Ifp, 60, 1000, false } },
          { tcamGroupIp6Acl, { Stage::Ifp, 59, 1000, false, true } },
          { tcamGroupAclMgmt, { Stage::Ifp, 95, 8, true } },
          { tcamGroupAclPortBlocking, { Stage::Ifp, 100, 4, true } },
          { tcamGroupIpAclVfp, { Stage::Vfp, 60, 1000, false } },
          { tcamGroupIpAclEgress, { Stage::Efp, 60, 3, false } },
      };
   }

   SliceTest() { gm->unitIs( kUnit, chip ); }

   std::vector<U32> take( Halyard::HalyardUnboundedTcamEntryManager& m, U32 count ) {
      std::vector<U32> ids;
      for ( U32 i = 0; i < count; ++i ) {
         ids.push_back( m.getEntry( kUnit, "slice test" ) );
         EXPECT_NE( 0u, ids.back() ) << "entry " << i;
      }
      return ids;
   }
   void give( Halyard::HalyardUnboundedTcamEntryManager& m, const std::vector<U32>& ids ) {
      for ( U32 id : ids ) {
         m.releaseEntry( kUnit, id );
      }
   }
   GroupUsage usage( TcamGroupAssignment a ) const {
      const UnitUsage u = *gm->unitUsage( kUnit );
      for ( const GroupUsage& g : u.groups ) {
         if ( g.assignment == a ) {
            return g;
         }
      }
      ADD_FAILURE() << "no group " << a;
      return {};
   }
   U32 freeIfpSlices() const { return gm->unitUsage( kUnit )->stages[at( Stage::Ifp )].freeSlices; }

   ChipModel chip{ slicedChip() };
   SimTcamGroupManager::Ptr gm = SimTcamGroupManager::create( table(), SdkCodes{} );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr ip = gm->unboundedEntryManager( tcamGroupIpAcl );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr ip6 =
       gm->unboundedEntryManager( tcamGroupIp6Acl );
   Halyard::HalyardUnboundedTcamEntryManager::Ptr mac =
       gm->unboundedEntryManager( tcamGroupMacAcl );
};

TEST_F( SliceTest, AGroupTakesASliceWhenItNeedsRoom ) {
   EXPECT_EQ( 4 * kSliceEntries, ip->entriesAvailable( kUnit ) );
   EXPECT_EQ( 4 * kSliceEntries / 2, ip6->entriesAvailable( kUnit ) ) << "a wide key: half";
   EXPECT_EQ( 4u, freeIfpSlices() );

   std::vector<U32> ids = take( *ip, 1 );
   EXPECT_EQ( 1u, usage( tcamGroupIpAcl ).slices );
   EXPECT_EQ( 3u, freeIfpSlices() );
   // The rest of its own slice, and what the three free slices would give it.
   EXPECT_EQ( 4 * kSliceEntries - 1, ip->entriesAvailable( kUnit ) );
   EXPECT_EQ( 3 * kSliceEntries / 2, ip6->entriesAvailable( kUnit ) );

   take( *ip, kSliceEntries - 1 );
   EXPECT_EQ( 1u, usage( tcamGroupIpAcl ).slices ) << "the first slice is full, no more";
   take( *ip, 1 );
   EXPECT_EQ( 2u, usage( tcamGroupIpAcl ).slices );
   const GroupUsage u = usage( tcamGroupIpAcl );
   EXPECT_EQ( kSliceEntries + 1, u.used );
   EXPECT_EQ( 4 * kSliceEntries, u.capacity );
   EXPECT_EQ( Stage::Ifp, u.stage );
}

TEST_F( SliceTest, AWideGroupGetsHalfASliceFromEachSlice ) {
   take( *ip6, kSliceEntries / 2 );
   EXPECT_EQ( 1u, usage( tcamGroupIp6Acl ).slices );
   take( *ip6, 1 );
   EXPECT_EQ( 2u, usage( tcamGroupIp6Acl ).slices );
   EXPECT_TRUE( usage( tcamGroupIp6Acl ).wide );
   EXPECT_EQ( 2 * kSliceEntries, ip->entriesAvailable( kUnit ) );
}

TEST_F( SliceTest, GroupsCompeteAndTheExhaustedNoticesFollowThePool ) {
   ExhaustedLog ip6Log;
   ip6Log.notifierIs( ip6 );
   const std::vector<U32> first = take( *ip, kSliceEntries );
   std::vector<U32> rest = take( *ip, 3 * kSliceEntries );
   EXPECT_EQ( 0u, freeIfpSlices() );
   EXPECT_TRUE( ip->exhausted( kUnit ) );
   // IPv6 holds no entry, yet nothing is left for it.
   EXPECT_EQ( std::vector<U32>{ kUnit }, ip6Log.take() );
   EXPECT_TRUE( ip6->exhausted( kUnit ) );
   EXPECT_EQ( 0u, ip6->getEntry( kUnit, "refused" ) );
   EXPECT_EQ( 0u, gm->entryManager( tcamGroupAclMgmt )
                      ->getEntry( kUnit, gm->entryManager( tcamGroupAclMgmt )->entryBase(), "m" ) );

   // A slice that keeps an entry stays with its group.
   give( *ip, { first.begin(), first.end() - 1 } );
   EXPECT_EQ( 0u, freeIfpSlices() );
   EXPECT_TRUE( ip6Log.take().empty() );
   EXPECT_EQ( kSliceEntries - 1, ip->entriesAvailable( kUnit ) );
   // Its last entry gone, the slice goes back to the stage, and IPv6 has room again.
   give( *ip, { first.back() } );
   EXPECT_EQ( 1u, freeIfpSlices() );
   EXPECT_EQ( std::vector<U32>{ kUnit }, ip6Log.take() );
   EXPECT_FALSE( ip6->exhausted( kUnit ) );
   EXPECT_EQ( kSliceEntries / 2, ip6->entriesAvailable( kUnit ) );
}

TEST_F( SliceTest, CompressionGivesTheEmptiedSlicesBackAndKeepsTheOrder ) {
   std::vector<U32> ids = take( *ip, 2 * kSliceEntries + 1 );  // slices of 8, 8 and 1
   EXPECT_EQ( 3u, usage( tcamGroupIpAcl ).slices );
   // Every other entry of the first two slices goes: 4 and 4 are left, and the 1.
   std::vector<U32> gone, kept;
   for ( std::size_t i = 0; i < ids.size(); ++i ) {
      ( i < 2 * kSliceEntries && i % 2 == 0 ? gone : kept ).push_back( ids[i] );
   }
   give( *ip, gone );
   EXPECT_EQ( 3u, usage( tcamGroupIpAcl ).slices );
   const std::vector<EntryId> order = chip.entries( tcamGroupIpAcl );
   EXPECT_EQ( kept, std::vector<U32>( order.begin(), order.end() ) );

   ExhaustedLog ip6Log;
   ip6Log.notifierIs( ip6 );
   ip->compressEntries( kUnit );
   EXPECT_EQ( 2u, usage( tcamGroupIpAcl ).slices ) << "9 entries fill one slice and a little";
   EXPECT_EQ( 2u, freeIfpSlices() );
   EXPECT_EQ( order, chip.entries( tcamGroupIpAcl ) );
   EXPECT_EQ( 4 * kSliceEntries - kept.size(), ip->entriesAvailable( kUnit ) );
   // Once a group has shrunk, the last slice goes with its last entry.
   give( *ip, kept );
   EXPECT_EQ( 0u, usage( tcamGroupIpAcl ).slices );
   EXPECT_EQ( 4u, freeIfpSlices() );
}

TEST_F( SliceTest, BoundedGroupsHoldASliceEachAndAShrunkGroupStarvesNoOther ) {
   auto mgmt = gm->entryManager( tcamGroupAclMgmt );
   auto blocking = gm->entryManager( tcamGroupAclPortBlocking );
   for ( U32 i = 0; i < 6; ++i ) {
      EXPECT_EQ( mgmt->entryBase() + i, mgmt->getEntry( kUnit, mgmt->entryBase() + i, "m" ) );
   }
   for ( U32 i = 0; i < 4; ++i ) {
      EXPECT_NE( 0u, blocking->getEntry( kUnit, blocking->entryBase() + i, "b" ) );
   }
   EXPECT_EQ( 1u, usage( tcamGroupAclMgmt ).slices );
   EXPECT_EQ( 1u, usage( tcamGroupAclPortBlocking ).slices );
   EXPECT_EQ( 2u, freeIfpSlices() );
   EXPECT_EQ( 8u, usage( tcamGroupAclMgmt ).capacity );

   take( *mac, 5 );
   EXPECT_TRUE( mac->exhausted( kUnit ) );
   EXPECT_EQ( 0u, mac->getEntry( kUnit, "beyond its capacity" ) );
   // Management, port blocking and MAC hold one slice each: one is left.
   EXPECT_EQ( kSliceEntries, ip->entriesAvailable( kUnit ) );
}

TEST_F( SliceTest, UsageNamesEveryGroupAndTheSharedPools ) {
   take( *ip, 3 );
   gm->unboundedEntryManager( tcamGroupIpAclVfp )->getEntry( kUnit, "vfp" );
   gm->unboundedEntryManager( tcamGroupIpAclEgress )->getEntry( kUnit, "efp" );
   ip->getRangeChecker( kUnit, RangeCheckerDesc( 10, 20, rangeCheckerSrcPort ) );
   const UnitUsage u = *gm->unitUsage( kUnit );
   EXPECT_EQ( table().size(), u.groups.size() );
   EXPECT_EQ( 1u, u.stages[at( Stage::Vfp )].freeSlices );
   EXPECT_EQ( 4u, u.stages[at( Stage::Ifp )].slices );
   EXPECT_EQ( 0u, u.stages[at( Stage::Efp )].slices ) << "EFP is not divided here";
   EXPECT_EQ( 3u, usage( tcamGroupIpAclEgress ).capacity ) << "its own capacity alone";
   EXPECT_EQ( 1u, u.rangeCheckersUsed );
   EXPECT_EQ( 4u, u.rangeCheckerCapacity );
   EXPECT_EQ( 0u, u.udfChunksUsed );
   EXPECT_FALSE( gm->unitUsage( 9 ) );
}

}  // namespace
}  // namespace Sim
