// The sdkCall bracket and the three forms: what reaches the SDK, what the
// caller gets back, the trace lines, the ring, and the lock round each step.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/shim/SdkCall.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/platform/shim/FakeSdk.h"
#include "tests/platform/shim/ShimTestUtil.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "ShimTest::SdkCall" )

namespace ShimTest {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string file = __FILE__;

// The text a form writes for a call on `line` of this file.
std::string lineOf( unsigned line, const std::string& rest ) {
   return file + ":" + std::to_string( line ) + " " + rest;
}

bool activityLockHeld() {
   return Vesper::ActivityUnlockAnchor::lock().held();
}

class SdkCallTest : public ::testing::Test {
 protected:
   void SetUp() override { Vesper::Spindle::instance().clear(); }

   Vesper::ActivityLockGuard activity_;
   FakeSdk fake_;
   Shim::SdkInstall install_{ fake_ };
   Vesper::TraceCapture trace_{ "ShimTest::SdkCall" };
};

TEST_F( SdkCallTest, BracketReleasesTheLockForTheCallOnly ) {
   bool heldDuringCall = true;
   const int result = Shim::sdkCall( [&] {
      heldDuringCall = activityLockHeld();
      return 42;
   } );
   EXPECT_EQ( 42, result );
   EXPECT_FALSE( heldDuringCall );
   EXPECT_TRUE( activityLockHeld() );
}

TEST_F( SdkCallTest, BracketTakesTheLockBackWhenTheCallThrows ) {
   EXPECT_THROW( Shim::sdkCall( []() -> int { throw std::runtime_error( "sdk gone" ); } ),
                 std::runtime_error );
   EXPECT_TRUE( activityLockHeld() );
}

TEST_F( SdkCallTest, CheckFetchesConstantsAndCallsWithTheLockReleased ) {
   const unsigned line = __LINE__ + 1;
   const int rc = SDK_CHECK( bcm_field_action_add( 1, 7, bcmFieldActionDrop, 0, 0 ) );
   EXPECT_EQ( 0, rc );
   ASSERT_EQ( 2u, fake_.calls.size() );
   EXPECT_EQ( "bcmFieldActionDrop", fake_.calls[0].name );
   EXPECT_FALSE( fake_.calls[0].activityLockHeld );
   EXPECT_EQ( "bcm_field_action_add", fake_.calls[1].name );
   EXPECT_FALSE( fake_.calls[1].activityLockHeld );
   EXPECT_TRUE( activityLockHeld() );
   EXPECT_THAT( trace_.lines(),
                ElementsAre( lineOf(
                    line, "bcm_field_action_add( 1, 7, bcmFieldActionDrop, 0, 0 ) (rc:0)" ) ) );
}

// 0 and every positive code are success: the form yields the code.
class SdkCheckSuccessTest : public SdkCallTest, public ::testing::WithParamInterface<int> {};

TEST_P( SdkCheckSuccessTest, YieldsTheCodeAndTracesIt ) {
   fake_.rcFor["bcm_field_qualify_DstIp"] = GetParam();
   const unsigned line = __LINE__ + 1;
   EXPECT_EQ( GetParam(), SDK_CHECK( bcm_field_qualify_DstIp( 0, 3, 0x0a000001, ~0u ) ) );
   EXPECT_EQ( std::vector<std::string>{ "bcm_field_qualify_DstIp" }, fake_.callNames() );
   EXPECT_THAT( trace_.lines(), ElementsAre( lineOf( line,
                                                     "bcm_field_qualify_DstIp( 0, 3, "
                                                     "0x0a000001, ~0u ) (rc:" +
                                                         std::to_string( GetParam() ) + ")" ) ) );
}

INSTANTIATE_TEST_SUITE_P( ZeroAndPositive, SdkCheckSuccessTest,
                          ::testing::Values( 0, 1, INT_MAX ) );

// The read-back forms hand every code back, however unusual, and never stop.
class SdkUncheckedTest : public SdkCallTest, public ::testing::WithParamInterface<int> {};

TEST_P( SdkUncheckedTest, TraceRvHandsTheCodeBack ) {
   fake_.rcFor["bcm_field_qualify_IpFrag_get"] = GetParam();
   bcm_field_IpFrag_t frag{};
   const unsigned line = __LINE__ + 1;
   const int rv = SDK_TRACE_RV( bcm_field_qualify_IpFrag_get( 0, 9, &frag ) );
   EXPECT_EQ( GetParam(), rv );
   EXPECT_EQ( std::vector<std::string>{ "bcm_field_qualify_IpFrag_get" }, fake_.callNames() );
   EXPECT_THAT( trace_.lines(),
                ElementsAre( lineOf( line, "bcm_field_qualify_IpFrag_get( 0, 9, &frag ) (rv:" +
                                               std::to_string( GetParam() ) + ")" ) ) );
   EXPECT_THAT( Vesper::Spindle::instance().lines(), IsEmpty() );
}

TEST_P( SdkUncheckedTest, NoCheckHandsTheCodeBack ) {
   fake_.rcFor["bcm_field_entry_dump"] = GetParam();
   const unsigned line = __LINE__ + 1;
   const int rc = SDK_NO_CHECK( bcm_field_entry_dump( 0, 9 ) );
   EXPECT_EQ( GetParam(), rc );
   EXPECT_EQ( std::vector<std::string>{ "bcm_field_entry_dump" }, fake_.callNames() );
   EXPECT_THAT( trace_.lines(),
                ElementsAre( lineOf( line, "bcm_field_entry_dump( 0, 9 ) no rc check" ) ) );
}

INSTANTIATE_TEST_SUITE_P( AnyCode, SdkUncheckedTest, ::testing::Values( 3, -7, INT_MIN ) );

TEST_F( SdkCallTest, NoCheckTakesCallsWithoutResult ) {
   bool heldDuringCall = true;
   SDK_NO_CHECK( [&] { heldDuringCall = activityLockHeld(); }() );
   EXPECT_FALSE( heldDuringCall );
   EXPECT_TRUE( activityLockHeld() );
   ASSERT_EQ( 1u, trace_.lines().size() );
   EXPECT_THAT( trace_.lines()[0], ::testing::EndsWith( "() no rc check" ) );
}

// Lines go out only on level 4; the call is made whatever the levels.
class SdkTraceLevelTest : public ::testing::Test, public ::testing::WithParamInterface<int> {
 protected:
   void TearDown() override { Vesper::traceLevelIs( "ShimTest::SdkCall", GetParam(), false ); }

