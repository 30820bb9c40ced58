// Injected faults: the n-th use of a named operation answers the chosen code and does
// nothing; several at once; the call counters; and what the library's forms make of a fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/shim/SdkCall.h"
#include "tests/sim/sdk/SimSdkFixture.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "SimSdkTest::Faults" )

namespace SimSdkTest {
namespace {

// Output that holds `line` as a whole line, and `later` somewhere after it.
MATCHER_P2( HasLineThen, line, later,
            "has the line \"" + std::string( line ) + "\" followed by \"" + std::string( later ) +
                "\"" ) {
   const std::string text = "\n" + std::string( arg );
   const std::size_t at = text.find( "\n" + std::string( line ) + "\n" );
   return at != std::string::npos &&
          text.find( std::string( later ), at + std::string( line ).size() ) != std::string::npos;
}

class FaultTest : public SimSdkFixture {
 protected:
   int dstIp( EntryId e, bcm_ip_t ip ) {
      return SDK_TRACE_RV( bcm_field_qualify_DstIp( kUnit, e, ip, 0xffffffff ) );
   }
   bcm_ip_t storedDstIp( EntryId e ) {
      const auto v = chip_.qualifier( e, QualId::DstIp );
      return v ? static_cast<bcm_ip_t>( v->dataU64() ) : 0;
   }
};

TEST_F( FaultTest, TheNthUseAnswersTheCodeAndDoesNothing ) {
   const EntryId e = newEntry();
   sim_.failCall( "bcm_field_qualify_DstIp", 3, SdkValues::kResource );
   EXPECT_EQ( 1u, sim_.gate().faultsPending() );
   EXPECT_EQ( BCM_E_NONE, dstIp( e, 1 ) );
   EXPECT_EQ( BCM_E_NONE, dstIp( e, 2 ) );
   EXPECT_EQ( SdkValues::kResource, dstIp( e, 3 ) );
   EXPECT_EQ( 2u, storedDstIp( e ) );
   EXPECT_EQ( 0u, sim_.gate().faultsPending() );
   EXPECT_EQ( BCM_E_NONE, dstIp( e, 4 ) );
   EXPECT_EQ( 4u, storedDstIp( e ) );
   EXPECT_EQ( 4u, sim_.callCount( "bcm_field_qualify_DstIp" ) );
   EXPECT_EQ( 0u, sim_.callCount( "bcm_field_qualify_SrcIp" ) );
}

TEST_F( FaultTest, UsesCountFromTheSetting ) {
   const EntryId e = newEntry();
   dstIp( e, 1 );
   dstIp( e, 2 );
   sim_.failCall( "bcm_field_qualify_DstIp", 1, -1 );
   EXPECT_EQ( -1, dstIp( e, 3 ) );
   EXPECT_EQ( 2u, storedDstIp( e ) );
}

TEST_F( FaultTest, SeveralFaultsFireEachOnItsOwnUse ) {
   const EntryId e = newEntry();
   sim_.failCall( "bcm_field_qualify_DstIp", 2, SdkValues::kNotFound );
   sim_.failCall( "bcm_field_qualify_DstIp", 4, SdkValues::kBusy );
   sim_.failCall( "bcm_field_action_add", 1, SdkValues::kInternal );
   EXPECT_EQ( 3u, sim_.gate().faultsPending() );

   EXPECT_EQ( SdkValues::kInternal,
              SDK_TRACE_RV( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) ) );
   EXPECT_FALSE( chip_.action( e, ActionId::Drop ).has_value() );
   EXPECT_EQ( BCM_E_NONE, dstIp( e, 1 ) );
   EXPECT_EQ( SdkValues::kNotFound, dstIp( e, 2 ) );
   EXPECT_EQ( BCM_E_NONE, dstIp( e, 3 ) );
   EXPECT_EQ( SdkValues::kBusy, dstIp( e, 4 ) );
   EXPECT_EQ( 3u, storedDstIp( e ) );
   EXPECT_EQ( BCM_E_NONE,
              SDK_TRACE_RV( bcm_field_action_add( kUnit, e, bcmFieldActionDrop, 0, 0 ) ) );
   EXPECT_EQ( 0u, sim_.gate().faultsPending() );
}

TEST_F( FaultTest, AFaultedReadLeavesItsOutputsAlone ) {
   const EntryId e = newEntry();
   SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, 0x01020304, 0xffffffff ) );
   sim_.failCall( "bcm_field_qualify_DstIp_get", 1, -7 );
   bcm_ip_t ip = 0xdead, mask = 0xbeef;
   EXPECT_EQ( -7, SDK_TRACE_RV( bcm_field_qualify_DstIp_get( kUnit, e, &ip, &mask ) ) );
   EXPECT_EQ( 0xdeadu, ip );
   EXPECT_EQ( 0xbeefu, mask );
}

