#include "tests/e2e/ToolRunner.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace HalyardE2e {

namespace {

std::string readFile( const std::string& path ) {
   std::ifstream in( path );
   std::ostringstream s;
   s << in.rdbuf();
   return s.str();
}

std::string quoted( const std::string& arg ) {
   std::string q = "'";
   for ( char c : arg ) {
      q += c == '\'' ? std::string( "'\\''" ) : std::string( 1, c );
   }
   return q + "'";
}

}  // namespace

ToolResult runTool( const std::vector<std::string>& args ) {
   const std::string errPath = ::testing::TempDir() + "halyard-e2e-stderr.txt";
   std::string cmd =
       std::string( "cd " ) + quoted( HALYARD_SOURCE_DIR ) + " && " + quoted( HALYARD_CLI_BINARY );
   for ( const auto& a : args ) {
      cmd += " " + quoted( a );
   }
   cmd += " 2>" + quoted( errPath );
   FILE* pipe = popen( cmd.c_str(), "r" );
   if ( !pipe ) {
      ADD_FAILURE() << "cannot run " << cmd;
      return { -1, "", "" };
   }
   std::string out;
   char buf[4096];
   size_t n;
   while ( ( n = fread( buf, 1, sizeof buf, pipe ) ) > 0 ) {
      out.append( buf, n );
   }
   const int status = pclose( pipe );
   const int code = WIFEXITED( status ) ? WEXITSTATUS( status ) : -1;
   return { code, out, readFile( errPath ) };
}

void expectGolden( const std::string& name, const std::string& actual ) {
   const std::string path = std::string( HALYARD_SOURCE_DIR ) + "/tests/e2e/golden/" + name;
   if ( std::getenv( "HALYARD_UPDATE_GOLDEN" ) ) {
      std::ofstream( path ) << actual;
      return;
   }
   const std::string expected = readFile( path );
   if ( expected == actual ) {
      return;
   }
   std::istringstream e( expected ), a( actual );
   std::string el, al;
   for ( int line = 1;; ++line ) {
      const bool eMore = static_cast<bool>( std::getline( e, el ) );
      const bool aMore = static_cast<bool>( std::getline( a, al ) );
      if ( !eMore && !aMore ) {
         break;
      }
      if ( eMore != aMore || el != al ) {
         ADD_FAILURE() << name << ":" << line
                       << " differs\n  expected: " << ( eMore ? el : "<end>" )
                       << "\n  actual:   " << ( aMore ? al : "<end>" );
         return;
      }
   }
   ADD_FAILURE() << name << " differs (line endings or a final newline)";
}

}  // namespace HalyardE2e
