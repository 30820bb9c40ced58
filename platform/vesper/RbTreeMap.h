// RbTreeMap: counted members keyed by a U32 that the member holds itself,
// walked in rising key order (a rule table by rule number).
//
// Like HashMap2018, a walk survives deletion of its current member and of
// others: it goes on with the next higher key. The key of a member must not
// change while the member is in the map.
#pragma once

#include <functional>
#include <iterator>
#include <map>

#include "platform/vesper/Ptr.h"
#include "platform/vesper/StableCursor.h"

namespace Vesper {

// `keyOf` is a member function or data member of T that gives the U32 key.
template <class T, auto keyOf = &T::key>
class RbTreeMap {
 private:
   using Map = std::map<U32, Ptr<T> >;
   struct PositionOf {
      U32 operator()( const typename Map::value_type& member ) const { return member.first; }
   };

 public:
   class Iterator {
    public:
      // The current member; null if it was deleted, or at the end.
      T* currNodeMaybeStale() const { return objectOf( cursor_.maybeStale() ); }
      // The current member, or the next higher one if it was deleted.
      T* currNodeNonStale() const { return objectOf( cursor_.nonStale() ); }
      void advance() { cursor_.advance(); }

      T& operator*() const { return *currNodeNonStale(); }
      T* operator->() const { return currNodeNonStale(); }
      Iterator& operator++() {
         advance();
         return *this;
      }
      bool operator==( std::default_sentinel_t ) const { return currNodeNonStale() == nullptr; }

    private:
      friend class RbTreeMap;
      Iterator( const Map& map, const U64& erasures ) : cursor_( map, erasures ) {}
      static T* objectOf( const typename Map::value_type* member ) {
         return member ? member->second.ptr() : nullptr;
      }
      mutable detail::StableCursor<const Map, PositionOf> cursor_;
   };

   static U32 keyOfMember( const T& member ) { return std::invoke( keyOf, member ); }

   size_t size() const { return members_.size(); }
   bool empty() const { return members_.empty(); }

   Ptr<T> find( U32 key ) const {
      const auto it = members_.find( key );
      return it == members_.end() ? nullptr : it->second;
   }
   bool has( U32 key ) const { return members_.contains( key ); }

   // Adds the member under its own key; returns the member it replaced, if any.
   // REQUIRES: member is not null.
   Ptr<T> insert( Ptr<T> member ) {
      const U32 key = keyOfMember( *member );
      auto [it, added] = members_.try_emplace( key, member );
      if ( added ) {
         return nullptr;
      }
      std::swap( it->second, member );
      return member;
   }

   // Removes the member with this key; returns it, or null.
   Ptr<T> del( U32 key ) {
      const auto it = members_.find( key );
      if ( it == members_.end() ) {
         return nullptr;
      }
      Ptr<T> removed = std::move( it->second );
      members_.erase( it );
      ++erasures_;
      return removed;
   }

   void clear() {
      // Members die after the map is consistent again, in case their
      // destructors look at it.
      Map gone;
      gone.swap( members_ );
      ++erasures_;
   }

   Iterator iterator() const { return Iterator( members_, erasures_ ); }
   Iterator begin() const { return iterator(); }
   std::default_sentinel_t end() const { return {}; }

 private:
   Map members_;
   U64 erasures_ = 0;
};

}  // namespace Vesper
