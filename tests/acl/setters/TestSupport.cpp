#include "tests/acl/setters/TestSupport.h"

namespace AclSettersTest {

namespace {

std::string escaped( std::string_view text ) {
   static constexpr std::string_view special = "\\^$.|?*+()[]{}";
   std::string out;
   for ( char c : text ) {
      if ( special.find( c ) != std::string_view::npos ) {
         out += '\\';
      }
      out += c;
   }
   return out;
}

}  // namespace

std::string assertionFailure( std::string_view expr ) {
   return "Assertion `" + escaped( expr ) + "' failed";
}

std::string sdkCheckFailure( std::string_view call ) {
   return escaped( call ) + " API ERROR:";
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
      if ( std::string_view( line ).substr( 0, prefix.size() ) == prefix ) {
         out.push_back( line );
      }
   }
   return out;
}

}  // namespace AclSettersTest
