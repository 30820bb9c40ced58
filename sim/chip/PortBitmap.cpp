#include "sim/chip/PortBitmap.h"

#include <optional>

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
   // Runs of three or more ports print as a range, so that a whole unit's ports stay short.
   std::string s = "{";
   std::optional<U32> runStart, runEnd;
   auto flush = [&] {
      if ( !runStart ) {
         return;
      }
      if ( s.size() > 1 ) {
         s += ",";
      }
      s += std::to_string( *runStart );
      if ( *runEnd == *runStart + 1 ) {
         s += "," + std::to_string( *runEnd );
      } else if ( *runEnd > *runStart ) {
         s += "-" + std::to_string( *runEnd );
      }
   };
   forEach( [&]( U32 p ) {
      if ( runEnd && p == *runEnd + 1 ) {
         runEnd = p;
         return;
      }
      flush();
      runStart = runEnd = p;
   } );
   flush();
   return s + "}";
}

}  // namespace Sim
