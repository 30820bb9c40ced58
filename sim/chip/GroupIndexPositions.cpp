// The group index: where an entry goes among the positions, and what moves to make room.
#include <algorithm>
#include <bit>

#include "sim/chip/GroupIndex.h"

namespace Sim {

namespace {

constexpr U32 kWordBits = 64;

// Moves bits [from, to) of `row` up by one place; bit `to` is overwritten and bit `from`
// cleared. Words are taken from the top down, so that each reads its lower neighbour's
// highest bit before that word changes.
void shiftRowUp( U64* row, U32 from, U32 to ) {
   const U32 first = from / kWordBits;
   for ( U32 w = to / kWordBits + 1; w-- > first; ) {
      const U32 base = w * kWordBits;
      const U32 low = std::max( from + 1, base ) - base;
      const U32 high = std::min( to, base + kWordBits - 1 ) - base;
      if ( low > high ) {
         continue;
      }
      const U64 mask = ( ~U64{ 0 } >> ( kWordBits - 1 - high ) ) & ( ~U64{ 0 } << low );
      const U64 carry = w > 0 ? row[w - 1] >> ( kWordBits - 1 ) : 0;
      const U64 shifted = ( row[w] << 1 ) | carry;
      row[w] = ( row[w] & ~mask ) | ( shifted & mask );
   }
   row[first] &= ~( U64{ 1 } << ( from % kWordBits ) );
}

}  // namespace

void GroupIndex::capacityIs( U32 words ) {
   for ( Dim& d : dims_ ) {
      std::vector<U64> rows( std::size_t( kValues ) * words, 0 );
      for ( U32 v = 0; v < kValues; ++v ) {
         std::copy_n( d.rows.begin() + std::size_t( v ) * wordsCap_, wordsCap_,
                      rows.begin() + std::size_t( v ) * words );
      }
      d.rows = std::move( rows );
      d.wild.resize( words, 0 );
   }
   live_.resize( words, 0 );
   slots_.resize( std::size_t( words ) * kWordBits );
   wordsCap_ = words;
}

// The first free position at or after `from`; positions from end_ on are free.
U32 GroupIndex::nextFree( U32 from ) const {
   for ( U32 pos = from; pos < end_; ++pos ) {
      if ( !( live_[pos / kWordBits] >> ( pos % kWordBits ) & 1 ) ) {
         return pos;
      }
   }
   return std::max( from, end_ );
}

// Positions [from, to) move up by one; `to` is free and `from` becomes free.
void GroupIndex::shiftUp( U32 from, U32 to ) {
   for ( Dim& d : dims_ ) {
      for ( U32 v = 0; v < kValues; ++v ) {
         shiftRowUp( d.rows.data() + std::size_t( v ) * wordsCap_, from, to );
      }
      shiftRowUp( d.wild.data(), from, to );
   }
   shiftRowUp( live_.data(), from, to );
   std::move_backward( slots_.begin() + from, slots_.begin() + to, slots_.begin() + to + 1 );
   slots_[from] = Slot{};
}

// A free position between the entry's neighbours in the order: the middle of the gap, so that
// later entries find room on both sides, or right after the last entry. With no gap, the run
// of entries from the next one up to the first free position moves up by one.
U32 GroupIndex::positionFor( const OrderKey& k ) {
   auto next = byOrder_.lower_bound( k );
   const U32 lo = next == byOrder_.begin() ? 0 : std::prev( next )->second + 1;
   U32 pos = lo;
   if ( next != byOrder_.end() && lo < next->second ) {
      pos = lo + ( next->second - lo ) / 2;
   } else if ( next != byOrder_.end() ) {
      const U32 free = nextFree( lo );
      if ( free / kWordBits >= wordsCap_ ) {
         capacityIs( std::max<U32>( 1, wordsCap_ * 2 ) );
      }
      shiftUp( lo, free );
      for ( U32 moved = free - lo; moved > 0; --moved, ++next ) {
         ++next->second;
      }
      end_ = std::max( end_, free + 1 );
      return lo;
   }
   if ( pos / kWordBits >= wordsCap_ ) {
      capacityIs( std::max<U32>( 1, wordsCap_ * 2 ) );
   }
   end_ = std::max( end_, pos + 1 );
   return pos;
}

// Entries in order from position 0, as if added one after the other: no gaps left.
void GroupIndex::relayout() {
   std::vector<std::pair<EntryRecord*, Shape> > entries;
   for ( const auto& [key, pos] : byOrder_ ) {
      entries.emplace_back( slots_[pos].entry, std::move( slots_[pos].shape ) );
   }
   const U32 words = std::max<U32>( 1, U32( ( entries.size() + kWordBits - 1 ) / kWordBits ) );
   slots_.clear();
   byOrder_.clear();
   keyOf_.clear();
   dims_.clear();
   live_.clear();
   wordsCap_ = 0;
   end_ = 0;
   capacityIs( words );
   for ( auto& [entry, shape] : entries ) {
      add( *entry, std::move( shape ) );
   }
}

}  // namespace Sim
