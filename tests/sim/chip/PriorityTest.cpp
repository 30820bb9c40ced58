// Priorities, groups and entry ids as the chip stores them; the order they give lookups is
// tested end to end in tests/sim/lookup.
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

TEST_F( PriorityTest, PriorityChangeActsAtOnce ) {
   EntryId a = queueEntry( kIfp, 5, 1 );
   EntryId b = queueEntry( kIfp, 4, 2 );
   ASSERT_EQ( Status::Ok, chip.entryPriorityIs( b, 6 ) );
   EXPECT_EQ( b, chip.lookup( tcp() ).hitIn( kIfp ) );
   EXPECT_EQ( false, chip.entryPending( b ) );
   EXPECT_EQ( Status::Param, chip.entryPriorityIs( a, ChipModel::kMaxPriority + 1u ) );
   EXPECT_EQ( 5u, chip.entryPriority( a ) );
}

}  // namespace
}  // namespace Sim
