#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

#include "platform/vesper/Exception.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Test::TraceFile" )

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vesper::TraceCapture;
using Vesper::TraceHandle;

// The levels of `handle` that are on, rising.
std::vector<int> levelsOn( const TraceHandle& handle ) {
   std::vector<int> on;
   for ( int level = Vesper::traceLevelMin; level <= Vesper::traceLevelMax; ++level ) {
      if ( handle.enabled( level ) ) {
         on.push_back( level );
      }
   }
   return on;
}

struct SinkLine {
   std::string handle;
   int level;
   std::string line;
   bool operator==( const SinkLine& ) const = default;
};

// Replaces the sink for a test and puts the default back after it.
class TraceSinkTest : public ::testing::Test {
 protected:
   void SetUp() override {
      Vesper::traceSinkIs( [this]( const TraceHandle& h, int level, std::string_view line ) {
         sunk_.push_back( { h.name(), level, std::string( line ) } );
      } );
   }
   void TearDown() override { Vesper::traceSinkIs( {} ); }
   std::vector<SinkLine> sunk_;
};

TEST( TraceHandleTest, PatternSettingsReachPresentAndLaterHandles ) {
   TraceHandle early( "Test::Pattern::Early" );
   TraceHandle other( "Test::Elsewhere" );
   Vesper::traceLevelIs( "Test::Pattern::*", 4, true );
   EXPECT_THAT( levelsOn( early ), ElementsAre( 4 ) );
   EXPECT_THAT( levelsOn( other ), IsEmpty() );

   TraceHandle late( "Test::Pattern::Late" );
   EXPECT_THAT( levelsOn( late ), ElementsAre( 4 ) );

   // Later settings win, for handles registered after them as well.
   Vesper::traceLevelIs( "Test::Pattern::L*", 4, false );
   EXPECT_THAT( levelsOn( late ), IsEmpty() );
   EXPECT_THAT( levelsOn( early ), ElementsAre( 4 ) );
   TraceHandle later( "Test::Pattern::Later" );
   EXPECT_THAT( levelsOn( later ), IsEmpty() );
}

TEST_F( TraceSinkTest, EnabledLinesGoToTheSinkAndOthersNowhere ) {
   TraceHandle handle( "Test::Sink" );
   handle.write( 2, "dropped" );
   handle.levelIs( 2, true );
   handle.write( 2, "kept" );
   handle.write( 3, "other level" );
   EXPECT_THAT( sunk_, ElementsAre( SinkLine{ "Test::Sink", 2, "kept" } ) );
}

TEST( TraceSinkDefaultTest, DefaultSinkWritesNameLevelAndLineToStderr ) {
   TraceHandle handle( "Test::Stderr" );
   handle.levelIs( 1, true );
   ::testing::internal::CaptureStderr();
   handle.write( 1, "hello" );
   EXPECT_EQ( ::testing::internal::GetCapturedStderr(), "Test::Stderr/1: hello\n" );
}

TEST_F( TraceSinkTest, CaptureTakesMatchingLinesAndTurnsLevelsOnWhileItLives ) {
   TraceHandle handle( "Test::Capture::A" );
   TraceHandle outside( "Test::NotCaptured" );
   outside.levelIs( 0, true );
   handle.levelIs( 5, true );
   {
      TraceCapture capture( "Test::Capture::*" );
      EXPECT_EQ( levelsOn( handle ).size(), 10u );
      TraceHandle during( "Test::Capture::During" );
      EXPECT_EQ( levelsOn( during ).size(), 10u );
      handle.write( 7, "first" );
      during.write( 0, "second" );
      outside.write( 0, "to the sink" );
      EXPECT_THAT( capture.lines(), ElementsAre( "first", "second" ) );
      capture.clear();
      EXPECT_THAT( capture.lines(), IsEmpty() );
      handle.write( 1, "third" );
      EXPECT_THAT( capture.lines(), ElementsAre( "third" ) );
   }
   EXPECT_THAT( levelsOn( handle ), ElementsAre( 5 ) ) << "own levels come back";
   EXPECT_THAT( sunk_, ElementsAre( SinkLine{ "Test::NotCaptured", 0, "to the sink" } ) );
}

TEST_F( TraceSinkTest, CaptureWithoutEnablingSeesOnlyLevelsThatAreOn ) {
   TraceHandle handle( "Test::Capture::Quiet" );
   handle.levelIs( 2, true );
   TraceCapture capture( "Test::Capture::Quiet", false );
   EXPECT_THAT( levelsOn( handle ), ElementsAre( 2 ) );
   handle.write( 1, "off" );
   handle.write( 2, "on" );
   EXPECT_THAT( capture.lines(), ElementsAre( "on" ) );
   EXPECT_THAT( sunk_, IsEmpty() );
}

