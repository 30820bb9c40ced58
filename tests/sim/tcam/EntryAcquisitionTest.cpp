// Entries handed out and given back: capacity, exhaustion notices, ids and their owners.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

class EntryAcquisition : public TcamTest {
 protected:
   std::vector<U32> fill( U32 count, U32 unit = kUnit ) {
      std::vector<U32> ids;
      for ( U32 i = 0; i < count; ++i ) {
         ids.push_back( ip->getEntry( unit, "acl" + std::to_string( i ) ) );
         EXPECT_NE( 0u, ids.back() );
      }
      return ids;
   }
};

TEST_F( EntryAcquisition, CapacityReachedGivesZeroAndNothingOnTheChip ) {
   fill( kIpCapacity );
   EXPECT_EQ( 0u, ip->entriesAvailable( kUnit ) );
   EXPECT_EQ( kIpCapacity, ip->entriesInUse( kUnit ) );
   EXPECT_EQ( 0u, ip->getEntry( kUnit, "one too many" ) );
   EXPECT_EQ( kIpCapacity, chip.group( tcamGroupIpAcl )->entryCount );
   // The other unit has its own capacity.
   EXPECT_EQ( kIpCapacity, ip->entriesAvailable( kOther ) );
   EXPECT_EQ( 0u, ip->getEntry( 7, "unknown unit" ) );
}

TEST_F( EntryAcquisition, FreedEntriesCountAtOnce ) {
   std::vector<U32> ids = fill( kIpCapacity );
   ip->releaseEntry( kUnit, ids[1] );
   EXPECT_EQ( 1u, ip->entriesAvailable( kUnit ) );
   EXPECT_EQ( kIpCapacity - 1, ip->entriesInUse( kUnit ) );
   EXPECT_FALSE( chip.entryExists( ids[1] ) );
   EXPECT_EQ( nullptr, gm->tcamEntryMgr( ids[1] ) );
   const U32 again = ip->getEntry( kUnit, "again" );
   EXPECT_NE( 0u, again );
   EXPECT_NE( ids[1], again ) << "an id is never issued twice";
}

TEST_F( EntryAcquisition, ExhaustedNotifiesEachTransitionBothWays ) {
   ExhaustedLog log;
   log.notifierIs( ip );
   std::vector<U32> ids = fill( kIpCapacity - 1 );
   EXPECT_TRUE( log.take().empty() );
   EXPECT_FALSE( ip->exhausted().has( kUnit ) ) << "no record written while nothing changed";
   ids.push_back( ip->getEntry( kUnit, "last" ) );
   EXPECT_EQ( std::vector<U32>{ kUnit }, log.take() );
   EXPECT_TRUE( ip->exhausted( kUnit ) );
   EXPECT_EQ( 0u, ip->getEntry( kUnit, "refused" ) );
   EXPECT_TRUE( log.take().empty() );
   ip->releaseEntry( kUnit, ids[0] );
   EXPECT_EQ( std::vector<U32>{ kUnit }, log.take() );
   EXPECT_FALSE( ip->exhausted( kUnit ) );
   ip->releaseEntry( kUnit, ids[1] );
   EXPECT_TRUE( log.take().empty() );
   fill( kIpCapacity, kOther );
   EXPECT_EQ( std::vector<U32>{ kOther }, log.take() );
   EXPECT_FALSE( ip->exhausted( kUnit ) );
}

TEST_F( EntryAcquisition, AGroupWithoutRoomStartsExhausted ) {
   GroupTable table = smallTable();
   table[tcamGroupMacAcl].capacity = 0;
   ChipModel third;
   auto gm2 = SimTcamGroupManager::create( table, SdkCodes{} );
   gm2->unitIs( kUnit, third );
   EXPECT_TRUE( gm2->unboundedEntryManager( tcamGroupMacAcl )->exhausted( kUnit ) );
   EXPECT_FALSE( gm2->unboundedEntryManager( tcamGroupIpAcl )->exhausted().has( kUnit ) );
}

