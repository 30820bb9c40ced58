// VFP, IFP and EFP in sequence: EFP runs once for every port the packet leaves by, sees the
// egress VLAN and the source class IFP set.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

using StageChainTest = ChipTest;

TEST_F( StageChainTest, EfpRunsPerEgressPortAndDropsOnlyThatCopy ) {
   EntryId toPort5 = dropOn( kEfp, QualId::OutPort, 5, 0xFFFFFFFF );
   Verdict v = chip.lookup( tcp().egressPortsIs( PortBitmap{ 2, 5, 7 } ) );
   EXPECT_EQ( ( PortBitmap{ 2, 7 } ), v.egressPorts );
   EXPECT_EQ( PortBitmap{ 5 }, v.egressDropped );
   EXPECT_FALSE( v.dropped );
   EXPECT_TRUE( v.forwarded() );
   EXPECT_EQ( toPort5, v.hitIn( kEfp, 5 ) );
   EXPECT_EQ( std::nullopt, v.hitIn( kEfp, 2 ) );
   EXPECT_EQ( 1u, chip.entryHits( toPort5 ) );
}

TEST_F( StageChainTest, EfpSeesTheEgressVlan ) {
   EntryId e = dropOn( kEfp, QualId::ForwardingVlanId, 20, 0xFFF );
   EXPECT_EQ( std::nullopt,
              chip.lookup( tcp().vlanIs( 20 ).routedIs().egressVlanIs( 30 ) ).hitIn( kEfp ) );
   Verdict v = chip.lookup( tcp().vlanIs( 10 ).routedIs().egressVlanIs( 20 ) );
   EXPECT_EQ( e, v.hitIn( kEfp, 2 ) );
   EXPECT_FALSE( v.forwarded() );
}

TEST_F( StageChainTest, IfpClassSourceSetReachesEfp ) {
   EntryId mark = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.actionIs( mark, ActionId::ClassSourceSet, 0x5, 0 ) );
   install( mark );
   EntryId e = dropOn( kEfp, QualId::SrcClassField, 0x5, 0xF );
   Verdict v = chip.lookup( tcp() );
   EXPECT_EQ( e, v.hitIn( kEfp, 2 ) );
   EXPECT_EQ( 5u, v.sourceClass );
}

}  // namespace
}  // namespace Sim
