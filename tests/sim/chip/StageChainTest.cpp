// VFP, IFP and EFP in sequence: the VFP source class reaches IFP, port classes follow the
// direction, and EFP runs once for every port the packet leaves by.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

constexpr U32 kClassVfpDrop = 0x08;
constexpr U32 kClassVfpLog = 0x10;

class StageChainTest : public ChipTest {
 protected:
   // A VFP entry that marks traffic to `dport` with a source class, as a VFP deny does.
   EntryId vfpMark( U16 dport, U32 cls ) {
      EntryId e = entry( kVfp );
      EXPECT_EQ( Status::Ok, chip.qualifierIs( e, QualId::L4DstPort, dport, 0xFFFF ) );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::ClassSourceSet, cls, 0 ) );
      install( e );
      return e;
   }
};

TEST_F( StageChainTest, VfpSourceClassIsSeenByIfpAsSrcClassField ) {
   EntryId mark = vfpMark( 23, kClassVfpDrop | kClassVfpLog );
   // The IFP entry that carries out a VFP drop+log decision.
   EntryId act = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( act, QualId::SrcClassField, 0x18, 0x18 ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( act, ActionId::Drop, 0, 0 ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( act, ActionId::CopyToCpu, 1, 3 ) );
   install( act );

   Verdict v = chip.lookup( tcp( 23 ) );
   EXPECT_EQ( mark, v.hitIn( kVfp ) );
   EXPECT_EQ( act, v.hitIn( kIfp ) );
   EXPECT_TRUE( v.dropped );
   EXPECT_TRUE( v.copyToCpu );
   EXPECT_EQ( 3u, v.cpuMatchId );
   EXPECT_EQ( 0x18u, v.sourceClass );

   Verdict other = chip.lookup( tcp( 80 ) );
   EXPECT_EQ( std::nullopt, other.hitIn( kVfp ) );
   EXPECT_EQ( std::nullopt, other.hitIn( kIfp ) );
   EXPECT_TRUE( other.forwarded() );
}

TEST_F( StageChainTest, IfpSeesOnlyTheBitsVfpSet ) {
   vfpMark( 23, kClassVfpLog );
   EntryId dropMarked = dropOn( kIfp, QualId::SrcClassField, kClassVfpDrop, kClassVfpDrop );
   Verdict v = chip.lookup( tcp( 23 ) );
   EXPECT_EQ( std::nullopt, v.hitIn( kIfp ) );
   EXPECT_FALSE( v.dropped );
   EXPECT_EQ( kClassVfpLog, v.sourceClass );
   EXPECT_EQ( 0u, chip.entryHits( dropMarked ) );
}

TEST_F( StageChainTest, PortClassesFollowTheDirection ) {
   ASSERT_EQ( Status::Ok, chip.ports().portClassIs( 1, PortClassKind::FieldIngress, 0x21 ) );
   ASSERT_EQ( Status::Ok, chip.ports().portClassIs( 1, PortClassKind::FieldEgress, 0x31 ) );
   ASSERT_EQ( Status::Ok, chip.ports().portClassIs( 2, PortClassKind::FieldIngress, 0x22 ) );
   ASSERT_EQ( Status::Ok, chip.ports().portClassIs( 2, PortClassKind::FieldEgress, 0x32 ) );
   // Ingress stages see the ingress port's ingress class; EFP the egress port's egress class.
   EntryId vfp = dropOn( kVfp, QualId::InterfaceClassPort, 0x21, 0xFF );
   EntryId ifp = dropOn( kIfp, QualId::InterfaceClassPort, 0x21, 0xFF );
   EntryId efp = dropOn( kEfp, QualId::InterfaceClassPort, 0x32, 0xFF );
   EntryId wrongIfp = dropOn( kIfp, QualId::InterfaceClassPort, 0x31, 0xFF, 9 );
   EntryId wrongEfp = dropOn( kEfp, QualId::InterfaceClassPort, 0x22, 0xFF, 9 );

   Verdict v = chip.lookup( tcp() );
   EXPECT_EQ( vfp, v.hitIn( kVfp ) );
   EXPECT_EQ( ifp, v.hitIn( kIfp ) );
   EXPECT_EQ( 0u, chip.entryHits( wrongIfp ) );
   // The ingress drop leaves no copy for EFP to look at.
   EXPECT_EQ( std::nullopt, v.hitIn( kEfp ) );

   ASSERT_EQ( Status::Ok, chip.entryRemove( vfp ) );
   ASSERT_EQ( Status::Ok, chip.entryRemove( ifp ) );
   ASSERT_EQ( Status::Ok, chip.entryRemove( wrongIfp ) );
   v = chip.lookup( tcp() );
   EXPECT_EQ( efp, v.hitIn( kEfp, 2 ) );
   EXPECT_EQ( 0u, chip.entryHits( wrongEfp ) );
   EXPECT_FALSE( v.dropped );
   EXPECT_EQ( PortBitmap{}, v.egressPorts );
   EXPECT_EQ( PortBitmap{ 2 }, v.egressDropped );
}

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
