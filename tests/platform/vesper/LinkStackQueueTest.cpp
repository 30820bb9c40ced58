#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/vesper/Exception.h"
#include "platform/vesper/LinkQueue.h"
#include "platform/vesper/LinkStack.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vesper::LinkQueue;
using Vesper::LinkStack;

// Runs `f`, which must raise RangeException, and returns its text.
template <class F>
std::string rangeErrorOf( F&& f ) {
   try {
      f();
   } catch ( const Vesper::RangeException& e ) {
      return e.what();
   }
   return "no exception";
}

TEST( LinkStackTest, PushGivesTheNextIndexAndPopTakesTheNewest ) {
   LinkStack stack;
   EXPECT_EQ( stack.push( 10 ), 0u );
   EXPECT_EQ( stack.push( 20 ), 1u );
   EXPECT_EQ( stack.push( 30 ), 2u );
   EXPECT_THAT( stack.topFirst(), ElementsAre( 30, 20, 10 ) );
   EXPECT_EQ( stack.top(), 30 );
   EXPECT_EQ( stack.at( 0 ), 10 );

   EXPECT_EQ( stack.pop(), 30 );
   EXPECT_THAT( stack.topFirst(), ElementsAre( 20, 10 ) );
   EXPECT_EQ( stack.push( 40 ), 2u ) << "the freed index is the next again";
   EXPECT_THAT( stack.topFirst(), ElementsAre( 40, 20, 10 ) );
   stack.valueIs( 1, 21 );
   EXPECT_THAT( stack.topFirst(), ElementsAre( 40, 21, 10 ) );
}

TEST( LinkStackTest, FullIndexSpaceAndBadIndexRaiseExactTexts ) {
   LinkStack stack( 2 );
   stack.push( 1 );
   stack.push( 2 );
   EXPECT_EQ( rangeErrorOf( [&] { stack.push( 3 ); } ), "linkstack index space full" );
   EXPECT_THAT( stack.topFirst(), ElementsAre( 2, 1 ) ) << "a refused push changes nothing";
   EXPECT_EQ( rangeErrorOf( [&] { stack.at( 2 ); } ), "linkstack index out of range" );
   EXPECT_EQ( rangeErrorOf( [&] { stack.valueIs( 7, 0 ); } ), "linkstack index out of range" );
   stack.pop();
   EXPECT_EQ( rangeErrorOf( [&] { stack.at( 1 ); } ), "linkstack index out of range" );
   EXPECT_EQ( stack.push( 3 ), 1u ) << "room again after a pop";
}

TEST( LinkQueueTest, DeqGivesTheOldestFirst ) {
   LinkQueue queue;
   for ( U32 id = 1; id <= 3; ++id ) {
      EXPECT_EQ( queue.enq( id ), id - 1 );
   }
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 1u, 2u, 3u ) );
   EXPECT_EQ( queue.deq(), 1u );
   EXPECT_EQ( queue.deq(), 2u );
   EXPECT_EQ( queue.enq( 1 ), 3u ) << "a freed id goes to the tail";
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 3u, 1u ) );
   EXPECT_EQ( queue.headIndex(), 2u );
   EXPECT_EQ( queue.tailIndex(), 4u );
   EXPECT_EQ( queue.size(), 2u );
}

TEST( LinkQueueTest, IndexesWrapAndAFullSpaceRaises ) {
   LinkQueue queue( 3 );
   EXPECT_EQ( queue.enq( 10 ), 0u );
   EXPECT_EQ( queue.enq( 11 ), 1u );
   EXPECT_EQ( queue.enq( 12 ), 2u );
   EXPECT_EQ( rangeErrorOf( [&] { queue.enq( 13 ); } ), "linkqueue index space full" );
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 10u, 11u, 12u ) );
   EXPECT_EQ( queue.deq(), 10u );
   EXPECT_EQ( queue.enq( 13 ), 0u ) << "the index of the member that left is given again";
   EXPECT_EQ( queue.at( 0 ), 13u );
   EXPECT_EQ( queue.at( 1 ), 11u );
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 11u, 12u, 13u ) );
}

TEST( LinkQueueTest, DeletingByIndexKeepsTheOthersIndexes ) {
   LinkQueue queue( 4 );
   for ( U32 value : { 100u, 101u, 102u, 103u } ) {
      queue.enq( value );
   }
   EXPECT_EQ( queue.del( 1 ), 101u );
   EXPECT_FALSE( queue.has( 1 ) );
   EXPECT_EQ( queue.at( 2 ), 102u );
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 100u, 102u, 103u ) );
   // The oldest member still holds index 0, so index 0 can't be given again.
   EXPECT_EQ( rangeErrorOf( [&] { queue.enq( 104 ); } ), "linkqueue index space full" );
   queue.valueIs( 3, 7 );
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 100u, 102u, 7u ) );
}

TEST( LinkQueueTest, BadIndexRaisesTheExactText ) {
   LinkQueue queue( 8 );
   EXPECT_EQ( rangeErrorOf( [&] { queue.at( 0 ); } ), "linkqueue index out of range" );
   queue.enq( 5 );
   queue.enq( 6 );
   queue.deq();
   EXPECT_EQ( rangeErrorOf( [&] { queue.at( 0 ); } ), "linkqueue index out of range" );
   EXPECT_EQ( rangeErrorOf( [&] { queue.at( 9 ); } ), "linkqueue index out of range" );
   EXPECT_EQ( rangeErrorOf( [&] { queue.del( 0 ); } ), "linkqueue index out of range" );
   EXPECT_EQ( rangeErrorOf( [&] { queue.valueIs( 3, 1 ); } ), "linkqueue index out of range" );
   EXPECT_THAT( queue.oldestFirst(), ElementsAre( 6u ) );
   queue.clear();
   EXPECT_THAT( queue.oldestFirst(), IsEmpty() );
}

}  // namespace
