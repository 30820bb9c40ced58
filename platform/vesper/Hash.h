// Hashes of map keys, and the bit reversal that orders the runtime's hash maps.
//
// A U32 key is its own hash; text hashes with 32-bit FNV-1a; any other key
// type provides `U32 hash() const`. Maps order and bucket their members by the
// bit-reversed hash, so that doubling the number of buckets splits each bucket
// in two in place and the order of iteration between buckets never changes.
#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "platform/vesper/Types.h"

namespace Vesper {

constexpr U32 bitReverse32( U32 v ) {
   v = ( ( v >> 1 ) & 0x55555555u ) | ( ( v & 0x55555555u ) << 1 );
   v = ( ( v >> 2 ) & 0x33333333u ) | ( ( v & 0x33333333u ) << 2 );
   v = ( ( v >> 4 ) & 0x0f0f0f0fu ) | ( ( v & 0x0f0f0f0fu ) << 4 );
   v = ( ( v >> 8 ) & 0x00ff00ffu ) | ( ( v & 0x00ff00ffu ) << 8 );
   return ( v >> 16 ) | ( v << 16 );
}

constexpr U32 textHash( std::string_view text ) {
   U32 h = 2166136261u;
   for ( const char c : text ) {
      h = ( h ^ static_cast<unsigned char>( c ) ) * 16777619u;
   }
   return h;
}

template <class T>
concept HasHashMember = requires( const T& v ) {
   { v.hash() } -> std::convertible_to<U32>;
};

// The hash a map uses for a key.
struct KeyHash {
   template <class K>
   requires std::unsigned_integral<K> &&( sizeof( K ) <= sizeof( U32 ) ) constexpr U32 operator()(
       K key ) const {
      return key;
   }
   constexpr U32 operator()( std::string_view key ) const { return textHash( key ); }
   U32 operator()( const std::string& key ) const { return textHash( key ); }
   template <HasHashMember K>
   U32 operator()( const K& key ) const {
      return static_cast<U32>( key.hash() );
   }
};

}  // namespace Vesper
