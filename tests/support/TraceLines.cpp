#include "tests/support/TraceLines.h"

namespace HalyardTest {

namespace {

std::string escaped( std::string_view text ) {
   static constexpr std::string_view special = "\\^$.|?*+()[]{}";
   std::string out;
   for ( const char c : text ) {
      if ( special.find( c ) != std::string_view::npos ) {
         out += '\\';
      }
      out += c;
   }
   return out;
}

bool startsWith( std::string_view line, std::string_view prefix ) {
   return line.substr( 0, prefix.size() ) == prefix;
}

}  // namespace

std::vector<std::string> FpCmdCapture::linesOf( unsigned entry ) const {
   const std::string qual = "fp qual " + std::to_string( entry ) + " ";
   const std::string action = "fp action add " + std::to_string( entry ) + " ";
   std::vector<std::string> out;
   for ( const std::string& line : lines() ) {
      if ( startsWith( line, qual ) || startsWith( line, action ) ) {
         out.push_back( line );
      }
   }
   return out;
}

std::vector<std::string> checkedCalls( const std::vector<std::string>& lines ) {
   static constexpr std::string_view rcMark = " (rc:";
   std::vector<std::string> calls;
   for ( const std::string& line : lines ) {
      const auto end = line.rfind( rcMark );
      const auto start = line.find( ' ' );
      if ( end == std::string::npos || start == std::string::npos || start >= end ) {
         continue;
      }
      calls.push_back( line.substr( start + 1, end - start - 1 ) );
   }
   return calls;
}

std::vector<std::string> linesStartingWith( const std::vector<std::string>& lines,
                                            std::string_view prefix ) {
   std::vector<std::string> out;
   for ( const std::string& line : lines ) {
      if ( startsWith( line, prefix ) ) {
         out.push_back( line );
      }
   }
   return out;
}

std::vector<std::string> linesContaining( const std::vector<std::string>& lines,
                                          std::string_view text ) {
   std::vector<std::string> out;
   for ( const std::string& line : lines ) {
      if ( line.find( text ) != std::string::npos ) {
         out.push_back( line );
      }
   }
   return out;
}

std::string assertionFailure( std::string_view expr ) {
   return "Assertion `" + escaped( expr ) + "' failed";
}

std::string sdkCheckFailure( std::string_view call ) {
   return escaped( call ) + " API ERROR:";
}

}  // namespace HalyardTest
