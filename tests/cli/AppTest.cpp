// The tool's command line: version, help, and loud refusal of what is not there.
#include "cli/App.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

struct Result {
   int code;
   std::string out;
   std::string err;
};

Result runTool( std::vector<std::string> args ) {
   std::ostringstream out, err;
   int code = HalyardCli::run( args, out, err );
   return { code, out.str(), err.str() };
}

TEST( AppTest, VersionPrintsNameAndVersion ) {
   auto r = runTool( { "--version" } );
   EXPECT_EQ( r.code, 0 );
   EXPECT_EQ( r.out, std::string( "halyard-acl " ) + HALYARD_TEST_VERSION + "\n" );
}

TEST( AppTest, HelpListsEveryCommand ) {
   auto r = runTool( { "--help" } );
   EXPECT_EQ( r.code, 0 );
   for ( const char* c : { "apply", "show", "verify", "trace", "replay", "demo", "bringup" } ) {
      EXPECT_NE( r.out.find( std::string( "  " ) + c ), std::string::npos ) << c;
   }
}

TEST( AppTest, NoCommandIsAUsageError ) {
   auto r = runTool( {} );
   EXPECT_EQ( r.code, 2 );
   EXPECT_NE( r.err.find( "usage:" ), std::string::npos );
}

TEST( AppTest, UnknownCommandIsNamed ) {
   auto r = runTool( { "frobnicate" } );
   EXPECT_EQ( r.code, 2 );
   EXPECT_NE( r.err.find( "unknown command 'frobnicate'" ), std::string::npos );
}

TEST( AppTest, UnknownOptionIsAUsageError ) {
   auto r = runTool( { "--bogus" } );
   EXPECT_EQ( r.code, 2 );
   EXPECT_TRUE( r.out.empty() );
}

}  // namespace

namespace {

TEST( AppTest, CommandNotYetBuiltRefusesLoudly ) {
   auto r = runTool( { "apply", "x.acl" } );
   EXPECT_EQ( r.code, 3 );
   EXPECT_EQ( r.err, "halyard-acl: command 'apply' is not available in this build yet\n" );
}

}  // namespace
