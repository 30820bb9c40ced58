// Sim::PortBitmap: a fixed set of port numbers, the model's form of the SDK's port bitmap.
//
// Contract:
//   1. It holds ports 0 .. kCapacity-1; kCapacity is at least the largest port count of any chip
//      the simulation describes. A port outside that range is a caller error and raises
//      Vesper::RangeException (the model checks ports against the unit's count before it gets
//      here, so this guards only programming errors).
//   2. It is a value: copied, compared and combined by value, with no heap storage, so that the
//      lookup can hold several on the stack per packet.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <initializer_list>
#include <string>

#include "platform/vesper/Exception.h"
#include "platform/vesper/Types.h"

namespace Sim {

class PortBitmap {
 public:
   static constexpr U32 kCapacity = 256;

   constexpr PortBitmap() = default;
   PortBitmap( std::initializer_list<U32> ports ) {
      for ( U32 p : ports ) {
         set( p );
      }
   }
   // Every port below `count`: the unit's full bitmap.
   static PortBitmap firstPorts( U32 count );

   void set( U32 port ) { words_[wordOf( port )] |= bitOf( port ); }
   void clear( U32 port ) { words_[wordOf( port )] &= ~bitOf( port ); }
   void clearAll() { words_.fill( 0 ); }
   bool test( U32 port ) const { return ( words_[wordOf( port )] & bitOf( port ) ) != 0; }
   bool none() const;
   bool any() const { return !none(); }
   U32 count() const;

   PortBitmap& operator|=( const PortBitmap& o );
   PortBitmap& operator&=( const PortBitmap& o );
   // Removes every port of `o`.
   PortBitmap& remove( const PortBitmap& o );
   PortBitmap operator~() const;
   friend PortBitmap operator|( PortBitmap a, const PortBitmap& b ) { return a |= b; }
   friend PortBitmap operator&( PortBitmap a, const PortBitmap& b ) { return a &= b; }
   friend bool operator==( const PortBitmap&, const PortBitmap& ) = default;

   // Calls f( port ) for every port, in ascending order.
   template <typename F>
   void forEach( F&& f ) const {
      for ( std::size_t w = 0; w < kWords; ++w ) {
         U64 bits = words_[w];
         while ( bits ) {
            const U32 b = static_cast<U32>( std::countr_zero( bits ) );
            f( static_cast<U32>( w * 64 + b ) );
            bits &= bits - 1;
         }
      }
   }

   // Ports as a list, "{}", "{1,2,7}" or "{0-32,40}": for test failure messages and dumps.
   std::string text() const;

 private:
   static constexpr std::size_t kWords = kCapacity / 64;
   static std::size_t wordOf( U32 port ) {
      if ( port >= kCapacity ) {
         throw Vesper::RangeException( "port " + std::to_string( port ) +
                                       " is beyond the port bitmap" );
      }
      return port / 64;
   }
   static U64 bitOf( U32 port ) { return U64{ 1 } << ( port % 64 ); }

   std::array<U64, kWords> words_{};
};

}  // namespace Sim
