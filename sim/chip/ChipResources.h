// The per-unit pools that entries refer to by id: range checkers and user-defined field chunks.
//
// Contract:
//   1. Ids run from 1 to the pool's capacity; 0 is never an id. A pool full of ids answers
//      Status::Resource / nullopt on create.
//   2. A checker or chunk keeps its definition for life; to change one, destroy and create.
//      Destroying one that entries still refer to answers Status::Busy: an entry never points at
//      a definition that has gone.
//   3. The use count is kept by the chip model as entries attach and let go.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace Sim {

struct RangeChecker {
   RangeType type = RangeType::SrcPort;
   U32 min = 0;  // inclusive bounds
   U32 max = 0;
   friend bool operator==( const RangeChecker&, const RangeChecker& ) = default;
};

// A user-defined field: `length` bytes at `offset` from `base` in the packet.
struct UdfChunk {
   UdfBase base = UdfBase::L2Header;
   U8 offset = 0;
   U8 length = 2;
   friend bool operator==( const UdfChunk&, const UdfChunk& ) = default;
};

// The longest chunk: the field processor's UDF data qualifier carries at most 16 bytes.
inline constexpr U8 kUdfMaxLength = 16;

template <typename Def>
class IdPool {
 public:
   explicit IdPool( U32 capacity ) : slots_( capacity ) {}

   U32 capacity() const { return static_cast<U32>( slots_.size() ); }
   std::optional<U32> create( const Def& def ) {
      for ( U32 i = 0; i < slots_.size(); ++i ) {
         if ( !slots_[i].def ) {
            slots_[i] = Slot{ def, 0 };
            return i + 1;
         }
      }
      return std::nullopt;
   }
   Status createWithId( U32 id, const Def& def ) {
      if ( id == 0 || id > slots_.size() ) {
         return Status::Param;
      }
      if ( slots_[id - 1].def ) {
         return Status::Exists;
      }
      slots_[id - 1] = Slot{ def, 0 };
      return Status::Ok;
   }
   Status destroy( U32 id ) {
      if ( !live( id ) ) {
         return Status::NotFound;
      }
      if ( slots_[id - 1].uses ) {
         return Status::Busy;
      }
      slots_[id - 1].def.reset();
      return Status::Ok;
   }
   const Def* get( U32 id ) const { return live( id ) ? &*slots_[id - 1].def : nullptr; }
   // Ids in use, ascending.
   std::vector<U32> ids() const {
      std::vector<U32> r;
      for ( U32 i = 0; i < slots_.size(); ++i ) {
         if ( slots_[i].def ) {
            r.push_back( i + 1 );
         }
      }
      return r;
   }
   // Calls f( id, def ) for every id in use, ascending; allocates nothing.
   template <typename F>
   void forEach( F&& f ) const {
      for ( U32 i = 0; i < slots_.size(); ++i ) {
         if ( slots_[i].def ) {
            f( i + 1, *slots_[i].def );
         }
      }
   }
   // How many entries refer to the id.
   U32 uses( U32 id ) const { return live( id ) ? slots_[id - 1].uses : 0; }
   // REQUIRES: get( id ) != nullptr.
   void use( U32 id ) { ++slots_[id - 1].uses; }
   void release( U32 id ) { --slots_[id - 1].uses; }

 private:
   struct Slot {
      std::optional<Def> def;
      U32 uses = 0;
   };
   bool live( U32 id ) const { return id != 0 && id <= slots_.size() && slots_[id - 1].def; }
   std::vector<Slot> slots_;
};

// Range checkers: the lookup keeps one bit per checker, so a chip has at most 64.
class RangeCheckers : public IdPool<RangeChecker> {
 public:
   static constexpr U32 kMaxCapacity = 64;
   explicit RangeCheckers( U32 capacity );

   // As IdPool's, and they keep the list that holds() walks.
   std::optional<U32> create( const RangeChecker& def );
   Status createWithId( U32 id, const RangeChecker& def );
   Status destroy( U32 id );

   // One bit per checker (id - 1) that holds for a packet whose compared values are these,
   // by RangeType: source port, destination port, IP length.
   U64 holds( const std::array<U64, 3>& values ) const {
      U64 bits = 0;
      for ( const Live& c : live_ ) {
         // min <= v <= max in one unsigned compare: v - min wraps round when v < min.
         bits |= U64( values[c.type] - c.min <= c.span ) << c.bit;
      }
      return bits;
   }

 private:
   struct Live {
      U64 min;
      U64 span;  // max - min
      U8 bit;
      U8 type;
   };
   void liveRebuild();
   std::vector<Live> live_;
};

class UdfChunks : public IdPool<UdfChunk> {
 public:
   static constexpr U32 kMaxCapacity = 64;
   explicit UdfChunks( U32 capacity );
   // Validates a definition: a length of 1 to kUdfMaxLength.
   static bool valid( const UdfChunk& c ) { return c.length >= 1 && c.length <= kUdfMaxLength; }
};

}  // namespace Sim
