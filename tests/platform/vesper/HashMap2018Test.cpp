#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/vesper/HashMap2018.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Vesper::HashMap2018;

// Written out bit by bit, apart from the map's own version.
U32 reversedBits( U32 v ) {
   U32 r = 0;
   for ( int bit = 0; bit < 32; ++bit ) {
      if ( v & ( 1u << bit ) ) {
         r |= 1u << ( 31 - bit );
      }
   }
   return r;
}

// 32-bit FNV-1a, from its published definition.
U32 fnv1a( const std::string& text ) {
   U32 h = 0x811c9dc5u;
   for ( unsigned char c : text ) {
      h ^= c;
      h *= 0x01000193u;
   }
   return h;
}

template <class Key, class Value>
std::vector<Key> walkKeys( const HashMap2018<Key, Value>& map ) {
   std::vector<Key> keys;
   for ( const auto& node : map ) {
      keys.push_back( node.key() );
   }
   return keys;
}

// The keys sorted the way the walk must go: by reversed hash.
template <class Key, class Hash>
std::vector<Key> byReversedHash( std::vector<Key> keys, Hash hash ) {
   std::stable_sort( keys.begin(), keys.end(), [&]( const Key& a, const Key& b ) {
      return reversedBits( hash( a ) ) < reversedBits( hash( b ) );
   } );
   return keys;
}

const std::vector<U32> someKeys = { 5, 1000, 3, 0, 77, 12, 4096, 1, 0xffffffffu, 8, 2, 31 };

TEST( HashMap2018OrderTest, U32KeysWalkByBitReversedValue ) {
   HashMap2018<U32, int> map;
   for ( U32 key : someKeys ) {
      map.set( key, int( key ) );
   }
   const auto expected = byReversedHash( someKeys, []( U32 k ) { return k; } );
   EXPECT_THAT( walkKeys( map ), ElementsAreArray( expected ) );
   EXPECT_THAT( std::vector<U32>( expected.begin(), expected.begin() + 4 ),
                ElementsAre( 0u, 4096u, 8u, 1000u ) )
       << "the lowest bit of a key is the highest of the order: 8 = 0b1000 before "
          "1000 = 0b1111101000 (bit 5 decides), both before 12 = 0b1100";
}

TEST( HashMap2018OrderTest, TextKeysWalkByBitReversedFnvHash ) {
   const std::vector<std::string> names = { "Ethernet1", "Ethernet2", "Vlan10",  "Port-Channel5",
                                            "acl-in",    "acl-out",   "default", "" };
   HashMap2018<std::string, int> map;
   for ( const auto& name : names ) {
      map.set( name, 1 );
   }
   EXPECT_THAT( walkKeys( map ), ElementsAreArray( byReversedHash( names, fnv1a ) ) );
}

TEST( HashMap2018OrderTest, OrderIsIndependentOfInsertionAndStableBetweenChanges ) {
   HashMap2018<U32, int> forward, backward;
   for ( U32 key : someKeys ) {
      forward.set( key, 0 );
   }
   for ( auto it = someKeys.rbegin(); it != someKeys.rend(); ++it ) {
      backward.set( *it, 0 );
   }
   EXPECT_EQ( walkKeys( forward ), walkKeys( backward ) );
   EXPECT_EQ( walkKeys( forward ), walkKeys( forward ) );
   forward.del( 77 );
   forward.set( 77, 1 );
   EXPECT_EQ( walkKeys( forward ), walkKeys( backward ) );
}

// A key value type with its own hash, as the vocabulary's keys have.
struct PortKey {
   U32 unit;
   U32 port;
   U32 hash() const { return unit * 256 + port; }
   auto operator<=>( const PortKey& ) const = default;
};

TEST( HashMap2018OrderTest, ValueKeysUseTheirHash ) {
   HashMap2018<PortKey, int> map;
   const std::vector<PortKey> keys = { { 0, 1 }, { 1, 0 }, { 0, 2 }, { 3, 7 } };
   for ( const auto& key : keys ) {
      map.set( key, 0 );
   }
   EXPECT_THAT( walkKeys( map ), ElementsAreArray( byReversedHash(
                                     keys, []( const PortKey& k ) { return k.hash(); } ) ) );
   EXPECT_TRUE( map.has( PortKey{ 3, 7 } ) );
   EXPECT_FALSE( map.has( PortKey{ 7, 3 } ) );
}

