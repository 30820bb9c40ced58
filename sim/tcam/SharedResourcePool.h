// Internal to sim/tcam. SharedResourcePool<Key>: the ids of one kind of shared resource of a
// unit (range checkers, user-defined field chunks), one id per distinct key, with a count of
// uses. The chip model keeps the definitions; the pool decides when they are made and
// destroyed.
//
// Invariants:
//   1. A key holds at most one id; every acquire of the key is one use of it.
//   2. When the last use goes back, the id is destroyed on the chip. The chip refuses while
//      entries still refer to it (the back-end gives a rule's checkers back before its
//      entries), so such an id stays as draining: it still counts against the limit, serves
//      its key again if asked for, and goes at a later drain() once no entry refers to it.
//   3. slots() (ids in use and draining) never exceeds the limit.
//   4. A release without a use to give back is ignored: the back-end gives a checker back once
//      more than it took when an attach fails on an id that it reused.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "platform/vesper/Types.h"

namespace Sim {

template <class Key>
class SharedResourcePool {
 public:
   // create( key ): a new chip id for the key, nullopt if the chip has none.
   using Create = std::function<std::optional<U32>( const Key& )>;
   // destroy( id ): whether the chip let the id go.
   using Destroy = std::function<bool( U32 )>;

   SharedResourcePool( U32 limit, Create create, Destroy destroy )
       : limit_( limit ), create_( std::move( create ) ), destroy_( std::move( destroy ) ) {}

   // One more use of the key's id; nullopt when the key has none and none can be made.
   std::optional<U32> acquire( const Key& key ) {
      if ( auto it = slots_.find( key ); it != slots_.end() ) {
         ++it->second.uses;
         return it->second.id;
      }
      if ( full() ) {
         return std::nullopt;
      }
      std::optional<U32> id = create_( key );
      if ( id ) {
         slots_.emplace( key, Slot{ *id, 1 } );
      }
      return id;
   }

   void release( const Key& key ) {
      auto it = slots_.find( key );
      if ( it == slots_.end() || it->second.uses == 0 ) {
         return;
      }
      if ( --it->second.uses == 0 && destroy_( it->second.id ) ) {
         slots_.erase( it );
      }
   }

   // Destroys the draining ids that no entry refers to any more.
   void drain() {
      for ( auto it = slots_.begin(); it != slots_.end(); ) {
         if ( it->second.uses == 0 && destroy_( it->second.id ) ) {
            it = slots_.erase( it );
         } else {
            ++it;
         }
      }
   }

   // No key without an id could get one now.
   bool full() {
      if ( slots_.size() >= limit_ ) {
         drain();
      }
      return slots_.size() >= limit_;
   }

   std::optional<U32> id( const Key& key ) const {
      auto it = slots_.find( key );
      return it == slots_.end() ? std::nullopt : std::optional<U32>( it->second.id );
   }
   U32 uses( const Key& key ) const {
      auto it = slots_.find( key );
      return it == slots_.end() ? 0 : it->second.uses;
   }
   std::size_t slots() const { return slots_.size(); }
   U32 limit() const { return limit_; }

 private:
   struct Slot {
      U32 id;
      U32 uses;
   };

   U32 limit_;
   Create create_;
   Destroy destroy_;
   std::map<Key, Slot> slots_;
};

}  // namespace Sim
