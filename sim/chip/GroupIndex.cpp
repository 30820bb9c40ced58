// The group index: what entries ask of each dimension, the rows kept up to date entry by
// entry, and the lookup that walks the words of the rows in lookup order.
#include "sim/chip/GroupIndex.h"

#include <algorithm>
#include <bit>

#include "sim/chip/PacketKey.h"

namespace Sim {

namespace {

constexpr U32 kWordBits = 64;
static_assert( GroupIndex::kAbsent == UdfReader::kNoByte );

U64 bitOf( U32 pos ) {
   return U64{ 1 } << ( pos % kWordBits );
}

}  // namespace

// ---- What an entry asks of each dimension.

GroupIndex::Shape GroupIndex::shapeOf( const EntryImage& img ) {
   Shape s;
   auto bytesOf = [&]( U8 word, U64 mask, U64 value ) {
      for ( U8 shift = 0; shift < kWordBits; shift += 8 ) {
         const U8 m = static_cast<U8>( mask >> shift );
         if ( m ) {
            s.bytes.push_back(
                Constraint{ { word, shift, 0, 0 }, m, static_cast<U8>( value >> shift ) } );
         }
      }
   };
   for ( const MatchTerm& t : img.terms ) {
      bytesOf( t.word, t.mask, t.value );
   }
   // A range checker holds (or, inverted, fails) for the packet: its bit of the results must
   // be set (clear).
   bytesOf( kRangeWord, img.rangeRequired, img.rangeRequired & ~img.rangeInvert );
   for ( const UdfTerm& t : img.udf ) {
      for ( U8 i = 0; i < t.value.length; ++i ) {
         if ( t.value.mask[i] ) {
            const DimKey d{ kUdfWord, 0, static_cast<U8>( t.chunk.base ),
                            static_cast<U16>( t.chunk.offset + i ) };
            s.bytes.push_back( Constraint{ d, t.value.mask[i], t.value.data[i] } );
         }
      }
   }
   s.refusedPorts = img.refusedPorts;
   return s;
}

std::vector<GroupIndex::DimKey> GroupIndex::dimsOf( const Shape& s ) {
   std::vector<DimKey> dims;
   for ( const Constraint& c : s.bytes ) {
      dims.push_back( c.dim );
   }
   if ( s.refusedPorts ) {
      dims.push_back( DimKey{ kPortWord, 0, 0, 0 } );
   }
   std::sort( dims.begin(), dims.end() );
   dims.erase( std::unique( dims.begin(), dims.end() ), dims.end() );
   return dims;
}

// Two terms of one entry may fall on one byte (user-defined chunks that overlap): all of them
// must hold, and where they disagree no value passes.
GroupIndex::ByteTest GroupIndex::byteTestOf( const Shape& s, const DimKey& d ) {
   ByteTest t;
   for ( const Constraint& c : s.bytes ) {
      if ( c.dim == d ) {
         t.never = t.never || ( ( c.data ^ t.data ) & c.mask & t.mask ) != 0;
         t.mask |= c.mask;
         t.data = static_cast<U8>( t.data | ( c.data & c.mask ) );
      }
   }
   return t;
}

bool GroupIndex::passes( const Shape& s, const DimKey& d, const ByteTest& t, U32 value ) {
   if ( d.word == kPortWord ) {
      return !s.refusedPorts || value >= PortBitmap::kCapacity || !s.refusedPorts->test( value );
   }
   if ( !t.mask ) {
      return true;
   }
   return !t.never && value != kAbsent && ( value & t.mask ) == t.data;
}

U32 GroupIndex::acceptedCount( const Shape& s, const DimKey& d ) {
   const ByteTest t = byteTestOf( s, d );
   if ( d.word != kPortWord && t.mask ) {
      // The bytes that agree with the data under the mask: one per setting of the free bits.
      return t.never ? 0 : U32{ 1 } << ( 8 - std::popcount( t.mask ) );
   }
   U32 n = 0;
   for ( U32 v = 0; v < kValues; ++v ) {
      n += passes( s, d, t, v ) ? 1 : 0;
   }
   return n;
}

U32 GroupIndex::valueOf( const DimKey& d, const U64* words, const IndexProbe& probe ) {
   if ( d.word == kUdfWord ) {
      return probe.udf.byteAt( static_cast<UdfBase>( d.udfBase ), d.udfByte );
   }
   return static_cast<U32>( ( words[d.word] >> d.shift ) & 0xFF );
}

// ---- Dimensions and their rows.

// A new dimension: every live entry accepts every value of it until one constrains it.
GroupIndex::Dim& GroupIndex::dimOf( const DimKey& key ) {
   for ( Dim& d : dims_ ) {
      if ( d.key == key ) {
         return d;
      }
   }
   Dim d;
   d.key = key;
   d.rows.resize( std::size_t( kValues ) * wordsCap_ );
   d.wild = live_;
   dims_.push_back( std::move( d ) );
   dimsSorted_ = false;
   return dims_.back();
}

void GroupIndex::positionWrite( U32 pos, Dim& d, const Shape& shape, bool live ) {
   const std::size_t word = pos / kWordBits;
   const U64 bit = bitOf( pos );
   auto write = [&]( U64& w ) { w = live ? ( w | bit ) : ( w & ~bit ); };
   auto row = [&]( U32 v ) -> U64& { return d.rows[std::size_t( v ) * wordsCap_ + word]; };
   if ( d.key.word == kPortWord ) {
      if ( !shape.refusedPorts ) {
         write( d.wild[word] );
         return;
      }
      const ByteTest none;
      for ( U32 v = 0; v < kValues; ++v ) {
         if ( passes( shape, d.key, none, v ) ) {
            write( row( v ) );
         }
      }
      return;
   }
   const ByteTest t = byteTestOf( shape, d.key );
   if ( !t.mask ) {
      write( d.wild[word] );
      return;
   }
   if ( t.never ) {
      return;
   }
   // Every byte that agrees with the data under the mask: the data with each subset of the
   // free bits.
   const U32 free = static_cast<U8>( ~t.mask );
   for ( U32 sub = free;; sub = ( sub - 1 ) & free ) {
      write( row( t.data | sub ) );
      if ( sub == 0 ) {
         break;
      }
   }
}

// The entry at `pos` keeps its place in the order and takes a new shape: only the rows of the
// dimensions whose test changed are rewritten, and a dimension that both shapes constrain is
// never dropped and made again (which would copy every row of the group). A port update
// changes one dimension of every entry of a list this way.
void GroupIndex::reshape( U32 pos, Shape shape ) {
   Shape old = std::move( slots_[pos].shape );
   slots_[pos].shape = std::move( shape );
   const Shape& now = slots_[pos].shape;
   for ( const DimKey& k : dimsOf( now ) ) {
      Dim& d = dimOf( k );
      ++d.users;
      d.accepted += acceptedCount( now, k );
   }
   for ( const DimKey& k : dimsOf( old ) ) {
      Dim& d = dimOf( k );
      --d.users;
      d.accepted -= acceptedCount( old, k );
   }
   for ( Dim& d : dims_ ) {
      const ByteTest a = byteTestOf( old, d.key );
      const ByteTest b = byteTestOf( now, d.key );
      const bool portsSame = d.key.word != kPortWord || old.refusedPorts == now.refusedPorts;
      if ( a.mask != b.mask || a.data != b.data || a.never != b.never || !portsSame ) {
         positionWrite( pos, d, old, false );
         positionWrite( pos, d, now, true );
      }
   }
   std::erase_if( dims_, []( const Dim& d ) { return d.users == 0; } );
   dimsSorted_ = false;
}

// ---- Changes of entries.

void GroupIndex::add( EntryRecord& e, Shape shape ) {
   // Mostly free positions make the walk longer than it needs to be.
   if ( end_ > 2 * keyOf_.size() + 2 * kWordBits ) {
      relayout();
   }
   const OrderKey key = orderKeyOf( e );
   const U32 pos = positionFor( key );
   slots_[pos] = Slot{ &e, std::move( shape ) };
   const Shape& s = slots_[pos].shape;
   for ( const DimKey& k : dimsOf( s ) ) {
      Dim& d = dimOf( k );
      ++d.users;
      d.accepted += acceptedCount( s, k );
   }
   live_[pos / kWordBits] |= bitOf( pos );
   for ( Dim& d : dims_ ) {
      positionWrite( pos, d, s, true );
   }
   byOrder_.emplace( key, pos );
   keyOf_.emplace( e.id, key );
   dimsSorted_ = false;
}

void GroupIndex::remove( EntryId id ) {
   auto k = keyOf_.find( id );
   auto it = byOrder_.find( k->second );
   const U32 pos = it->second;
   const Shape& s = slots_[pos].shape;
   for ( const DimKey& key : dimsOf( s ) ) {
      Dim& d = dimOf( key );
      --d.users;
      d.accepted -= acceptedCount( s, key );
   }
   for ( Dim& d : dims_ ) {
      positionWrite( pos, d, s, false );
   }
   std::erase_if( dims_, []( const Dim& d ) { return d.users == 0; } );
   live_[pos / kWordBits] &= ~bitOf( pos );
   slots_[pos] = Slot{};
   byOrder_.erase( it );
   keyOf_.erase( k );
   // Free positions at the end are no positions: the walk stops before them.
   end_ = byOrder_.empty() ? 0 : std::prev( byOrder_.end() )->second + 1;
   dimsSorted_ = false;
}

void GroupIndex::entryIs( EntryRecord& e ) {
   const bool canHit = e.installed && e.enabled && e.image && !e.image->neverMatches;
   const bool present = keyOf_.count( e.id ) != 0;
   if ( !canHit ) {
      if ( present ) {
         remove( e.id );
      }
      return;
   }
   Shape shape = shapeOf( *e.image );
   if ( present ) {
      const OrderKey& was = keyOf_.at( e.id );
      const U32 pos = byOrder_.at( was );
      if ( slots_[pos].shape == shape ) {
         // Reinstalled as it stood: only its actions or its order may have changed.
         orderIs( e );
         return;
      }
      const OrderKey now = orderKeyOf( e );
      if ( !( now < was ) && !( was < now ) ) {
         slots_[pos].entry = &e;
         reshape( pos, std::move( shape ) );
         return;
      }
      remove( e.id );
   }
   add( e, std::move( shape ) );
}

void GroupIndex::entryDel( EntryId id ) {
   if ( keyOf_.count( id ) ) {
      remove( id );
   }
}

// An entry that keeps its place between its neighbours keeps its position (compression
// renumbers ordinals without changing the order); one that moves goes and comes again.
void GroupIndex::orderIs( const EntryRecord& e ) {
   auto k = keyOf_.find( e.id );
   if ( k == keyOf_.end() ) {
      return;
   }
   const OrderKey now = orderKeyOf( e );
   auto it = byOrder_.find( k->second );
   const bool afterPrev = it == byOrder_.begin() || std::prev( it )->first < now;
   const bool beforeNext = std::next( it ) == byOrder_.end() || now < std::next( it )->first;
   if ( afterPrev && beforeNext ) {
      auto node = byOrder_.extract( it );
      node.key() = now;
      byOrder_.insert( std::move( node ) );
      k->second = now;
      return;
   }
   EntryRecord& entry = *slots_[it->second].entry;
   Shape shape = slots_[it->second].shape;
   remove( e.id );
   add( entry, std::move( shape ) );
}

// ---- Lookup.

// Most selective first: the fewer (entry, value) pairs a dimension accepts, the sooner a word
// is refused. An entry that does not constrain a dimension accepts all its values.
void GroupIndex::dimsSort() {
   const U64 live = keyOf_.size();
   auto score = [live]( const Dim& d ) { return d.accepted + ( live - d.users ) * kValues; };
   std::stable_sort( dims_.begin(), dims_.end(),
                     [&]( const Dim& a, const Dim& b ) { return score( a ) < score( b ); } );
   dimsSorted_ = true;
}

EntryRecord* GroupIndex::firstMatch( const IndexProbe& probe ) {
   if ( keyOf_.empty() ) {
      return nullptr;
   }
   if ( !dimsSorted_ ) {
      dimsSort();
   }
   std::copy( probe.key.words.begin(), probe.key.words.end(), words_.begin() );
   words_[kRangeWord] = probe.rangeHolds;
   words_[kPortWord] = probe.ingressPort;
   rows_.clear();
   for ( const Dim& d : dims_ ) {
      rows_.push_back(
          { d.rows.data() + std::size_t( valueOf( d.key, words_.data(), probe ) ) * wordsCap_,
            d.wild.data() } );
   }
   if ( rows_.empty() ) {
      rows_.push_back( { live_.data(), live_.data() } );
   }
   const U32 words = ( end_ + kWordBits - 1 ) / kWordBits;
   const std::size_t dims = rows_.size();
   for ( U32 w = 0; w < words; ++w ) {
      U64 x = rows_[0].row[w] | rows_[0].wild[w];
      for ( std::size_t i = 1; x && i < dims; ++i ) {
         x &= rows_[i].row[w] | rows_[i].wild[w];
      }
      if ( x ) {
         return slots_[w * kWordBits + static_cast<U32>( std::countr_zero( x ) )].entry;
      }
   }
   return nullptr;
}

}  // namespace Sim
