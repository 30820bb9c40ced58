#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "platform/vesper/Ptr.h"
#include "platform/vesper/Type.h"

namespace {

using Vesper::BackPtr;
using Vesper::Ptr;
using Vesper::PtrInterface;

// Counts its destructions in a counter the test owns.
class Counted : public PtrInterface {
 public:
   explicit Counted( int* destroyed ) : destroyed_( destroyed ) {}
   ~Counted() override { ++*destroyed_; }
   int value = 0;

 private:
   int* destroyed_;
};

class Derived : public Counted {
 public:
   using Counted::Counted;
};

class PtrTest : public ::testing::Test {
 protected:
   int destroyed_ = 0;
};

TEST_F( PtrTest, CopiesCountAndTheLastOneDestroys ) {
   Ptr<Counted> a( new Counted( &destroyed_ ) );
   EXPECT_EQ( a->references(), 1u );
   EXPECT_FALSE( a->hasNotificationActive() ) << "a new object starts with notifications off";
   {
      Ptr<Counted> b = a;
      EXPECT_EQ( a->references(), 2u );
      Ptr<Counted> c = std::move( b );
      EXPECT_EQ( a->references(), 2u ) << "a move does not count";
      EXPECT_FALSE( b );
      EXPECT_EQ( c, a );
   }
   EXPECT_EQ( a->references(), 1u );
   EXPECT_EQ( destroyed_, 0 );
   a = nullptr;
   EXPECT_EQ( destroyed_, 1 );
   EXPECT_EQ( a, nullptr );
}

TEST_F( PtrTest, AssignmentTakesTheNewBeforeDroppingTheOld ) {
   Ptr<Counted> a( new Counted( &destroyed_ ) );
   Ptr<Counted> b( new Counted( &destroyed_ ) );
   a = b;
   EXPECT_EQ( destroyed_, 1 ) << "the first object had no other holder";
   EXPECT_EQ( b->references(), 2u );
}

TEST_F( PtrTest, BackPtrDoesNotCount ) {
   Ptr<Counted> owner( new Counted( &destroyed_ ) );
   BackPtr<Counted> back = owner;
   BackPtr<const Counted> constBack = back;
   EXPECT_EQ( owner->references(), 1u );
   EXPECT_EQ( constBack.ptr(), owner.ptr() );
}

// Restores the process-wide switch after each test.
class ThreadSafePtrTest : public PtrTest {
 protected:
   void SetUp() override { Vesper::threadSafePointers_ = true; }
   void TearDown() override { Vesper::threadSafePointers_ = false; }
};

TEST_F( ThreadSafePtrTest, TwoThreadsCopyingKeepTheCountExact ) {
   Ptr<Counted> shared( new Counted( &destroyed_ ) );
   constexpr int copies = 20000;
   auto copyMany = [&] {
      std::vector<Ptr<Counted> > held;
      held.reserve( 64 );
      for ( int i = 0; i < copies; ++i ) {
         held.push_back( shared );
         if ( held.size() == 64 ) {
            held.clear();
         }
      }
   };
   std::thread one( copyMany );
   std::thread two( copyMany );
   one.join();
   two.join();
   EXPECT_EQ( shared->references(), 1u );
   EXPECT_EQ( destroyed_, 0 );
   shared = nullptr;
   EXPECT_EQ( destroyed_, 1 );
}

class PtrDeathTest : public PtrTest {
 protected:
   void SetUp() override { GTEST_FLAG_SET( death_test_style, "threadsafe" ); }
};

TEST_F( PtrDeathTest, DestroyingAReferencedObjectStops ) {
   EXPECT_DEATH(
       {
          auto* held = new Counted( &destroyed_ );
          held->newRef();
          delete held;
       },
       "Assertion `refCount_ == 0' failed" );
}

// Allocation tracking by type.
class Tracked : public PtrInterface {
   VESPER_FWK_TYPE( "Test::Tracked" )
   char payload[24] = {};
};

class TrackedChild : public Tracked {
 public:
   char more[40] = {};
};

}  // namespace
