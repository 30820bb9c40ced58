// Order inside a group: the highest priority wins, then the lowest ordinal; one hit per group.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

class PriorityTest : public ChipTest {
 protected:
   // An installed entry matching every packet that sets CPU queue `queue`.
   EntryId queueEntry( GroupId g, U32 priority, U32 queue ) {
      EntryId e = entry( g, priority );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::CosQCpuNew, queue, 0 ) );
      install( e );
      return e;
   }
};

TEST_F( PriorityTest, HighestPriorityWinsWhateverTheOrderOfCreation ) {
   EntryId low = queueEntry( kIfp, 10, 1 );
   EntryId high = queueEntry( kIfp, ChipModel::kMaxPriority, 2 );
   EntryId mid = queueEntry( kIfp, 500, 3 );
   Verdict v = chip.lookup( tcp() );
   EXPECT_EQ( high, v.hitIn( kIfp ) );
   EXPECT_EQ( 2u, v.cpuQueue );
   EXPECT_EQ( ( std::vector<EntryId>{ high, mid, low } ), chip.entries( kIfp ) );
   // Only the winner counts: one hit per group.
   EXPECT_EQ( 1u, chip.entryHits( high ) );
   EXPECT_EQ( 0u, chip.entryHits( mid ) );
   EXPECT_EQ( 0u, chip.entryHits( low ) );
}

TEST_F( PriorityTest, EqualPrioritiesGoByLowestOrdinal ) {
   EntryId first = queueEntry( kIfp, 7, 1 );
   EntryId second = queueEntry( kIfp, 7, 2 );
   EXPECT_EQ( first, chip.lookup( tcp() ).hitIn( kIfp ) );

   // A bounded manager places by index: the creator may reorder without reinstalling.
   ASSERT_EQ( Status::Ok, chip.entryOrdinalIs( first, 100 ) );
   ASSERT_EQ( Status::Ok, chip.entryOrdinalIs( second, 99 ) );
   Verdict v = chip.lookup( tcp() );
   EXPECT_EQ( second, v.hitIn( kIfp ) );
   EXPECT_EQ( 2u, v.cpuQueue );
   EXPECT_EQ( 100u, chip.entryOrdinal( first ) );
}

TEST_F( PriorityTest, PriorityChangeActsAtOnce ) {
   EntryId a = queueEntry( kIfp, 5, 1 );
   EntryId b = queueEntry( kIfp, 4, 2 );
   ASSERT_EQ( Status::Ok, chip.entryPriorityIs( b, 6 ) );
   EXPECT_EQ( b, chip.lookup( tcp() ).hitIn( kIfp ) );
   EXPECT_EQ( false, chip.entryPending( b ) );
   EXPECT_EQ( Status::Param, chip.entryPriorityIs( a, ChipModel::kMaxPriority + 1u ) );
   EXPECT_EQ( 5u, chip.entryPriority( a ) );
}

TEST_F( PriorityTest, AMissFallsThroughToLowerPriority ) {
   EntryId specific = dropOn( kIfp, QualId::L4DstPort, 22, 0xFFFF, 100 );
   EntryId catchAll = queueEntry( kIfp, 1, 4 );
   EXPECT_EQ( specific, chip.lookup( tcp( 22 ) ).hitIn( kIfp ) );
   Verdict v = chip.lookup( tcp( 80 ) );
   EXPECT_EQ( catchAll, v.hitIn( kIfp ) );
   EXPECT_FALSE( v.dropped );
}

TEST_F( PriorityTest, EveryGroupOfAStageYieldsItsOwnHit ) {
   ASSERT_EQ( Status::Ok, chip.groupCreate( 11, Stage::Ifp, 1 ) );
   EntryId a = queueEntry( kIfp, 1, 1 );
   EntryId b = queueEntry( 11, 1, 2 );
   EntryId b2 = queueEntry( 11, 0, 3 );
   Verdict v = chip.lookup( tcp() );
   EXPECT_EQ( a, v.hitIn( kIfp ) );
   EXPECT_EQ( b, v.hitIn( 11 ) );
   ASSERT_EQ( 2u, v.hits.size() );
   // Hits are listed in group precedence: kIfp has the higher group priority.
   EXPECT_EQ( ( StageHit{ Stage::Ifp, kIfp, a, std::nullopt } ), v.hits[0] );
   EXPECT_EQ( ( StageHit{ Stage::Ifp, 11, b, std::nullopt } ), v.hits[1] );
   EXPECT_EQ( 0u, chip.entryHits( b2 ) );
}

TEST_F( PriorityTest, GroupsAndIdsAnswerAsStored ) {
   EXPECT_EQ( Status::Exists, chip.groupCreate( kIfp, Stage::Efp, 0 ) );
   EXPECT_EQ( Stage::Ifp, chip.group( kIfp )->stage );
   EXPECT_EQ( Status::Ok, chip.entryCreateWithId( kIfp, 4096 ) );
   EXPECT_EQ( Status::Exists, chip.entryCreateWithId( kVfp, 4096 ) );
   EXPECT_EQ( kIfp, chip.entryGroup( 4096 ) );
   EXPECT_EQ( 1u, chip.group( kIfp )->entryCount );
   EXPECT_EQ( Status::Busy, chip.groupDestroy( kIfp ) );
   EXPECT_EQ( Status::Ok, chip.entryDestroy( 4096 ) );
   EXPECT_EQ( Status::Ok, chip.groupDestroy( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.group( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.entryCreate( kIfp ) );
   EXPECT_EQ( ( std::vector<GroupId>{ kVfp, kEfp } ), chip.groups() );
}

}  // namespace
}  // namespace Sim
