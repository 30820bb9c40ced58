// Fragments: a later fragment has no layer 4 fields, and a non-IP packet is no fragment.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

TEST_F( ChipTest, LaterFragmentsCarryNoLayer4Fields ) {
   // A rule on port 80 must not catch later fragments, whose port bytes are payload.
   EntryId e = dropOn( kIfp, QualId::L4DstPort, 80, 0xFFFF );
   EXPECT_TRUE( chip.lookup( tcp().fragmentIs( true, 0 ) ).dropped );
   EXPECT_FALSE( chip.lookup( tcp().fragmentIs( false, 370 ) ).dropped );
   EXPECT_EQ( 1u, chip.entryHits( e ) );
}

TEST_F( ChipTest, NonIpPacketsAreNoFragments ) {
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.ipFragIs( e, IpFrag::Non ) );
   install( e );
   EXPECT_EQ( e,
              chip.lookup( Packet::ethernet( kEtherTypeArp ).ingressPortIs( 1 ) ).hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