TEST_F( FaultTest, BadSettingsAreRefused ) {
   EXPECT_THROW( sim_.failCall( "bcm_field_qualify_Nothing", 1, -1 ), Vesper::RangeException );
   EXPECT_THROW( sim_.failCall( "PORT_LOCK", 1, -1 ), Vesper::RangeException );
   EXPECT_THROW( sim_.failCall( "bcm_field_qualify_DstIp", 0, -1 ), Vesper::RangeException );
   EXPECT_THROW( sim_.failCall( "bcm_field_qualify_DstIp", 1, 0 ), Vesper::RangeException );
   EXPECT_THROW( sim_.callCount( "bcmFieldActionDrop" ), Vesper::RangeException );
   EXPECT_EQ( 0u, sim_.gate().faultsPending() );
}

// The read-back form hands any injected code back unchanged, and never stops.
class FaultThroughTraceRv : public FaultTest, public ::testing::WithParamInterface<int> {};

TEST_P( FaultThroughTraceRv, CodeComesBackAsInjected ) {
   const EntryId e = newEntry();
   sim_.failCall( "bcm_field_qualify_TcpControl_get", 1, GetParam() );
   U8 flags = 0, mask = 0;
   EXPECT_EQ( GetParam(),
              SDK_TRACE_RV( bcm_field_qualify_TcpControl_get( kUnit, e, &flags, &mask ) ) );
   EXPECT_TRUE( Vesper::ActivityUnlockAnchor::lock().held() );
}

INSTANTIATE_TEST_SUITE_P( Codes, FaultThroughTraceRv, ::testing::Values( -1, -7, -14, -1000 ) );

// ---- A fault under the checked form stops the process with the exact line.

struct CheckSite {
   unsigned line;
   std::string function;
};

CheckSite checkedDstIp( bool run, EntryId e ) {
   if ( run )
      SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, 0x0a000001, 0xffffffff ) );
   return { __LINE__ - 1, __PRETTY_FUNCTION__ };
}

using FaultDeathTest = FaultTest;

TEST_F( FaultDeathTest, CheckedFormStopsWithTheApiErrorLine ) {
   const EntryId e = newEntry();
   sim_.failCall( "bcm_field_qualify_DstIp", 1, SdkValues::kResource );
   const CheckSite site = checkedDstIp( false, e );
   const std::string file = __FILE__;
   const std::string apiError = file + ":" + std::to_string( site.line ) +
                                " bcm_field_qualify_DstIp( kUnit, e, 0x0a000001, 0xffffffff ) "
                                "API ERROR:No resources for operation (-14)";
   const std::string assertion =
       file + ":" + std::to_string( site.line ) + ": " + site.function + ": Assertion `0' failed.";
   EXPECT_DEATH( checkedDstIp( true, e ), HasLineThen( apiError, assertion ) );
   // The fault fired in the child only.
   EXPECT_EQ( 1u, sim_.gate().faultsPending() );
}

}  // namespace
}  // namespace SimSdkTest