using GlobCase = std::tuple<const char*, const char*, bool>;
class TraceGlobTest : public ::testing::TestWithParam<GlobCase> {};

TEST_P( TraceGlobTest, Matches ) {
   const auto& [pattern, name, matches] = GetParam();
   EXPECT_EQ( Vesper::traceNameMatches( pattern, name ), matches ) << pattern << " ~ " << name;
}

INSTANTIATE_TEST_SUITE_P( Patterns, TraceGlobTest,
                          ::testing::Values( GlobCase{ "Halyard::*", "Halyard::AclSm", true },
                                             GlobCase{ "Halyard::*", "Fennel::AclSm", false },
                                             GlobCase{ "*", "", true }, GlobCase{ "", "x", false },
                                             GlobCase{ "*Sm", "Halyard::AclSmX", false },
                                             GlobCase{ "a?c", "ac", false },
                                             GlobCase{ "a*b*c", "aXbYbZc", true },
                                             GlobCase{ "a*b*c", "aXbYbZ", false } ) );

TEST( TraceSettingTest, ParsesLevelsRangesAndBarePatterns ) {
   TraceHandle single( "Test::Setting::Single" );
   TraceHandle range( "Test::Setting::Range" );
   TraceHandle all( "Test::Setting::All" );
   Vesper::traceSettingIs(
       "Test::Setting::Single/0, Test::Setting::Range/3-5,,Test::Setting::All" );
   EXPECT_THAT( levelsOn( single ), ElementsAre( 0 ) );
   EXPECT_THAT( levelsOn( range ), ElementsAre( 3, 4, 5 ) );
   EXPECT_EQ( levelsOn( all ).size(), 10u );
}

class TraceSettingErrorTest : public ::testing::TestWithParam<const char*> {};

TEST_P( TraceSettingErrorTest, MalformedItemRaisesAndAppliesNothing ) {
   TraceHandle handle( "Test::Setting::Untouched" );
   const std::string bad = GetParam();
   try {
      Vesper::traceSettingIs( "Test::Setting::Untouched/1," + bad );
      FAIL() << "no exception for " << bad;
   } catch ( const Vesper::ParseException& e ) {
      EXPECT_EQ(
          std::string( e.what() ),
          "trace setting \"" + bad + "\" is not pattern, pattern/level or pattern/first-last" );
   }
   EXPECT_THAT( levelsOn( handle ), IsEmpty() );
}

INSTANTIATE_TEST_SUITE_P( Malformed, TraceSettingErrorTest,
                          ::testing::Values( "Foo/10", "Foo/3-1", "/2", "Foo/x", "Foo/1-" ) );

TEST( TraceSettingTest, EnvironmentVariableIsApplied ) {
   TraceHandle acl( "Test::Env::AclSm" );
   TraceHandle cmd( "Test::Env::bcmFpCmd" );
   ASSERT_EQ( setenv( "VESPER_TRACE", "Test::Env::bcmFpCmd/0,Test::Env::Acl*/0-9", 1 ), 0 );
   Vesper::TraceTestAccess::applyEnvironment();
   unsetenv( "VESPER_TRACE" );
   EXPECT_THAT( levelsOn( cmd ), ElementsAre( 0 ) );
   EXPECT_EQ( levelsOn( acl ).size(), 10u );
   TraceHandle later( "Test::Env::AclHelper" );
   EXPECT_EQ( levelsOn( later ).size(), 10u );
}

class SpindleTest : public ::testing::Test {
 protected:
   void SetUp() override { spindle_.clear(); }
   void TearDown() override { spindle_.clear(); }
   Vesper::Spindle& spindle_ = Vesper::Spindle::instance();
};

TEST_F( SpindleTest, KeepsLinesOldestFirstAndWrapsDroppingTheOldest ) {
   const size_t capacity = spindle_.capacity();
   ASSERT_GT( capacity, 0u );
   for ( size_t i = 0; i < capacity + 3; ++i ) {
      spindle_.write( "line " + std::to_string( i ) );
   }
   auto lines = spindle_.lines();
   ASSERT_EQ( lines.size(), capacity );
   EXPECT_EQ( lines.front(), "line 3" );
   EXPECT_EQ( lines.back(), "line " + std::to_string( capacity + 2 ) );
   spindle_.clear();
   EXPECT_THAT( spindle_.lines(), IsEmpty() );
}

}  // namespace
