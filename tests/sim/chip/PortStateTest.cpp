// Per-port and per-VLAN state: stored and answered as written, refused for ports and VLANs
// the chip lacks, and read by the lookup where the hardware reads it.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

TEST_F( ChipTest, PortsAndVlansOutsideTheChipAreNotFound ) {
   auto& ports = chip.ports();
   EXPECT_EQ( Status::NotFound, ports.portClassIs( kPorts, PortClassKind::FieldIngress, 1 ) );
   EXPECT_EQ( Status::NotFound, ports.stpStateIs( kPorts, StpState::Block ) );
   EXPECT_EQ( Status::NotFound, ports.egressMaskIs( kPorts, 0, PortBitmap{} ) );
   EXPECT_EQ( Status::NotFound, ports.portControlIs( kPorts, 1, 1 ) );
   EXPECT_EQ( std::nullopt, ports.stpState( kPorts ) );
   EXPECT_EQ( Status::NotFound, chip.vlans().l2ClassIs( 4096, 1 ) );
   EXPECT_EQ( std::nullopt, chip.vlans().l3Class( 4096 ) );
   ASSERT_EQ( Status::Ok, chip.vlans().l3ClassIs( 4095, 9 ) );
   EXPECT_EQ( 9u, chip.vlans().l3Class( 4095 ) );
   EXPECT_EQ( 0u, chip.vlans().l2Class( 4095 ) );
}

TEST_F( ChipTest, PortsOutOfForwardingStateDiscardButStillCopyToCpu ) {
   ASSERT_EQ( Status::Ok, chip.ports().stpStateIs( 1, StpState::Block ) );
   // The STP entries of bring-up: steer CPU copies of a blocked port to the drop queue.
   EntryId stp = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( stp, QualId::IngressStpState,
                                            static_cast<U64>( StpState::Block ), 0xFF ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( stp, ActionId::CosQCpuNew, 0, 0 ) );
   install( stp );
   Verdict v = chip.lookup( tcp().toCpuIs() );
   EXPECT_TRUE( v.stpDiscarded );
   EXPECT_FALSE( v.dropped );
   EXPECT_FALSE( v.forwarded() );
   EXPECT_TRUE( v.copyToCpu );
   EXPECT_EQ( 0u, v.cpuQueue );
   EXPECT_EQ( stp, v.hitIn( kIfp ) );

   Verdict other = chip.lookup( tcp().ingressPortIs( 4 ) );
   EXPECT_FALSE( other.stpDiscarded );
   EXPECT_TRUE( other.forwarded() );
   EXPECT_EQ( std::nullopt, other.hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
