// A position in an ordered std::map or std::set that survives deletion of
// the member it stands on (internal to the runtime's maps).
//
// The cursor remembers the ordering key of its member. As long as nothing
// was erased from the container since it last looked, it uses its iterator
// directly; after an erasure it finds its place again by key: the same
// member if it is still there, otherwise the next one. Insertions never
// disturb it (they do not invalidate iterators of node-based containers), and
// a member inserted ahead of the cursor is met when the walk reaches it.
#pragma once

#include <optional>
#include <type_traits>

#include "platform/vesper/Types.h"

namespace Vesper::detail {

// `Container` may be const. `PositionOf` maps an element to its ordering key;
// the container's comparator accepts that key for lookups.
template <class Container, class PositionOf>
class StableCursor {
 public:
   using Element =
       std::conditional_t<std::is_const_v<Container>, const typename Container::value_type,
                          typename Container::value_type>;
   using Position = std::decay_t<decltype( PositionOf()(
       std::declval<const typename Container::value_type&>() ) )>;

   StableCursor( Container& container, const U64& erasures )
       : container_( &container ), erasures_( &erasures ) {
      settle( container.begin() );
   }

   // The member the cursor stands on; null if it was deleted or at the end.
   Element* maybeStale() const {
      if ( !position_ ) {
         return nullptr;
      }
      if ( seen_ != *erasures_ ) {
         const auto it = container_->find( *position_ );
         if ( it == container_->end() ) {
            return nullptr;
         }
         it_ = it;
         seen_ = *erasures_;
      }
      return &*it_;
   }

   // The member the cursor stands on, or, if that was deleted, the next one
   // (the cursor moves there); null at the end.
   Element* nonStale() {
      if ( !position_ ) {
         return nullptr;
      }
      if ( seen_ != *erasures_ ) {
         settle( container_->lower_bound( *position_ ) );
      }
      return position_ ? &*it_ : nullptr;
   }

   // Moves to the member after the current position, deleted or not.
   void advance() {
      if ( !position_ ) {
         return;
      }
      if ( seen_ != *erasures_ ) {
         settle( container_->upper_bound( *position_ ) );
      } else {
         settle( std::next( it_ ) );
      }
   }

 private:
   using Iterator = decltype( std::declval<Container&>().begin() );

   void settle( Iterator it ) {
      it_ = it;
      seen_ = *erasures_;
      if ( it == container_->end() ) {
         position_.reset();
      } else {
         position_ = PositionOf()( *it );
      }
   }

   Container* container_;
   const U64* erasures_;
   mutable Iterator it_;
   mutable U64 seen_ = 0;
   std::optional<Position> position_;  // empty at the end
};

}  // namespace Vesper::detail