TEST( HashMap2018Test, SetFindDelAnswerAndChangeTheMap ) {
   HashMap2018<U32, std::string> map;
   EXPECT_TRUE( map.empty() );
   EXPECT_TRUE( map.set( 4, "four" ) ) << "a new member is a change";
   EXPECT_FALSE( map.set( 4, "four" ) ) << "the same value is no change";
   EXPECT_EQ( map.size(), 1u );
   EXPECT_TRUE( map.set( 4, "FOUR" ) );
   ASSERT_NE( map.find( 4 ), nullptr );
   EXPECT_EQ( *map.find( 4 ), "FOUR" );
   EXPECT_EQ( map.find( 5 ), nullptr );

   EXPECT_EQ( map.del( 5 ), std::nullopt );
   EXPECT_EQ( map.del( 4 ), "FOUR" );
   EXPECT_TRUE( map.empty() );
}

class HashMap2018DeletionTest : public ::testing::Test {
 protected:
   void SetUp() override {
      for ( U32 key = 0; key < 16; ++key ) {
         map_.set( key, int( key ) );
      }
      order_ = walkKeys( map_ );
   }
   // The walk order without the given keys.
   std::vector<U32> orderWithout( std::vector<U32> gone ) const {
      std::vector<U32> rest;
      for ( U32 key : order_ ) {
         if ( std::find( gone.begin(), gone.end(), key ) == gone.end() ) {
            rest.push_back( key );
         }
      }
      return rest;
   }
   HashMap2018<U32, int> map_;
   std::vector<U32> order_;
};

TEST_F( HashMap2018DeletionTest, DeletingTheCurrentMemberGoesOnWithTheNext ) {
   std::vector<U32> seen;
   for ( auto it = map_.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
      seen.push_back( node->key() );
      if ( node->key() % 3 == 0 ) {
         map_.del( node->key() );
         EXPECT_EQ( it.currNodeMaybeStale(), nullptr );
      }
   }
   EXPECT_EQ( seen, order_ );
   EXPECT_THAT( walkKeys( map_ ), ElementsAreArray( orderWithout( { 0, 3, 6, 9, 12, 15 } ) ) );
}

TEST_F( HashMap2018DeletionTest, CurrNodeNonStaleMovesToTheNextAfterDeletion ) {
   auto it = map_.iterator();
   it.advance();
   ASSERT_EQ( it.currNodeMaybeStale()->key(), order_[1] );
   map_.del( order_[1] );
   map_.del( order_[2] );
   EXPECT_EQ( it.currNodeMaybeStale(), nullptr );
   ASSERT_NE( it.currNodeNonStale(), nullptr );
   EXPECT_EQ( it.currNodeNonStale()->key(), order_[3] );
   EXPECT_EQ( it.currNodeMaybeStale()->key(), order_[3] ) << "the cursor moved there";
   it.advance();
   EXPECT_EQ( it.currNodeNonStale()->key(), order_[4] );
}

TEST_F( HashMap2018DeletionTest, DeletingOtherMembersDuringAWalkSkipsThem ) {
   std::vector<U32> seen;
   for ( const auto& node : map_ ) {
      seen.push_back( node.key() );
      if ( seen.size() == 2 ) {
         map_.del( order_[0] );  // behind the walk
         map_.del( order_[4] );  // ahead of it
         map_.del( order_[5] );
      }
   }
   EXPECT_EQ( seen, orderWithout( { order_[4], order_[5] } ) );
   EXPECT_THAT( walkKeys( map_ ),
                ElementsAreArray( orderWithout( { order_[0], order_[4], order_[5] } ) ) );
}

TEST_F( HashMap2018DeletionTest, DeletingEverythingDuringAWalkEndsIt ) {
   int steps = 0;
   for ( auto it = map_.iterator(); it.currNodeNonStale(); it.advance() ) {
      ++steps;
      map_.clear();
   }
   EXPECT_EQ( steps, 1 );
   EXPECT_TRUE( map_.empty() );
}

TEST_F( HashMap2018DeletionTest, MembersAddedAheadOfTheWalkAreMet ) {
   map_.del( order_.back() );
   std::vector<U32> seen;
   for ( const auto& node : map_ ) {
      seen.push_back( node.key() );
      if ( seen.size() == 1 ) {
         map_.set( order_.back(), 0 );  // last in order: ahead of the walk
      }
   }
   EXPECT_EQ( seen, order_ );
}

}  // namespace
