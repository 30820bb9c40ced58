#include "platform/acl/MacFilter.h"

#include "platform/vesper/Exception.h"

namespace Acl {

void MacFilter::mplsLabelIs( S64 label ) {
   if ( label < 0 || label > maxMplsLabel ) {
      throw Vesper::RangeException( "MacFilter::mplsLabel < 0 or > 0xFFFFF not allowed" );
   }
   mplsLabel_ = static_cast<U32>( label );
   matchMplsLabel_ = true;
}

void MacFilter::mplsLabelDel() {
   mplsLabel_ = 0;
   matchMplsLabel_ = false;
}

void MacFilter::mplsInnerLabelIs( S64 label ) {
   if ( label < 0 || label > maxMplsLabel ) {
      throw Vesper::RangeException( "MacFilter::mplsInnerLabel < 0 or > 0xFFFFF not allowed" );
   }
   mplsInnerLabel_ = static_cast<U32>( label );
   matchMplsInnerLabel_ = true;
}

void MacFilter::mplsInnerLabelDel() {
   mplsInnerLabel_ = 0;
   matchMplsInnerLabel_ = false;
}

}  // namespace Acl