   Vesper::ActivityLockGuard activity_;
   FakeSdk fake_;
   Shim::SdkInstall install_{ fake_ };
   Vesper::TraceCapture trace_{ "ShimTest::SdkCall", false };
};

TEST_P( SdkTraceLevelTest, LinesOnlyOnLevelFour ) {
   Vesper::traceLevelIs( "ShimTest::SdkCall", GetParam(), true );
   SDK_CHECK( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   SDK_TRACE_RV( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   SDK_NO_CHECK( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   EXPECT_EQ( 3u, fake_.calls.size() );
   EXPECT_EQ( GetParam() == 4 ? 3u : 0u, trace_.lines().size() );
}

TEST_P( SdkTraceLevelTest, RingTakesItsLinesWhateverTheLevels ) {
   Vesper::Spindle::instance().clear();
   Vesper::traceLevelIs( "ShimTest::SdkCall", GetParam(), true );
   SDK_CHECK_SPINDLE( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   SDK_NO_CHECK_SPINDLE( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   EXPECT_EQ( 2u, Vesper::Spindle::instance().lines().size() );
   EXPECT_EQ( GetParam() == 4 ? 2u : 0u, trace_.lines().size() );
}

INSTANTIATE_TEST_SUITE_P( Levels, SdkTraceLevelTest, ::testing::Values( 3, 4, 5 ) );

// Without a capture, lines reach the sink: it sees whether the lock is held.
TEST( SdkTraceLockTest, TraceLinesAreWrittenWithTheLockHeld ) {
   Vesper::ActivityLockGuard activity;
   FakeSdk fake;
   Shim::SdkInstall install( fake );
   std::vector<bool> heldAtWrite;
   Vesper::traceSinkIs( [&]( const Vesper::TraceHandle&, int, std::string_view ) {
      heldAtWrite.push_back( activityLockHeld() );
   } );
   Vesper::traceLevelIs( "ShimTest::SdkCall", 4, true );
   SDK_CHECK( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   SDK_TRACE_RV( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   SDK_NO_CHECK( bcm_field_qualify_Ttl( 0, 1, 64, 0xFF ) );
   Vesper::traceLevelIs( "ShimTest::SdkCall", 4, false );
   Vesper::traceSinkIs( {} );
   EXPECT_EQ( ( std::vector<bool>{ true, true, true } ), heldAtWrite );
   EXPECT_EQ( 3u, fake.calls.size() );
}

TEST_F( SdkCallTest, SpindleFormsAlsoWriteTheRing ) {
   const unsigned line = __LINE__ + 1;
   SDK_CHECK_SPINDLE( bcm_port_control_set( 0, 0, bcmPortControlFilterEgress, 0 ) );
   SDK_NO_CHECK_SPINDLE( bcm_field_entry_dump( 0, 5 ) );
   SDK_CHECK( bcm_field_entry_dump( 0, 6 ) );
   SDK_NO_CHECK( bcm_field_entry_dump( 0, 7 ) );
   EXPECT_THAT( Vesper::Spindle::instance().lines(),
                ElementsAre( lineOf( line,
                                     "bcm_port_control_set( 0, 0, "
                                     "bcmPortControlFilterEgress, 0 ) (rc:0)" ),
                             lineOf( line + 1, "bcm_field_entry_dump( 0, 5 ) no rc check" ) ) );
   // The level-4 lines are the same texts, written by every form.
   EXPECT_EQ( 4u, trace_.lines().size() );
   EXPECT_EQ( Vesper::Spindle::instance().lines()[0], trace_.lines()[0] );
}

// ---- The failing check.

// Runs a failing check when `fail` is set; says where the check stands.
struct CheckSite {
   unsigned line;
   std::string function;
};

CheckSite failingDrop( bool fail ) {
   if ( fail )
      SDK_CHECK( bcm_field_action_add( 2, 11, bcmFieldActionDrop, 0, 0 ) );
   return { __LINE__ - 1, __PRETTY_FUNCTION__ };
}

CheckSite failingDropSpindle( bool fail ) {
   if ( fail )
      SDK_CHECK_SPINDLE( bcm_field_action_add( 2, 11, bcmFieldActionDrop, 0, 0 ) );
   return { __LINE__ - 1, __PRETTY_FUNCTION__ };
}

using SdkCheckDeathTest = SdkCallTest;

TEST_F( SdkCheckDeathTest, NegativeCodeWritesTheApiErrorLineThenAssertsZero ) {
   fake_.rcFor["bcm_field_action_add"] = -7;
   const CheckSite site = failingDrop( false );
   const std::string apiError =
       lineOf( site.line,
               "bcm_field_action_add( 2, 11, bcmFieldActionDrop, 0, 0 ) API ERROR:Entry not "
               "found (-7)" );
   const std::string assertion =
       file + ":" + std::to_string( site.line ) + ": " + site.function + ": Assertion `0' failed.";
   EXPECT_DEATH( failingDrop( true ), HasLineThen( apiError, assertion ) );
}

TEST_F( SdkCheckDeathTest, SpindleFormFailsTheSameWay ) {
   fake_.rcFor["bcm_field_action_add"] = -1;
   const CheckSite site = failingDropSpindle( false );
   EXPECT_DEATH( failingDropSpindle( true ),
                 HasLineThen( lineOf( site.line,
                                      "bcm_field_action_add( 2, 11, bcmFieldActionDrop, 0, "
                                      "0 ) API ERROR:Entry not found (-1)" ),
                              "Assertion `0' failed." ) );
}

}  // namespace
}  // namespace ShimTest
