#include "tests/e2e/ToolRunner.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace HalyardE2e {

namespace {

std::string quoted( const std::string& arg ) {
   std::string q = "'";
   for ( char c : arg ) {
      q += c == '\'' ? std::string( "'\\''" ) : std::string( 1, c );
   }
   return q + "'";
}

// A file of its own for the tool's stderr: CTest runs the cases of one binary in parallel
// processes.
std::string stderrFile() {
   std::string path = ::testing::TempDir() + "halyard-e2e-stderr-XXXXXX";
   const int fd = mkstemp( path.data() );
   if ( fd >= 0 ) {
      close( fd );
   }
   return path;
}

}  // namespace

std::string readFile( const std::string& path ) {
   std::ifstream in( path );
   std::ostringstream s;
   s << in.rdbuf();
   return s.str();
}

ToolResult runTool( const std::vector<std::string>& args ) {
   const std::string errPath = stderrFile();
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
   ToolResult result{ code, out, readFile( errPath ) };
   std::remove( errPath.c_str() );
   return result;
}

}  // namespace HalyardE2e
