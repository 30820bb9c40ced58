// HashMapGeneric: the older hash map, for counted members whose key is held
// by the member itself (the helper's maps of objects, entry lists).
//
// Members are walked bucket by bucket, and within a bucket in the order they
// were added. The bucket of a key is the top bits of its bit-reversed hash,
// so growing the table (doubling the buckets) splits each bucket in two in
// place and the walk keeps its order between buckets.
//
// Unlike HashMap2018, a walk does not survive change: any insertion or
// deletion ends it. To remove members while walking, take keys() first.
#pragma once

#include <functional>
#include <vector>

#include "platform/vesper/Hash.h"
#include "platform/vesper/Ptr.h"

namespace Vesper {

// `keyOf` is a member function or data member of T that gives the key.
template <class T, auto keyOf = &T::key, class Hasher = KeyHash>
class HashMapGeneric {
 public:
   using Key = std::decay_t<std::invoke_result_t<decltype( keyOf ), const T&> >;
   using Bucket = std::vector<Ptr<T> >;

   static constexpr unsigned initialBucketBits = 3;

   class Iterator {
    public:
      T& operator*() const { return *( *map_ ).buckets_[bucket_][index_]; }
      T* operator->() const { return ( *map_ ).buckets_[bucket_][index_].ptr(); }
      Iterator& operator++() {
         ++index_;
         skipEmpty();
         return *this;
      }
      bool operator==( const Iterator& other ) const {
         return bucket_ == other.bucket_ && index_ == other.index_;
      }

    private:
      friend class HashMapGeneric;
      Iterator( const HashMapGeneric& map, size_t bucket ) : map_( &map ), bucket_( bucket ) {
         skipEmpty();
      }
      void skipEmpty() {
         while ( bucket_ < map_->buckets_.size() && index_ >= map_->buckets_[bucket_].size() ) {
            ++bucket_;
            index_ = 0;
         }
      }
      const HashMapGeneric* map_;
      size_t bucket_;
      size_t index_ = 0;
   };

   HashMapGeneric() : buckets_( size_t( 1 ) << initialBucketBits ) {}

   // A reference to the member's own key where keyOf gives one: a lookup copies no key.
   static decltype( auto ) keyOfMember( const T& member ) { return std::invoke( keyOf, member ); }

   size_t size() const { return size_; }
   bool empty() const { return size_ == 0; }
   size_t bucketCount() const { return buckets_.size(); }
   // The bucket that a key falls in, with the present number of buckets.
   size_t bucketOf( const Key& key ) const {
      return bitReverse32( Hasher()( key ) ) >> ( 32 - bucketBits_ );
   }

   Ptr<T> find( const Key& key ) const {
      const Bucket& bucket = buckets_[bucketOf( key )];
      for ( const Ptr<T>& member : bucket ) {
         if ( keyOfMember( *member ) == key ) {
            return member;
         }
      }
      return nullptr;
   }
   bool has( const Key& key ) const { return find( key ) != nullptr; }

   // Adds the member under its own key, or replaces the member with that key
   // in its place; returns the member it replaced, if any.
   // REQUIRES: member is not null.
   Ptr<T> insert( Ptr<T> member ) {
      Bucket& bucket = buckets_[bucketOf( keyOfMember( *member ) )];
      for ( Ptr<T>& present : bucket ) {
         if ( keyOfMember( *present ) == keyOfMember( *member ) ) {
            std::swap( present, member );
            return member;
         }
      }
      bucket.push_back( std::move( member ) );
      ++size_;
      if ( size_ > buckets_.size() ) {
         grow();
      }
      return nullptr;
   }

   // Removes the member with this key; returns it, or null.
   Ptr<T> del( const Key& key ) {
      Bucket& bucket = buckets_[bucketOf( key )];
      for ( auto it = bucket.begin(); it != bucket.end(); ++it ) {
         if ( keyOfMember( **it ) == key ) {
            Ptr<T> removed = std::move( *it );
            bucket.erase( it );
            --size_;
            return removed;
         }
      }
      return nullptr;
   }

   void clear() {
      std::vector<Bucket> gone( buckets_.size() );
      gone.swap( buckets_ );
      size_ = 0;
   }

   // The keys in walk order: a snapshot to delete by.
   std::vector<Key> keys() const {
      std::vector<Key> result;
      result.reserve( size_ );
      for ( const T& member : *this ) {
         result.push_back( keyOfMember( member ) );
      }
      return result;
   }

   Iterator begin() const { return Iterator( *this, 0 ); }
   Iterator end() const { return Iterator( *this, buckets_.size() ); }

 private:
   // Doubles the buckets: bucket b becomes 2b and 2b+1, by the next bit of
   // the reversed hash, each keeping the order of addition.
   void grow() {
      std::vector<Bucket> next( buckets_.size() * 2 );
      ++bucketBits_;
      for ( Bucket& bucket : buckets_ ) {
         for ( Ptr<T>& member : bucket ) {
            next[bucketOf( keyOfMember( *member ) )].push_back( std::move( member ) );
         }
      }
      buckets_.swap( next );
   }

   std::vector<Bucket> buckets_;
   unsigned bucketBits_ = initialBucketBits;
   size_t size_ = 0;
};

}  // namespace Vesper
