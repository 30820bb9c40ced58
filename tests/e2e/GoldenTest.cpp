// The golden cases of the tool: every tests/e2e/golden/NAME.cmd is run, and its output compared
// with the files beside it.
//
//   NAME.cmd   '#' comment lines; one line with the tool's arguments (split at blanks; single
//              quotes keep blanks in an argument); "exit N", the exit code expected (0 if absent)
//   NAME.out   the expected standard output (absent: none)
//   NAME.err   the expected standard error (absent: none)
//
// HALYARD_UPDATE_GOLDEN=1 rewrites NAME.out, NAME.err and the exit line from what the tool does
// now; review the diff before committing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/e2e/ToolRunner.h"

namespace {

namespace fs = std::filesystem;
using HalyardE2e::readFile;

const fs::path kGoldenDir = fs::path( HALYARD_SOURCE_DIR ) / "tests/e2e/golden";

struct GoldenCase {
   std::vector<std::string> args;
   int exitCode = 0;
   std::vector<std::string> lines;  // of the .cmd file, for rewriting its exit line
};

std::vector<std::string> splitArgs( const std::string& line ) {
   std::vector<std::string> args;
   std::string arg;
   bool inArg = false;
   bool quoted = false;
   for ( char c : line ) {
      if ( c == '\'' ) {
         quoted = !quoted;
         inArg = true;
      } else if ( ( c == ' ' || c == '\t' ) && !quoted ) {
         if ( inArg ) {
            args.push_back( arg );
         }
         arg.clear();
         inArg = false;
      } else {
         arg += c;
         inArg = true;
      }
   }
   if ( inArg ) {
      args.push_back( arg );
   }
   return args;
}

GoldenCase readCase( const fs::path& cmd ) {
   GoldenCase c;
   std::istringstream in( readFile( cmd ) );
   bool haveArgs = false;
   for ( std::string line; std::getline( in, line ); ) {
      c.lines.push_back( line );
      if ( line.empty() || line[0] == '#' ) {
         continue;
      }
      if ( line.rfind( "exit ", 0 ) == 0 ) {
         c.exitCode = std::atoi( line.c_str() + 5 );
      } else if ( !haveArgs ) {
         c.args = splitArgs( line );
         haveArgs = true;
      } else {
         ADD_FAILURE() << cmd << ": a second argument line: " << line;
      }
   }
   return c;
}

void writeFile( const fs::path& path, const std::string& text ) {
   std::ofstream( path, std::ios::binary ) << text;
}

void update( const fs::path& cmd, const GoldenCase& c, const HalyardE2e::ToolResult& r ) {
   std::string text;
   bool wroteExit = false;
   for ( const std::string& line : c.lines ) {
      if ( line.rfind( "exit ", 0 ) == 0 ) {
         if ( r.exitCode != 0 ) {
            text += "exit " + std::to_string( r.exitCode ) + "\n";
         }
         wroteExit = true;
      } else {
         text += line + "\n";
      }
   }
   if ( !wroteExit && r.exitCode != 0 ) {
      text += "exit " + std::to_string( r.exitCode ) + "\n";
   }
   writeFile( cmd, text );
   for ( const auto& [extension, output] :
         { std::pair( ".out", &r.out ), std::pair( ".err", &r.err ) } ) {
      const fs::path file = fs::path( cmd ).replace_extension( extension );
      if ( output->empty() ) {
         fs::remove( file );
      } else {
         writeFile( file, *output );
      }
   }
}

// The expected output in `file`; none when there is no such file.
std::string expected( const fs::path& file ) {
   return fs::exists( file ) ? readFile( file ) : "";
}

// The first line where `actual` leaves `expected`, for a failure message that can be read.
std::string firstDifference( const std::string& expected, const std::string& actual ) {
   std::istringstream e( expected ), a( actual );
   std::string el, al;
   for ( int line = 1;; ++line ) {
      const bool eMore = static_cast<bool>( std::getline( e, el ) );
      const bool aMore = static_cast<bool>( std::getline( a, al ) );
      if ( !eMore && !aMore ) {
         return "line endings or the final newline differ";
      }
      if ( eMore != aMore || el != al ) {
         return "line " + std::to_string( line ) + "\n  expected: " + ( eMore ? el : "<end>" ) +
                "\n  actual:   " + ( aMore ? al : "<end>" );
      }
   }
}

std::vector<std::string> caseNames() {
   std::vector<std::string> names;
   for ( const auto& entry : fs::directory_iterator( kGoldenDir ) ) {
      if ( entry.path().extension() == ".cmd" ) {
         names.push_back( entry.path().stem().string() );
      }
   }
   std::sort( names.begin(), names.end() );
   return names;
}

class Golden : public testing::TestWithParam<std::string> {};

TEST_P( Golden, OutputAndExitCodeMatchTheFilesBesideTheCommand ) {
   const fs::path cmd = kGoldenDir / ( GetParam() + ".cmd" );
   const GoldenCase c = readCase( cmd );
   const HalyardE2e::ToolResult r = HalyardE2e::runTool( c.args );
   if ( std::getenv( "HALYARD_UPDATE_GOLDEN" ) ) {
      update( cmd, c, r );
      return;
   }
   const std::string expectedOut = expected( fs::path( cmd ).replace_extension( ".out" ) );
   const std::string expectedErr = expected( fs::path( cmd ).replace_extension( ".err" ) );
   EXPECT_EQ( r.exitCode, c.exitCode ) << "stderr:\n" << r.err;
   EXPECT_TRUE( r.out == expectedOut )
       << GetParam() << ".out: " << firstDifference( expectedOut, r.out );
   EXPECT_TRUE( r.err == expectedErr )
       << GetParam() << ".err: " << firstDifference( expectedErr, r.err );
}

INSTANTIATE_TEST_SUITE_P( Cases, Golden, testing::ValuesIn( caseNames() ), []( const auto& info ) {
   std::string name = info.param;
   std::replace_if(
       name.begin(), name.end(), []( char ch ) { return !std::isalnum( ch ); }, '_' );
   return name;
} );

}  // namespace
