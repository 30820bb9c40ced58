// The default group table and the groups a unit gets on its chip.
#include "tests/sim/tcam/TcamFixture.h"

namespace Sim {
namespace {

using namespace Halyard;

// A Tomahawk-class chip: 12 IFP slices of 512 narrow entries, 4 VFP and 4 EFP slices of 256.
const StageCapacities kStages{ { 4, 256 }, { 12, 512 }, { 4, 256 } };

TEST( DefaultGroupTable, EveryAssignmentWithItsKindAndStage ) {
   const GroupTable table = defaultGroupTable( kStages );
   EXPECT_EQ( std::size( tcamGroupAssignmentAll ), table.size() );
   for ( TcamGroupAssignment a : tcamGroupAssignmentAll ) {
      ASSERT_TRUE( table.count( a ) ) << a;
      EXPECT_EQ( isBoundedAssignment( a ), table.at( a ).bounded ) << a;
      EXPECT_GT( table.at( a ).capacity, 0u ) << a;
   }
   EXPECT_EQ( Stage::Vfp, table.at( tcamGroupIp6StdAclVfp ).stage );
   EXPECT_EQ( Stage::Efp, table.at( tcamGroupIp6StdAclRouterEgress ).stage );
   EXPECT_EQ( Stage::Ifp, table.at( tcamGroupMirroringAcl3 ).stage );
}

// A group may grow to the whole stage (half of it with the wide key): the slices, which the
// groups share, set the limit.
TEST( DefaultGroupTable, CapacitiesCapAtTheWholeStage ) {
   const GroupTable table = defaultGroupTable( kStages );
   EXPECT_EQ( 12u * 512, table.at( tcamGroupIpAcl ).capacity );
   EXPECT_EQ( 12u * 256, table.at( tcamGroupIp6Acl ).capacity );
   EXPECT_TRUE( table.at( tcamGroupIp6Acl ).wide );
   EXPECT_FALSE( table.at( tcamGroupIp6StdAcl ).wide );
   EXPECT_EQ( 12u * 512, table.at( tcamGroupIp6StdAcl ).capacity );
   EXPECT_EQ( 4u * 256, table.at( tcamGroupIpAclVfp ).capacity );
   EXPECT_EQ( 4u * 128, table.at( tcamGroupIp6AclEgress ).capacity );
   EXPECT_EQ( kMgmtGroupEntries, table.at( tcamGroupAclMgmt ).capacity );
   EXPECT_EQ( kPortBlockingGroupEntries, table.at( tcamGroupAclPortBlocking ).capacity );
   // Tiny stages leave the bounded groups what there is.
   const GroupTable tiny = defaultGroupTable( { { 1, 1 }, { 1, 2 }, { 0, 0 } } );
   EXPECT_EQ( 2u, tiny.at( tcamGroupAclMgmt ).capacity );
   EXPECT_EQ( 2u, tiny.at( tcamGroupAclPortBlocking ).capacity );
   EXPECT_EQ( 0u, tiny.at( tcamGroupIpAclEgress ).capacity );
}

TEST( DefaultGroupTable, BlockingAndManagementStandAboveTheAcls ) {
   const GroupTable table = defaultGroupTable( kStages );
   const U32 mgmt = table.at( tcamGroupAclMgmt ).priority;
   EXPECT_GT( table.at( tcamGroupAclPortBlocking ).priority, mgmt );
   for ( const auto& [a, def] : table ) {
      if ( def.stage == Stage::Ifp && !def.bounded ) {
         EXPECT_LT( def.priority, mgmt ) << a;
      }
   }
   EXPECT_GT( table.at( tcamGroupRouterAcl ).priority, table.at( tcamGroupIpAcl ).priority );
   EXPECT_GT( table.at( tcamGroupIpAcl ).priority, table.at( tcamGroupMacAcl ).priority );
}

TEST_F( TcamTest, AUnitGetsOneChipGroupPerAssignment ) {
   for ( const auto& [a, def] : smallTable() ) {
      const std::optional<GroupInfo> g = chip.group( a );
      ASSERT_TRUE( g ) << a;
      EXPECT_EQ( def.stage, g->stage );
      EXPECT_EQ( S32( def.priority ), g->priority );
      EXPECT_TRUE( otherChip.group( a ) );
   }
   EXPECT_EQ( smallTable().size(), chip.groups().size() );
   EXPECT_EQ( &chip, gm->chip( kUnit ) );
   EXPECT_EQ( nullptr, gm->chip( 5 ) );
   EXPECT_EQ( 4u, gm->unitLimits( kUnit )->rangeCheckers );
   EXPECT_EQ( 3u, gm->unitLimits( kUnit )->rangeCheckersPerEntry );
}

TEST_F( TcamTest, TheDefaultTableRunsOnAChip ) {
   auto full = SimTcamGroupManager::create( defaultGroupTable( kStages ), codes );
   full->unitIs( kUnit, spareChip );
   auto ip6 = full->unboundedEntryManager( tcamGroupIp6Acl );
   EXPECT_EQ( full->groupTable().at( tcamGroupIp6Acl ).capacity, ip6->entriesAvailable( kUnit ) );
   EXPECT_EQ( std::size( tcamGroupAssignmentAll ), spareChip.groups().size() );
   auto blocking = full->entryManager( tcamGroupAclPortBlocking );
   const U32 base = blocking->entryBase();
   for ( U32 i = 0; i < kPortBlockingGroupEntries; ++i ) {
      EXPECT_EQ( base + i, blocking->getEntry( kUnit, base + i, "Port blocking" ) );
   }
   EXPECT_TRUE( blocking->exhausted( kUnit ) );
}

}  // namespace
}  // namespace Sim
