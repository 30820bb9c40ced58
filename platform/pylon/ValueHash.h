// Deterministic hashing for the value types of the platform.
//
// Keys of the runtime's hash maps iterate in an order derived from their
// hash, and that order shows in operator tables and traces; so a value's
// hash must be the same on every build and compiler, which std::hash does
// not promise. Every value type hashes through OneAtATimeHash.
//
// The hash is Jenkins' one-at-a-time hash: start from 0; for each byte add
// it, add the sum shifted left by 10, exclusive-or the sum shifted right by
// 6; at the end add the value shifted left by 3, exclusive-or the value
// shifted right by 11, add the value shifted left by 15; all in 32 bits.
// Wider integers are fed least significant byte first, whatever the host's
// byte order.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/vesper/Types.h"

namespace Pylon {

class OneAtATimeHash {
 public:
   constexpr OneAtATimeHash& addByte( U8 byte ) {
      state_ += byte;
      state_ += state_ << 10;
      state_ ^= state_ >> 6;
      return *this;
   }
   constexpr OneAtATimeHash& addU16( U16 v ) { return addLittleEndian( v, 2 ); }
   constexpr OneAtATimeHash& addU32( U32 v ) { return addLittleEndian( v, 4 ); }
   constexpr OneAtATimeHash& addU64( U64 v ) { return addLittleEndian( v, 8 ); }
   constexpr OneAtATimeHash& addBytes( const U8* bytes, std::size_t length ) {
      for ( std::size_t i = 0; i < length; ++i ) {
         addByte( bytes[i] );
      }
      return *this;
   }
   // The length follows the characters so that ( "ab", "c" ) and
   // ( "a", "bc" ) fed one after the other hash apart.
   constexpr OneAtATimeHash& addText( std::string_view text ) {
      for ( char c : text ) {
         addByte( static_cast<U8>( c ) );
      }
      return addU32( static_cast<U32>( text.size() ) );
   }
   // The finished hash; the state itself is left as it is, so that more
   // bytes may still be added.
   constexpr U32 value() const {
      U32 h = state_;
      h += h << 3;
      h ^= h >> 11;
      h += h << 15;
      return h;
   }

 private:
   constexpr OneAtATimeHash& addLittleEndian( U64 v, int bytes ) {
      for ( int i = 0; i < bytes; ++i ) {
         addByte( static_cast<U8>( v >> ( 8 * i ) ) );
      }
      return *this;
   }

   U32 state_ = 0;
};

}  // namespace Pylon
