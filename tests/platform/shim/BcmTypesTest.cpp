// The value types of the SDK interface: the port bitmap and the range record.
#include <gtest/gtest.h>

#include "platform/shim/BcmTypes.h"
#include "platform/vesper/Exception.h"

namespace ShimTest {
namespace {

TEST( PortBitmapTest, PortsLandInTheirWordAndBit ) {
   bcm_pbmp_t pbmp;
   EXPECT_TRUE( pbmp.isNull() );
   pbmp.portAdd( 0 );
   pbmp.portAdd( 33 );
   pbmp.portAdd( 1023 );
   EXPECT_EQ( 0x1u, pbmp.pbits[0] );
   EXPECT_EQ( 0x2u, pbmp.pbits[1] );
   EXPECT_EQ( 0x80000000u, pbmp.pbits[31] );
   EXPECT_EQ( 3, pbmp.count() );
   EXPECT_TRUE( pbmp.member( 33 ) );
   EXPECT_FALSE( pbmp.member( 32 ) );
   EXPECT_FALSE( pbmp.isNull() );
}

TEST( PortBitmapTest, RemoveTakesOnlyThatPort ) {
   bcm_pbmp_t pbmp;
   pbmp.portAdd( 5 );
   pbmp.portAdd( 6 );
   pbmp.portRemove( 5 );
   pbmp.portRemove( 7 );  // absent: nothing changes
   EXPECT_TRUE( pbmp.member( 6 ) );
   EXPECT_EQ( 1, pbmp.count() );
   pbmp.clear();
   EXPECT_TRUE( pbmp.isNull() );
}

class PortBitmapRangeTest : public ::testing::TestWithParam<int> {};

TEST_P( PortBitmapRangeTest, PortsOutsideTheBitmapRaiseTheRangeError ) {
   bcm_pbmp_t pbmp;
   try {
      pbmp.portAdd( GetParam() );
      FAIL() << "no exception";
   } catch ( const Vesper::RangeException& e ) {
      EXPECT_STREQ( "bcm_pbmp_t port < 0 or > 1023 not allowed", e.what() );
   }
   EXPECT_THROW( pbmp.member( GetParam() ), Vesper::RangeException );
   EXPECT_THROW( pbmp.portRemove( GetParam() ), Vesper::RangeException );
   EXPECT_TRUE( pbmp.isNull() );
}

INSTANTIATE_TEST_SUITE_P( OutOfRange, PortBitmapRangeTest, ::testing::Values( -1, 1024 ) );

}  // namespace
}  // namespace ShimTest
