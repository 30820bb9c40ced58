// Install and enable states, the hardware face changing at install, counters, dumps.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

class InstallEnableTest : public ChipTest {
 protected:
   EntryId dropPort22() {
      EntryId e = entry( kIfp );
      EXPECT_EQ( Status::Ok, chip.qualifierIs( e, QualId::L4DstPort, 22, 0xFFFF ) );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
      return e;
   }
};

TEST_F( InstallEnableTest, EnableNeedsAnInstalledEntryAndInstallEnables ) {
   EntryId e = dropPort22();
   EXPECT_EQ( Status::NotInstalled, chip.entryEnableIs( e, true ) );
   install( e );
   ASSERT_EQ( Status::Ok, chip.entryEnableIs( e, false ) );
   install( e );
   EXPECT_EQ( true, chip.entryEnabled( e ) );
}

TEST_F( InstallEnableTest, WritesAfterInstallWaitForTheNextInstall ) {
   EntryId e = dropPort22();
   install( e );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::L4DstPort, 23, 0xFFFF ) );
   ASSERT_EQ( Status::Ok, chip.actionDel( e, ActionId::Drop ) );
   // The reads answer the new values; the hardware still holds the old.
   EXPECT_EQ( 23u, chip.qualifier( e, QualId::L4DstPort )->dataU64() );
   EXPECT_EQ( true, chip.entryPending( e ) );
   EXPECT_TRUE( chip.lookup( tcp( 22 ) ).dropped );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp( 23 ) ).hitIn( kIfp ) );
   install( e );
   EXPECT_EQ( false, chip.entryPending( e ) );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp( 22 ) ).hitIn( kIfp ) );
   Verdict v = chip.lookup( tcp( 23 ) );
   EXPECT_EQ( e, v.hitIn( kIfp ) );
   EXPECT_FALSE( v.dropped );
}

TEST_F( InstallEnableTest, RemoveTakesTheEntryOutOfHardwareOnly ) {
   EntryId e = dropPort22();
   install( e );
   ASSERT_EQ( Status::Ok, chip.entryRemove( e ) );
   EXPECT_EQ( false, chip.entryInstalled( e ) );
   EXPECT_FALSE( chip.lookup( tcp( 22 ) ).dropped );
   EXPECT_EQ( 22u, chip.qualifier( e, QualId::L4DstPort )->dataU64() );
   EXPECT_EQ( Status::NotInstalled, chip.entryRemove( e ) );
   ASSERT_EQ( Status::Ok, chip.entryDestroy( e ) );
   EXPECT_FALSE( chip.entryExists( e ) );
   EXPECT_EQ( std::nullopt, chip.entryInstalled( e ) );
   EXPECT_EQ( Status::NotFound, chip.entryInstall( e ) );
}

TEST_F( InstallEnableTest, EveryHitEntryCountsOncePerLookup ) {
   EntryId vfp = entry( kVfp );
   install( vfp );
   EntryId ifp = entry( kIfp );
   install( ifp );
   EntryId efp = entry( kEfp );
   install( efp );
   EntryId idle = dropPort22();
   install( idle );
   chip.lookup( tcp().egressPortsIs( PortBitmap{ 2, 3, 4 } ) );
   chip.lookup( tcp() );
   EXPECT_EQ( 2u, chip.entryHits( vfp ) );
   EXPECT_EQ( 2u, chip.entryHits( ifp ) );
   EXPECT_EQ( 4u, chip.entryHits( efp ) );  // once per copy: three, then one
   EXPECT_EQ( 0u, chip.entryHits( idle ) );
   // Counters survive a reinstall, and can be set.
   install( ifp );
   EXPECT_EQ( 2u, chip.entryHits( ifp ) );
   ASSERT_EQ( Status::Ok, chip.entryHitsIs( ifp, 0 ) );
   chip.lookup( tcp() );
   EXPECT_EQ( 1u, chip.entryHits( ifp ) );
}

TEST_F( InstallEnableTest, AReusedVerdictIsResetForEachPacket ) {
   EntryId e = dropPort22();
   install( e );
   Verdict v;
   chip.lookup( tcp( 22 ).toCpuIs(), v );
   EXPECT_TRUE( v.dropped );
   chip.lookup( tcp( 80 ), v );
   EXPECT_FALSE( v.dropped );
   EXPECT_FALSE( v.copyToCpu );
   EXPECT_TRUE( v.hits.empty() );
   EXPECT_EQ( PortBitmap{ 2 }, v.egressPorts );
}

}  // namespace
}  // namespace Sim
