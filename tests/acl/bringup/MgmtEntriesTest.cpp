// The ten management entries that hwInit leaves on a unit, on every chip kind of the catalog:
// read back from the chip model (keys, actions, installation), from the entry manager (purpose,
// recorded port key, permanence) and from the field-processor command lines, whose order is
// the order of the SDK calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "acl/HalyardAclPortMasks.h"
#include "acl/HalyardAclSmBringupInternal.h"
#include "acl/ToggleState.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "sim/sdk/SimSdk.h"
#include "tests/acl/bringup/MgmtEntryExpectations.h"
#include "tests/support/ChipReadback.h"

namespace AclBringupTest {
namespace {

constexpr U32 unit = 0;

class MgmtEntriesTest : public ::testing::TestWithParam<std::string> {
 protected:
   MgmtEntriesTest() : sw_( SwitchLayout{ { GetParam() } } ) {}

   // Brings the unit up and answers the fp lines it wrote.
   std::vector<std::string> bringUp() {
      Vesper::TraceCapture fpLines( "Halyard::bcmFpCmd" );
      sw_.hwInit();
      return fpLines.lines();
   }

   // Every entry as expected, in the chip and in its manager.
   void expectEntries( bool mirrorOnDrop, bool install ) {
      for ( const ExpectedEntry& e : expectedEntries( sw_, unit, mirrorOnDrop, install ) ) {
         SCOPED_TRACE( e.purpose + " (entry " + std::to_string( e.id ) + ")" );
         const EntryFace face = entryFace( sw_.chip( unit ), e.id );
         EXPECT_EQ( face, e.face )
             << "is:        " << faceText( face ) << "\nshould be: " << faceText( e.face );
         EXPECT_EQ( sw_.chip( unit ).entryInstalled( e.id ), std::optional( e.installed ) );
         EXPECT_EQ( sw_.groupManager()->entryDescription( unit, e.id ), e.purpose );
         Halyard::HalyardTcamEntryManager::Ptr mgr = sw_.groupManager()->tcamEntryMgr( e.id );
         ASSERT_TRUE( mgr );
         EXPECT_EQ( mgr->tcamEntryBcmPbmp( unit, e.id ),
                    Sim::pbmpOf( e.face.inPorts.value().data ) );
         const bool mgmt = mgr == sw_.groupManager()->entryManager( Halyard::tcamGroupAclMgmt );
         const auto& bounded = sw_.boundedManager( mgmt ? Halyard::tcamGroupAclMgmt
                                                        : Halyard::tcamGroupAclPortBlocking );
         EXPECT_EQ( bounded.tcamEntryBcmPbmpPermanent( unit, e.id ), e.permanent );
      }
   }

   CleanProcessState clean_;
   Vesper::ActivityLockGuard activity_;
   BringupSwitch sw_;
};

TEST_P( MgmtEntriesTest, LeavesExactlyTheTenEntriesWithTheirKeysActionsAndInstallation ) {
   const std::vector<std::string> fpLines = bringUp();

   std::vector<U32> onChip = HalyardTest::chipEntries( sw_.chip( unit ) );
   std::vector<U32> expected = sw_.managementEntriesInOrder();
   std::sort( onChip.begin(), onChip.end() );
   std::sort( expected.begin(), expected.end() );
   EXPECT_EQ( onChip, expected );
   expectEntries( true, true );
   EXPECT_EQ( fpLines, expectedFpLines( sw_, unit, true, true ) );
   EXPECT_EQ( sw_.sim().sdk().gate().lockViolations(), 0u );
}

TEST_P( MgmtEntriesTest, EntriesStandInTheirGroupsInOffsetOrder ) {
   bringUp();
   const Sim::ChipModel& chip = sw_.chip( unit );
   const auto group = chip.entryGroup( sw_.mgmtEntry( Halyard::aclMgmtTcamStpBlock ) );
   ASSERT_TRUE( group );
   // The lookup order of the group: the entry of the lowest offset first.
   std::vector<U32> expected = { sw_.mgmtEntry( Halyard::aclMgmtTcamStpBlock ),
                                 sw_.mgmtEntry( Halyard::aclMgmtTcamStpLearn ),
                                 sw_.mgmtEntry( Halyard::aclMgmtTcamVfpDropLog ),
                                 sw_.mgmtEntry( Halyard::aclMgmtTcamVfpDrop ),
                                 sw_.mgmtEntry( Halyard::aclMgmtTcamVfpLog ),
                                 sw_.mgmtEntry( Halyard::aclMgmtTcamVlanBlock ) };
   EXPECT_EQ( chip.entries( *group ), expected );
   const auto blockingGroup =
       chip.entryGroup( sw_.portBlockingEntry( Halyard::aclMgmtTcamPortBlock1 ) );
   ASSERT_TRUE( blockingGroup );
   EXPECT_NE( *blockingGroup, *group );
   EXPECT_EQ( chip.entries( *blockingGroup ).size(), 4u );
}

TEST_P( MgmtEntriesTest, UnderSimulationAllTenAreKeyedAndNoneIsInstalled ) {
   setenv( "SIMULATION_VMID", "1", 1 );
   const std::vector<std::string> fpLines = bringUp();

   EXPECT_FALSE( sw_.helper()->installEntries() );
   EXPECT_EQ( HalyardTest::chipEntries( sw_.chip( unit ) ).size(), 10u );
   expectEntries( true, false );
   EXPECT_EQ( fpLines, expectedFpLines( sw_, unit, true, false ) );
   for ( const std::string& line : fpLines ) {
      EXPECT_EQ( line.find( "fp entry install" ), std::string::npos ) << line;
   }
}

TEST_P( MgmtEntriesTest, WithMirrorOnDropOffOnlyTheStpEntriesLoseTheirLogClassTerm ) {
   Halyard::toggleStateIs( Halyard::mirrorOnDropToggle, false );
   const std::vector<std::string> fpLines = bringUp();

   expectEntries( false, true );
   EXPECT_EQ( fpLines, expectedFpLines( sw_, unit, false, true ) );
   // Against the default: the two SrcClassField terms of the STP entries are gone, and
   // nothing else differs.
   const std::vector<std::string> withToggle = expectedFpLines( sw_, unit, true, true );
   ASSERT_EQ( fpLines.size() + 2, withToggle.size() );
   std::vector<std::string> expectedMissing = {
       "fp qual " + std::to_string( sw_.mgmtEntry( Halyard::aclMgmtTcamStpBlock ) ) +
           " SrcClassField 16 0x10",
       "fp qual " + std::to_string( sw_.mgmtEntry( Halyard::aclMgmtTcamStpLearn ) ) +
           " SrcClassField 16 0x10" };
   std::vector<std::string> dropped;
   for ( const std::string& line : withToggle ) {
      if ( std::find( fpLines.begin(), fpLines.end(), line ) == fpLines.end() ) {
         dropped.push_back( line );
      }
   }
   EXPECT_EQ( dropped, expectedMissing );
}

TEST_P( MgmtEntriesTest, PortMasksAreTheUnitsFullBitmapAndAnEmptyOne ) {
   bringUp();
   EXPECT_EQ( Halyard::allPortsMask[unit], sw_.sim().sdk().PBMP_ALL( int( unit ) ) );
   EXPECT_TRUE( Halyard::noPortsMask.isNull() );
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, MgmtEntriesTest, ::testing::ValuesIn( catalogKindNames() ),
                          []( const ::testing::TestParamInfo<std::string>& info ) {
                             return info.param;
                          } );

}  // namespace
}  // namespace AclBringupTest
