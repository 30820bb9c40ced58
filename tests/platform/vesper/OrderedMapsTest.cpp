#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/vesper/HashMapGeneric.h"
#include "platform/vesper/RbTreeMap.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using Vesper::Ptr;

// A member that holds its own key, as a rule or an entry record does.
class Rule : public Vesper::PtrInterface {
 public:
   Rule( U32 ruleNum, std::string text ) : ruleNum_( ruleNum ), text_( std::move( text ) ) {}
   U32 ruleNum() const { return ruleNum_; }
   const std::string& text() const { return text_; }

 private:
   U32 ruleNum_;
   std::string text_;
};

using RuleTable = Vesper::RbTreeMap<Rule, &Rule::ruleNum>;
using RuleHash = Vesper::HashMapGeneric<Rule, &Rule::ruleNum>;

template <class Map>
std::vector<U32> walkKeys( const Map& map ) {
   std::vector<U32> keys;
   for ( const Rule& rule : map ) {
      keys.push_back( rule.ruleNum() );
   }
   return keys;
}

Ptr<Rule> rule( U32 num, std::string text = "" ) {
   return Ptr<Rule>( new Rule( num, text ) );
}

TEST( RbTreeMapTest, WalksInRisingKeyOrder ) {
   RuleTable table;
   for ( U32 num : { 30u, 10u, 20u, 0u, 0xffffffffu } ) {
      EXPECT_EQ( table.insert( rule( num ) ), nullptr );
   }
   EXPECT_THAT( walkKeys( table ), ElementsAre( 0u, 10u, 20u, 30u, 0xffffffffu ) );
   EXPECT_EQ( table.size(), 5u );
}

TEST( RbTreeMapTest, DeletingDuringAWalkGoesOnWithTheNextHigherKey ) {
   RuleTable table;
   for ( U32 num = 0; num < 10; ++num ) {
      table.insert( rule( num ) );
   }
   std::vector<U32> seen;
   for ( auto it = table.iterator(); Rule* r = it.currNodeNonStale(); it.advance() ) {
      seen.push_back( r->ruleNum() );
      if ( r->ruleNum() == 3 ) {
         table.del( 3 );  // the current member
         table.del( 4 );  // the next one
         EXPECT_EQ( it.currNodeMaybeStale(), nullptr );
      }
   }
   EXPECT_THAT( seen, ElementsAre( 0u, 1u, 2u, 3u, 5u, 6u, 7u, 8u, 9u ) );
   EXPECT_THAT( walkKeys( table ), ElementsAre( 0u, 1u, 2u, 5u, 6u, 7u, 8u, 9u ) );
}

TEST( RbTreeMapTest, ClearDuringAWalkEndsIt ) {
   RuleTable table;
   table.insert( rule( 1 ) );
   table.insert( rule( 2 ) );
   int steps = 0;
   for ( auto it = table.iterator(); it.currNodeNonStale(); it.advance() ) {
      ++steps;
      table.clear();
   }
   EXPECT_EQ( steps, 1 );
}

// The walk order of a HashMapGeneric with `bucketBits` bits of bucket index:
// by bucket (top bits of the reversed key), then in order of addition.
std::vector<U32> bucketOrder( const std::vector<U32>& added, unsigned bucketBits ) {
   auto reversed = []( U32 v ) {
      U32 r = 0;
      for ( int bit = 0; bit < 32; ++bit ) {
         r = ( r << 1 ) | ( ( v >> bit ) & 1u );
      }
      return r;
   };
   std::vector<U32> order = added;
   std::stable_sort( order.begin(), order.end(), [&]( U32 a, U32 b ) {
      return reversed( a ) >> ( 32 - bucketBits ) < reversed( b ) >> ( 32 - bucketBits );
   } );
   return order;
}

TEST( HashMapGenericTest, WalksByBucketThenOrderOfAddition ) {
   RuleHash map;
   ASSERT_EQ( map.bucketCount(), 8u );
   // 3, 11 and 19 share their low three bits, hence a bucket of eight.
   const std::vector<U32> added = { 19, 3, 4, 11, 0, 6 };
   for ( U32 num : added ) {
      map.insert( rule( num ) );
   }
   EXPECT_EQ( map.bucketCount(), 8u );
   EXPECT_EQ( map.bucketOf( 3 ), map.bucketOf( 19 ) );
   EXPECT_EQ( map.bucketOf( 1 ), 4u ) << "bucket = top three bits of the reversed key";
   EXPECT_THAT( walkKeys( map ), ElementsAreArray( bucketOrder( added, 3 ) ) );
   EXPECT_THAT( walkKeys( map ), ElementsAre( 0u, 4u, 6u, 19u, 3u, 11u ) );
}

}  // namespace
