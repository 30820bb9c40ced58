// InPorts: a port p matches unless the mask has p and the data has not; and the ingress
// port's egress block mask.
#include <tuple>

#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

struct InPortsCase {
   const char* name;
   PortBitmap data;
   PortBitmap mask;
   U32 port;
   bool matches;
};

class InPortsMatch : public ChipTest, public ::testing::WithParamInterface<InPortsCase> {};

TEST_P( InPortsMatch, ZeroDataUnderOneMaskRefusesThePort ) {
   const InPortsCase& c = GetParam();
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.inPortsIs( e, c.data, c.mask ) );
   install( e );
   Verdict v = chip.lookup( tcp().ingressPortIs( c.port ) );
   EXPECT_EQ( c.matches ? std::optional<EntryId>( e ) : std::nullopt, v.hitIn( kIfp ) );
   EXPECT_EQ( ( InPortsValue{ c.data, c.mask } ), chip.inPorts( e ) );
}

const PortBitmap kAll = PortBitmap::firstPorts( 32 );

INSTANTIATE_TEST_SUITE_P(
    Cases, InPortsMatch,
    ::testing::Values(
        InPortsCase{ "MemberOfFullMask", PortBitmap{ 1, 3 }, kAll, 3, true },
        InPortsCase{ "NotMemberOfFullMask", PortBitmap{ 1, 3 }, kAll, 4, false },
        InPortsCase{ "EmptyDataRefusesAll", PortBitmap{}, kAll, 1, false },
        InPortsCase{ "PortOutsideMaskMatches", PortBitmap{}, PortBitmap{ 1, 2 }, 5, true },
        InPortsCase{ "EmptyMaskMatchesAll", PortBitmap{}, PortBitmap{}, 0, true },
        InPortsCase{ "MemberUnderPartialMask", PortBitmap{ 9 }, PortBitmap{ 9 }, 9, true },
        InPortsCase{ "NonMemberUnderPartialMask", PortBitmap{ 8 }, PortBitmap{ 9 }, 9, false } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ChipTest, NewPortsOnALiveEntryTakeEffectAtReinstall ) {
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.inPortsIs( e, PortBitmap{ 1 }, kAll ) );
   install( e );
   ASSERT_EQ( Status::Ok, chip.inPortsIs( e, PortBitmap{ 4 }, kAll ) );
   EXPECT_EQ( true, chip.entryPending( e ) );
   EXPECT_EQ( e, chip.lookup( tcp().ingressPortIs( 1 ) ).hitIn( kIfp ) );
   install( e );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp().ingressPortIs( 1 ) ).hitIn( kIfp ) );
   EXPECT_EQ( e, chip.lookup( tcp().ingressPortIs( 4 ) ).hitIn( kIfp ) );
}

TEST_F( ChipTest, EgressBlockMaskOfTheIngressPortLimitsDestinations ) {
   EXPECT_EQ( PortBitmap::firstPorts( kPorts ), chip.ports().egressMask( 1, 0 ) );
   ASSERT_EQ( Status::Ok, chip.ports().egressMaskIs( 1, kAllModules, PortBitmap{ 2, 3 } ) );
   Verdict v = chip.lookup( tcp().egressPortsIs( PortBitmap{ 2, 4 } ) );
   EXPECT_EQ( PortBitmap{ 2 }, v.egressPorts );
   // Other ingress ports keep their own (full) masks.
   EXPECT_EQ(
       ( PortBitmap{ 2, 4 } ),
       chip.lookup( tcp().ingressPortIs( 5 ).egressPortsIs( PortBitmap{ 2, 4 } ) ).egressPorts );

   // A mask for one module overrides the default for that module only.
   ASSERT_EQ( Status::Ok, chip.ports().egressMaskIs( 1, 7, PortBitmap{ 4 } ) );
   EXPECT_EQ( PortBitmap{ 4 }, chip.ports().egressMask( 1, 7 ) );
   EXPECT_EQ( ( PortBitmap{ 2, 3 } ), chip.ports().egressMask( 1, 0 ) );
   // Setting all modules again replaces the per-module mask.
   ASSERT_EQ( Status::Ok, chip.ports().egressMaskIs( 1, kAllModules, PortBitmap{ 5 } ) );
   EXPECT_EQ( PortBitmap{ 5 }, chip.ports().egressMask( 1, 7 ) );
}

TEST_F( ChipTest, PacketsFromOrToPortsTheChipLacksAreRefused ) {
   EXPECT_THROW( chip.lookup( tcp().ingressPortIs( kPorts ) ), Vesper::RangeException );
   EXPECT_THROW( chip.lookup( tcp().egressPortIs( kPorts + 3 ) ), Vesper::RangeException );
}

}  // namespace
}  // namespace Sim

namespace {

// Dumps print port runs as ranges; a wrong boundary would misreport which ports an entry keys.
struct BitmapTextCase {
   std::vector<U32> ports;
   const char* text;
};

class PortBitmapTextTest : public ::testing::TestWithParam<BitmapTextCase> {};

TEST_P( PortBitmapTextTest, RunsPrintAsRanges ) {
   Sim::PortBitmap b;
   for ( U32 p : GetParam().ports ) {
      b.set( p );
   }
   EXPECT_EQ( b.text(), GetParam().text );
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PortBitmapTextTest,
    ::testing::Values( BitmapTextCase{ {}, "{}" }, BitmapTextCase{ { 5 }, "{5}" },
                       BitmapTextCase{ { 1, 2 }, "{1,2}" }, BitmapTextCase{ { 1, 2, 3 }, "{1-3}" },
                       BitmapTextCase{ { 0, 1, 2, 3, 7, 9, 10 }, "{0-3,7,9,10}" },
                       BitmapTextCase{ { 63, 64, 65, 255 }, "{63-65,255}" } ) );

}  // namespace
