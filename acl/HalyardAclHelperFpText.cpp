#include "acl/HalyardAclHelperFpText.h"

#include <cstdio>

namespace Halyard {

std::string fpMaskText( U32 mask ) {
   char text[16];
   std::snprintf( text, sizeof text, " 0x%X", static_cast<unsigned>( mask ) );
   return text;
}

std::string fpPbmpText( const bcm_pbmp_t& pbmp ) {
   std::string text = "0x";
   for ( int word = bcm_pbmp_t::wordCount - 1; word >= 0; --word ) {
      char digits[16];
      std::snprintf( digits, sizeof digits, "%08x", static_cast<unsigned>( pbmp.pbits[word] ) );
      text += digits;
   }
   return text;
}

}  // namespace Halyard
