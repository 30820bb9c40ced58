// Range checkers: inclusive bounds by type, all attached checkers must hold, inversion, and
// the unit's pool.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

struct RangeCase {
   const char* name;
   RangeChecker checker;
   Packet packet;
   bool holds;
};

Packet tcpPorts( U16 sport, U16 dport ) {
   return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), sport, dport )
       .ingressPortIs( 1 )
       .egressPortIs( 2 );
}

Packet withLength( U16 len ) {
   return tcpPorts( 1, 1 ).ipTotalLengthIs( len );
}

class RangeMatch : public ChipTest, public ::testing::WithParamInterface<RangeCase> {};

TEST_P( RangeMatch, BoundsAreInclusive ) {
   const RangeCase& c = GetParam();
   auto id = chip.rangeCheckerCreate( c.checker );
   ASSERT_TRUE( id );
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.rangeCheckAttach( e, *id ) );
   install( e );
   EXPECT_EQ( c.holds, chip.lookup( c.packet ).hitIn( kIfp ).has_value() );
   EXPECT_EQ( ( std::vector<RangeCheckRef>{ { *id, false } } ), chip.rangeChecks( e ) );
}

const RangeChecker kSrc{ RangeType::SrcPort, 1000, 2000 };
const RangeChecker kDst{ RangeType::DstPort, 1000, 2000 };
const RangeChecker kLen{ RangeType::IpLength, 64, 128 };

INSTANTIATE_TEST_SUITE_P(
    Bounds, RangeMatch,
    ::testing::Values(
        RangeCase{ "SrcBelow", kSrc, tcpPorts( 999, 1500 ), false },
        RangeCase{ "SrcLow", kSrc, tcpPorts( 1000, 1 ), true },
        RangeCase{ "SrcHigh", kSrc, tcpPorts( 2000, 1 ), true },
        RangeCase{ "SrcAbove", kSrc, tcpPorts( 2001, 1500 ), false },
        RangeCase{ "DstLow", kDst, tcpPorts( 1, 1000 ), true },
        RangeCase{ "DstAbove", kDst, tcpPorts( 1500, 2001 ), false },
        RangeCase{ "LenBelow", kLen, withLength( 63 ), false },
        RangeCase{ "LenLow", kLen, withLength( 64 ), true },
        RangeCase{ "LenHigh", kLen, withLength( 128 ), true },
        RangeCase{ "LenAbove", kLen, withLength( 129 ), false },
        // A bare TCP header of 40 bytes plus 30 bytes of payload.
        RangeCase{ "LenComputed", kLen, tcpPorts( 1, 1 ).payloadIs( std::vector<U8>( 30 ) ), true },
        // A later fragment has no ports: the checker sees zero.
        RangeCase{ "LaterFragmentHasNoPorts", RangeChecker{ RangeType::DstPort, 0, 0 },
                   tcpPorts( 5, 80 ).fragmentIs( false, 10 ), true } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ChipTest, AllAttachedCheckersMustHold ) {
   auto src = chip.rangeCheckerCreate( { RangeType::SrcPort, 1000, 2000 } );
   auto dst = chip.rangeCheckerCreate( { RangeType::DstPort, 80, 90 } );
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.rangeCheckAttach( e, *src ) );
   ASSERT_EQ( Status::Ok, chip.rangeCheckAttach( e, *dst ) );
   install( e );
   EXPECT_EQ( e, chip.lookup( tcpPorts( 1500, 85 ) ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( tcpPorts( 1500, 91 ) ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( tcpPorts( 999, 85 ) ).hitIn( kIfp ) );
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
