// The bring-up report of the tool, end to end: the default switch, the same switch read from
// its profile file, and the errors a user can make.
#include <gtest/gtest.h>

#include "tests/e2e/ToolRunner.h"

namespace {

using HalyardE2e::expectGolden;
using HalyardE2e::runTool;

TEST( BringupTest, DefaultSwitchReportMatchesGolden ) {
   auto r = runTool( { "bringup" } );
   ASSERT_EQ( r.exitCode, 0 ) << r.err;
   EXPECT_EQ( r.err, "" );
   expectGolden( "bringup-default.txt", r.out );
}

TEST( BringupTest, ProfileFileOfTheDefaultSwitchGivesTheSameReport ) {
   auto builtIn = runTool( { "bringup" } );
   auto fromFile = runTool( { "--switch", "examples/switches/default.switch", "bringup" } );
   ASSERT_EQ( fromFile.exitCode, 0 ) << fromFile.err;
   EXPECT_EQ( fromFile.out, builtIn.out );
}

TEST( BringupTest, DemoIsTheBringupWithAnIntroduction ) {
   auto demo = runTool( { "demo" } );
   auto bringup = runTool( { "bringup" } );
   ASSERT_EQ( demo.exitCode, 0 ) << demo.err;
   ASSERT_GT( demo.out.size(), bringup.out.size() );
   EXPECT_EQ( demo.out.substr( demo.out.size() - bringup.out.size() ), bringup.out );
}

TEST( BringupTest, MissingProfileIsAUsageErrorNamingTheFile ) {
   auto r = runTool( { "--switch", "no/such.switch", "bringup" } );
   EXPECT_EQ( r.exitCode, 2 );
   EXPECT_EQ( r.out, "" );
   EXPECT_NE( r.err.find( "no/such.switch" ), std::string::npos ) << r.err;
}

TEST( BringupTest, ExtraArgumentIsRefused ) {
   auto r = runTool( { "bringup", "extra" } );
   EXPECT_EQ( r.exitCode, 2 );
   EXPECT_EQ( r.err, "halyard-acl: bringup takes no arguments\n" );
}

}  // namespace
