// The egress block masks by module, and ports the chip lacks. InPorts matching is tested end
// to end in tests/sim/lookup.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

TEST_F( ChipTest, EgressBlockMasksArePerModule ) {
   EXPECT_EQ( PortBitmap::firstPorts( kPorts ), chip.ports().egressMask( 1, 0 ) );
   ASSERT_EQ( Status::Ok, chip.ports().egressMaskIs( 1, kAllModules, PortBitmap{ 2, 3 } ) );

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
