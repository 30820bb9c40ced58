// HashMap2018: the runtime's map for most attributes.
//
// Keys are U32, text, or any value type with `U32 hash() const`, `==` and `<`.
// Members are walked in the order of their bit-reversed hash (ties by key):
// not sorted by key, but the same from one walk to the next as long as the
// map does not change, and independent of the order of insertion.
//
// A walk survives deletion of its current member, and of any other member:
// currNodeNonStale() then moves on to the next member in order, and advance()
// steps past the place where the deleted member stood. This is what lets code
// delete members while it walks, and reactors change a map between two SDK
// calls of a walk.
//
// Lookups cost O(log n); the order is what callers rely on.
#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "platform/vesper/Hash.h"
#include "platform/vesper/StableCursor.h"

namespace Vesper {

template <class Key, class Value, class Hasher = KeyHash>
class HashMap2018 {
 public:
   class Node {
    public:
      Node( U32 order, Key key, Value value )
          : order_( order ), key_( std::move( key ) ), value_( std::move( value ) ) {}
      const Key& key() const { return key_; }
      Value& value() { return value_; }
      const Value& value() const { return value_; }
      // The bit-reversed hash of the key: the walk goes by this, rising.
      U32 order() const { return order_; }

    private:
      friend class HashMap2018;
      U32 order_;
      Key key_;
      Value value_;
   };

 private:
   struct Position {
      U32 order;
      Key key;
   };
   struct PositionRef {
      U32 order;
      const Key& key;
   };
   struct Less {
      using is_transparent = void;
      static auto tie( const Node& n ) { return std::tie( n.order_, n.key_ ); }
      static auto tie( const Position& p ) { return std::tie( p.order, p.key ); }
      static auto tie( const PositionRef& p ) { return std::tie( p.order, p.key ); }
      template <class A, class B>
      bool operator()( const A& a, const B& b ) const {
         return tie( a ) < tie( b );
      }
   };
   using Set = std::set<Node, Less>;
   struct PositionOf {
      Position operator()( const Node& n ) const { return Position{ n.order_, n.key_ }; }
   };

 public:
   template <bool isConst>
   class IteratorT {
    public:
      using NodeT = std::conditional_t<isConst, const Node, Node>;

      // The current member; null if it was deleted since the cursor came
      // to it, or at the end. Does not move.
      NodeT* currNodeMaybeStale() const { return mutableNode( cursor_.maybeStale() ); }
      // The current member, or the next one if it was deleted; null at the end.
      NodeT* currNodeNonStale() const { return mutableNode( cursor_.nonStale() ); }
      void advance() { cursor_.advance(); }

      // For range-for: a walk that tolerates deletion of the member in hand.
      NodeT& operator*() const { return *currNodeNonStale(); }
      NodeT* operator->() const { return currNodeNonStale(); }
      IteratorT& operator++() {
         advance();
         return *this;
      }
      bool operator==( std::default_sentinel_t ) const { return currNodeNonStale() == nullptr; }

    private:
      friend class HashMap2018;
      IteratorT( const Set& set, const U64& erasures ) : cursor_( set, erasures ) {}
      // Set members are const only to protect their order; the value of a
      // member of a non-const map may change in place.
      static NodeT* mutableNode( const Node* n ) { return const_cast<NodeT*>( n ); }

      mutable detail::StableCursor<const Set, PositionOf> cursor_;
   };
   using Iterator = IteratorT<false>;
   using ConstIterator = IteratorT<true>;

   size_t size() const { return members_.size(); }
   bool empty() const { return members_.empty(); }

   Value* find( const Key& key ) {
      const auto it = members_.find( PositionRef{ orderOf( key ), key } );
      return it == members_.end() ? nullptr : &const_cast<Node&>( *it ).value_;
   }
   const Value* find( const Key& key ) const {
      return const_cast<HashMap2018*>( this )->find( key );
   }
   bool has( const Key& key ) const { return find( key ) != nullptr; }

   // Adds the member or overwrites its value. True when the map changed: a
   // new member, or a value that differs (any overwrite, for values without ==).
   bool set( const Key& key, Value value ) {
      if ( Value* old = find( key ) ) {
         if constexpr ( std::equality_comparable<Value> ) {
            if ( *old == value ) {
               return false;
            }
         }
         *old = std::move( value );
         return true;
      }
      members_.emplace( orderOf( key ), key, std::move( value ) );
      return true;
   }

   // Removes the member; its value, or nothing if there was none.
   std::optional<Value> del( const Key& key ) {
      const auto it = members_.find( PositionRef{ orderOf( key ), key } );
      if ( it == members_.end() ) {
         return std::nullopt;
      }
      std::optional<Value> removed( std::move( const_cast<Node&>( *it ).value_ ) );
      members_.erase( it );
      ++erasures_;
      return removed;
   }

   void clear() {
      // Values die after the map is consistent again, in case their
      // destructors look at it.
      Set gone;
      gone.swap( members_ );
      ++erasures_;
   }

   Iterator iterator() { return Iterator( members_, erasures_ ); }
   ConstIterator iterator() const { return ConstIterator( members_, erasures_ ); }
   Iterator begin() { return iterator(); }
   ConstIterator begin() const { return iterator(); }
   std::default_sentinel_t end() const { return {}; }

   static U32 orderOf( const Key& key ) { return bitReverse32( Hasher()( key ) ); }

 private:
   Set members_;
   // Counts erasures so that cursors know when to find their place again.
   U64 erasures_ = 0;
};

}  // namespace Vesper
