// Range checkers: inversion and the unit's pool. Bounds by type are tested end to end in
// tests/sim/lookup.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

Packet tcpPorts( U16 sport, U16 dport ) {
   return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), sport, dport )
       .ingressPortIs( 1 )
       .egressPortIs( 2 );
}

TEST_F( ChipTest, AnInvertedCheckerMatchesOutsideItsRange ) {
   auto id = chip.rangeCheckerCreate( { RangeType::DstPort, 80, 90 } );
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.rangeCheckAttach( e, *id, true ) );
   install( e );
   EXPECT_EQ( std::nullopt, chip.lookup( tcpPorts( 1, 85 ) ).hitIn( kIfp ) );
   EXPECT_EQ( e, chip.lookup( tcpPorts( 1, 91 ) ).hitIn( kIfp ) );
   EXPECT_EQ( ( std::vector<RangeCheckRef>{ { *id, true } } ), chip.rangeChecks( e ) );
}

TEST_F( ChipTest, RangeCheckerPoolIsTheChipsAndCountsItsUsers ) {
   ChipModel small( ChipConfig{ 8, 0, 2, 4 } );
   ASSERT_EQ( Status::Ok, small.groupCreate( 1, Stage::Ifp, 0 ) );
   auto a = small.rangeCheckerCreate( { RangeType::SrcPort, 1, 2 } );
   auto b = small.rangeCheckerCreate( { RangeType::SrcPort, 3, 4 } );
   EXPECT_EQ( 1u, a );
   EXPECT_EQ( 2u, b );
   EXPECT_EQ( std::nullopt, small.rangeCheckerCreate( { RangeType::SrcPort, 5, 6 } ) );
   EXPECT_EQ( Status::Param, small.rangeCheckerCreateWithId( 3, { RangeType::SrcPort, 5, 6 } ) );

   EntryId e = *small.entryCreate( 1 );
   ASSERT_EQ( Status::Ok, small.rangeCheckAttach( e, *a ) );
   EXPECT_EQ( Status::Busy, small.rangeCheckerDestroy( *a ) );
   EXPECT_EQ( ( RangeChecker{ RangeType::SrcPort, 1, 2 } ), small.rangeChecker( *a ) );
   ASSERT_EQ( Status::Ok, small.rangeCheckDetach( e, *a ) );
   EXPECT_EQ( Status::NotFound, small.rangeCheckDetach( e, *a ) );
   EXPECT_EQ( Status::Ok, small.rangeCheckerDestroy( *a ) );
   EXPECT_EQ( std::nullopt, small.rangeChecker( *a ) );
   EXPECT_EQ( Status::NotFound, small.rangeCheckAttach( e, *a ) );
   EXPECT_EQ( ( std::vector<RangeCheckerId>{ *b } ), small.rangeCheckerIds() );

   // Destroying an entry lets go of its checkers.
   ASSERT_EQ( Status::Ok, small.rangeCheckAttach( e, *b ) );
   ASSERT_EQ( Status::Ok, small.entryDestroy( e ) );
   EXPECT_EQ( Status::Ok, small.rangeCheckerDestroy( *b ) );
}

}  // namespace
}  // namespace Sim
