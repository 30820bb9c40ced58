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

const std::string kDemo = std::string( HALYARD_SOURCE_DIR ) + "/examples/acls/demo.acl";

TEST( AppTest, CommandNotYetBuiltReadsItsInputThenRefusesLoudly ) {
   auto r = runTool( { "show", kDemo } );
   EXPECT_EQ( r.code, 4 );
   EXPECT_EQ( r.out, "" );
   EXPECT_EQ( r.err,
              "halyard-acl: show: the operator tables need the back-end's show support, which is "
              "not available in this build yet\n" );
   EXPECT_EQ( runTool( { "show", "/no/such.acl" } ).code, 2 ) << "inputs are read first";
}

TEST( AppTest, ABadConfigurationIsAnInputErrorBeforeAnythingElse ) {
   auto r = runTool( { "trace", "/no/such.acl" } );
   EXPECT_EQ( r.code, 2 );
   EXPECT_EQ( r.err, "/no/such.acl: cannot read: No such file or directory\n" );
}

TEST( AppTest, CommandOptionsAreTheCommandsOwn ) {
   EXPECT_EQ( runTool( { "trace", "--json", kDemo } ).code, 2 );
   EXPECT_EQ( runTool( { "replay", "--check", "--in", "Ethernet1", kDemo } ).code, 2 )
       << "replay needs a packet file after the configurations";
   auto help = runTool( { "replay", "--help" } );
   EXPECT_EQ( help.code, 0 );
   EXPECT_NE( help.out.find( "--check" ), std::string::npos ) << help.out;
}

}  // namespace
