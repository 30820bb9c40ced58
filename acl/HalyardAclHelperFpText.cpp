#include "acl/HalyardAclHelperFpText.h"

#include <cstdio>

namespace Halyard {

void appendFpPart( std::string& line, FpMask mask ) {
   char text[16];
   std::snprintf( text, sizeof text, " 0x%X", static_cast<unsigned>( mask.mask ) );
   line += text;
}

void appendFpPart( std::string& line, const FpPbmp& pbmp ) {
   line += "0x";
   for ( int word = bcm_pbmp_t::tracedWordCount - 1; word >= 0; --word ) {
      char digits[16];
      std::snprintf( digits, sizeof digits, "%08x",
                     static_cast<unsigned>( pbmp.pbmp.pbits[word] ) );
      line += digits;
   }
}

std::string fpPbmpText( const bcm_pbmp_t& pbmp ) {
   std::string text;
   appendFpPart( text, FpPbmp{ pbmp } );
   return text;
}

}  // namespace Halyard
