#include "sim/chip/ClassTables.h"

#include <algorithm>
#include <bit>

namespace Sim {

namespace {

U32 maskBits( U32 m ) {
   return static_cast<U32>( std::popcount( m ) );
}

U32 maskBits( const Ip6Addr& m ) {
   U32 n = 0;
   for ( U8 b : m ) {
      n += static_cast<U32>( std::popcount( b ) );
   }
   return n;
}

U32 under( U32 a, U32 m ) {
   return a & m;
}

Ip6Addr under( const Ip6Addr& a, const Ip6Addr& m ) {
   Ip6Addr r{};
   for ( std::size_t i = 0; i < r.size(); ++i ) {
      r[i] = a[i] & m[i];
   }
   return r;
}

std::size_t index( ExactClassTable t ) {
   return static_cast<std::size_t>( t );
}

}  // namespace

void ClassTables::exactClassIs( ExactClassTable t, U16 value, U32 cls ) {
   exact_[index( t )][value] = cls;
}

bool ClassTables::exactClassDel( ExactClassTable t, U16 value ) {
   return exact_[index( t )].erase( value ) != 0;
}

std::optional<U32> ClassTables::exactClass( ExactClassTable t, U16 value ) const {
   const auto& table = exact_[index( t )];
   auto it = table.find( value );
   if ( it == table.end() ) {
      return std::nullopt;
   }
   return it->second;
}

U32 ClassTables::classOf( ExactClassTable t, U16 value ) const {
   const auto& table = exact_[index( t )];
   if ( table.empty() ) {
      return 0;
   }
   auto it = table.find( value );
   return it == table.end() ? 0 : it->second;
}

template <typename Addr>
void ClassTables::bind( PrefixTable<Addr>& t, const Addr& addr, const Addr& mask, U64 wide ) {
   const Addr key = under( addr, mask );
   for ( auto& p : t ) {
      if ( p.addr == key && p.mask == mask ) {
         p.wideClass = wide;
         return;
      }
   }
   const U32 bits = maskBits( mask );
   // After every prefix of as many bits or more: ties keep the order of binding.
   auto at = std::find_if( t.begin(), t.end(), [bits]( const auto& p ) { return p.bits < bits; } );
   t.insert( at, Prefix<Addr>{ key, mask, bits, wide } );
}

template <typename Addr>
bool ClassTables::unbind( PrefixTable<Addr>& t, const Addr& addr, const Addr& mask ) {
   const Addr key = under( addr, mask );
   auto it = std::find_if( t.begin(), t.end(),
                           [&]( const auto& p ) { return p.addr == key && p.mask == mask; } );
   if ( it == t.end() ) {
      return false;
   }
   t.erase( it );
   return true;
}

template <typename Addr>
const ClassTables::Prefix<Addr>* ClassTables::find( const PrefixTable<Addr>& t, const Addr& addr,
                                                    const Addr& mask ) {
   const Addr key = under( addr, mask );
   for ( const auto& p : t ) {
      if ( p.addr == key && p.mask == mask ) {
         return &p;
      }
   }
   return nullptr;
}

void ClassTables::dstIp4ClassIs( U32 addr, U32 mask, U64 wideClass ) {
   bind( ip4_, addr, mask, wideClass );
}

bool ClassTables::dstIp4ClassDel( U32 addr, U32 mask ) {
   return unbind( ip4_, addr, mask );
}

std::optional<U64> ClassTables::dstIp4Class( U32 addr, U32 mask ) const {
   const auto* p = find( ip4_, addr, mask );
   return p ? std::optional<U64>( p->wideClass ) : std::nullopt;
}

U64 ClassTables::matchDstIp4( U32 addr ) const {
   for ( const auto& p : ip4_ ) {
      if ( ( addr & p.mask ) == p.addr ) {
         return p.wideClass;
      }
   }
   return 0;
}

void ClassTables::dstIp6ClassIs( const Ip6Addr& addr, const Ip6Addr& mask, U64 wideClass ) {
   bind( ip6_, addr, mask, wideClass );
}

bool ClassTables::dstIp6ClassDel( const Ip6Addr& addr, const Ip6Addr& mask ) {
   return unbind( ip6_, addr, mask );
}

std::optional<U64> ClassTables::dstIp6Class( const Ip6Addr& addr, const Ip6Addr& mask ) const {
   const auto* p = find( ip6_, addr, mask );
   return p ? std::optional<U64>( p->wideClass ) : std::nullopt;
}

U64 ClassTables::matchDstIp6( const Ip6Addr& addr ) const {
   for ( const auto& p : ip6_ ) {
      if ( under( addr, p.mask ) == p.addr ) {
         return p.wideClass;
      }
   }
   return 0;
}

}  // namespace Sim
