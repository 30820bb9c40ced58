#include "sim/chip/PortBitmap.h"

namespace Sim {

PortBitmap PortBitmap::firstPorts( U32 count ) {
   PortBitmap b;
   for ( U32 p = 0; p < count; ++p ) {
      b.set( p );
   }
   return b;
}

bool PortBitmap::none() const {
   for ( U64 w : words_ ) {
      if ( w ) {
         return false;
      }
   }
   return true;
}

U32 PortBitmap::count() const {
   U32 n = 0;
   for ( U64 w : words_ ) {
      n += static_cast<U32>( std::popcount( w ) );
   }
   return n;
}

PortBitmap& PortBitmap::operator|=( const PortBitmap& o ) {
   for ( std::size_t w = 0; w < kWords; ++w ) {
      words_[w] |= o.words_[w];
   }
   return *this;
}

PortBitmap& PortBitmap::operator&=( const PortBitmap& o ) {
   for ( std::size_t w = 0; w < kWords; ++w ) {
      words_[w] &= o.words_[w];
   }
   return *this;
}

PortBitmap& PortBitmap::remove( const PortBitmap& o ) {
   for ( std::size_t w = 0; w < kWords; ++w ) {
      words_[w] &= ~o.words_[w];
   }
   return *this;
}

PortBitmap PortBitmap::operator~() const {
   PortBitmap r;
   for ( std::size_t w = 0; w < kWords; ++w ) {
      r.words_[w] = ~words_[w];
   }
   return r;
}

std::string PortBitmap::text() const {
   std::string s = "{";
   bool first = true;
   forEach( [&]( U32 p ) {
      if ( !first ) {
         s += ",";
      }
      s += std::to_string( p );
      first = false;
   } );
   return s + "}";
}

}  // namespace Sim