TEST_F( EntryAcquisition, IdsAreUniqueAcrossUnitsAndManagersAndFindTheirOwner ) {
   const U32 a = ip->getEntry( kUnit, "a" );
   const U32 b = ip->getEntry( kOther, "b" );
   const U32 m = mac->getEntry( kUnit, "m" );
   EXPECT_NE( a, b );
   EXPECT_NE( a, m );
   EXPECT_EQ( ip, gm->tcamEntryMgr( a ) );
   EXPECT_EQ( ip, gm->tcamEntryMgr( b ) );
   EXPECT_EQ( mac, gm->tcamEntryMgr( m ) ) << "the owner, not the caller's manager";
   EXPECT_EQ( Vesper::String( "m" ), gm->entryDescription( kUnit, m ) );
   EXPECT_EQ( std::optional<GroupId>( tcamGroupMacAcl ), chip.entryGroup( m ) );
   EXPECT_FALSE( otherChip.entryExists( a ) );
}

TEST_F( EntryAcquisition, AnEntryGivenBackThroughAnotherManagerGoesToItsOwnGroup ) {
   const U32 v = vfp->getEntry( kUnit, "vfp rule" );
   ip->releaseEntry( kUnit, v );
   EXPECT_EQ( 0u, vfp->entriesInUse( kUnit ) );
   EXPECT_EQ( 0u, ip->entriesInUse( kUnit ) );
   EXPECT_FALSE( chip.entryExists( v ) );
}

TEST_F( EntryAcquisition, NewEntriesStandAtTheGroupPriorityInAcquisitionOrder ) {
   std::vector<U32> ids = fill( kIpCapacity );
   EXPECT_EQ( 60u, ip->groupPriority() );
   EXPECT_EQ( ids, chip.entries( tcamGroupIpAcl ) );
   for ( std::size_t i = 0; i < ids.size(); ++i ) {
      EXPECT_EQ( 60u, chip.entryPriority( ids[i] ) );
      EXPECT_EQ( i, chip.entryOrdinal( ids[i] ) );
   }
}

TEST_F( EntryAcquisition, BoundedEntriesAreBasePlusIndexOnEveryUnit ) {
   const U32 base = mgmt->entryBase();
   EXPECT_NE( 0u, base );
   EXPECT_EQ( base + 2, mgmt->getEntry( kUnit, base + 2, "Log and drop marked ACL packets" ) );
   EXPECT_EQ( base + 0, mgmt->getEntry( kUnit, base, "Prevent ACL logging" ) );
   EXPECT_EQ( base + 2, mgmt->getEntry( kUnit, base + 2, "asked twice" ) );
   EXPECT_EQ( 2u, mgmt->entriesInUse( kUnit ) );
   EXPECT_EQ( Vesper::String( "Log and drop marked ACL packets" ),
              gm->entryDescription( kUnit, base + 2 ) );
   EXPECT_EQ( base + 2, mgmt->getEntry( kOther, base + 2, "other unit" ) );
   EXPECT_EQ( mgmt, gm->tcamEntryMgr( base + 2 ) );
   // Ordinals are the indices: the lower index wins a tie whatever the order of asking.
   EXPECT_EQ( ( std::vector<EntryId>{ base, base + 2 } ), chip.entries( tcamGroupAclMgmt ) );
   EXPECT_EQ( 0u, mgmt->getEntry( kUnit, base + 8, "beyond the range" ) );
   EXPECT_EQ( 0u, mgmt->getEntry( kUnit, base - 1, "below the range" ) );
   // The two bounded ranges and the unbounded ids do not meet.
   auto blocking = gm->entryManager( tcamGroupAclPortBlocking );
   EXPECT_TRUE( blocking->entryBase() >= base + 8 || blocking->entryBase() + 4 <= base );
   EXPECT_GE( ip->getEntry( kUnit, "acl" ), std::max( base + 8, blocking->entryBase() + 4 ) );
}

using EntryAcquisitionDeathTest = EntryAcquisition;

TEST_F( EntryAcquisitionDeathTest, ReleasingAnUnknownEntryStops ) {
   EXPECT_DEATH( ip->releaseEntry( kUnit, 4242 ),
                 "releaseEntry of an entry the group manager does not hold on the unit" );
}

}  // namespace
}  // namespace Sim
