#include "tests/soak/ProbeFindings.h"

#include <regex>
#include <sstream>
#include <vector>

namespace Soak {

namespace {

std::vector<std::string> idLists( const std::string& finding ) {
   static const std::regex list( "\\[([0-9 ]*)\\]" );
   std::vector<std::string> lists;
   for ( auto it = std::sregex_iterator( finding.begin(), finding.end(), list );
         it != std::sregex_iterator(); ++it ) {
      lists.push_back( " " + ( *it )[1].str() + " " );
   }
   return lists;
}

bool subsequence( const std::string& seen, const std::string& of ) {
   std::istringstream a( seen );
   std::istringstream b( of );
   std::string x;
   std::string y;
   while ( a >> x ) {
      do {
         if ( !( b >> y ) ) {
            return false;
         }
      } while ( y != x );
   }
   return true;
}

}  // namespace

bool entriesOutOfOrder( const std::string& finding ) {
   const std::vector<std::string> lists = idLists( finding );
   return lists.size() == 3 &&
          ( subsequence( lists[0], lists[1] ) || subsequence( lists[0], lists[2] ) );
}

}  // namespace Soak
