// The field-processor command lines on Halyard::bcmFpCmd.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/shim/BcmTypes.h"
#include "platform/shim/FpCmd.h"
#include "platform/vesper/Trace.h"

namespace ShimTest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST( FpCmdTest, QualifierLinesNumbersInDecimal ) {
   Vesper::TraceCapture fp( "Halyard::bcmFpCmd" );
   const U8 proto = 6;
   Shim::fpQual( 12, " IpProtocol ", proto, " 0xFF" );
   Shim::fpQual( 0x100000000ull, " L4DstPort ", U16{ 443 }, " ", U16{ 0xffff } );
   EXPECT_THAT( fp.lines(), ElementsAre( "fp qual 12 IpProtocol 6 0xFF",
                                         "fp qual 4294967296 L4DstPort 443 65535" ) );
}

TEST( FpCmdTest, HexPartsFollowNamesEndingInZeroX ) {
   Vesper::TraceCapture fp( "Halyard::bcmFpCmd" );
   const U8 address[16] = { 0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x01 };
   Shim::fpQual( 7, " TcpControl 0x", Shim::FpHex{ 0x12 } );
   Shim::fpQual( 7, " SrcIp6 0x", Shim::FpHexBytes{ address, 16 } );
   Shim::fpQual( 7, " InPorts 0x", Shim::FpHex{ 0xa, 8 }, Shim::FpHex{ 0, 8 } );
   EXPECT_THAT( fp.lines(), ElementsAre( "fp qual 7 TcpControl 0x12",
                                         "fp qual 7 SrcIp6 0x20010db8000000000000000000000001",
                                         "fp qual 7 InPorts 0x0000000a00000000" ) );
}

TEST( FpCmdTest, ActionAndInstallLines ) {
   Vesper::TraceCapture fp( "Halyard::bcmFpCmd" );
   Shim::fpActionAdd( 9, " Drop" );
   Shim::fpActionAdd( 9, " CopyToCpu 1 ", 4u );
   Shim::fpActionAdd( 9, " ClassSourceSet ", bcm_field_action_t{ 24 } );
   Shim::fpEntryInstall( 9 );
   EXPECT_THAT( fp.lines(),
                ElementsAre( "fp action add 9 Drop", "fp action add 9 CopyToCpu 1 4",
                             "fp action add 9 ClassSourceSet 24", "fp entry install 9" ) );
}

TEST( FpCmdTest, NothingWhenLevelZeroIsOff ) {
   Vesper::TraceCapture fp( "Halyard::bcmFpCmd", false );
   Shim::fpActionAdd( 9, " Drop" );
   EXPECT_THAT( fp.lines(), IsEmpty() );
   Vesper::traceLevelIs( "Halyard::bcmFpCmd", 0, true );
   Shim::fpActionAdd( 9, " Drop" );
   Vesper::traceLevelIs( "Halyard::bcmFpCmd", 0, false );
   EXPECT_THAT( fp.lines(), ElementsAre( "fp action add 9 Drop" ) );
}

}  // namespace
}  // namespace ShimTest
