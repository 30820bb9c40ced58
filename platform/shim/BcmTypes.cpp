#include "platform/shim/BcmTypes.h"

#include <bit>
#include <string>

#include "platform/vesper/Exception.h"

namespace Shim {

namespace {

void requirePort( int port ) {
   if ( port < 0 || port >= _shr_pbmp::portCount ) {
      throw Vesper::RangeException( "bcm_pbmp_t port < 0 or > " +
                                    std::to_string( _shr_pbmp::portCount - 1 ) + " not allowed" );
   }
}

U32 bitOf( int port ) {
   return U32( 1 ) << ( port % _shr_pbmp::wordBits );
}

}  // namespace

void _shr_pbmp::clear() {
   for ( U32& word : pbits ) {
      word = 0;
   }
}

bool _shr_pbmp::isNull() const {
   for ( U32 word : pbits ) {
      if ( word != 0 ) {
         return false;
      }
   }
   return true;
}

bool _shr_pbmp::member( int port ) const {
   requirePort( port );
   return ( pbits[port / wordBits] & bitOf( port ) ) != 0;
}

void _shr_pbmp::portAdd( int port ) {
   requirePort( port );
   pbits[port / wordBits] |= bitOf( port );
}

void _shr_pbmp::portRemove( int port ) {
   requirePort( port );
   pbits[port / wordBits] &= ~bitOf( port );
}

int _shr_pbmp::count() const {
   int ports = 0;
   for ( U32 word : pbits ) {
      ports += std::popcount( word );
   }
   return ports;
}

}  // namespace Shim
