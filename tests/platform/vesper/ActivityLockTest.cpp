#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "platform/vesper/ActivityLock.h"

namespace {

using Vesper::ActivityLock;
using Vesper::ActivityLockGuard;
using Vesper::ActivityUnlockAnchor;
using Vesper::UnlockAnchor;

// True if another thread can take and give back `lock` right now.
bool otherThreadCanTake( ActivityLock& lock ) {
   std::atomic<bool> took = false;
   std::thread other( [&] {
      lock.lock();
      took = lock.held();
      lock.unlock();
   } );
   other.join();
   return took;
}

TEST( ActivityLockTest, GuardTakesTheProcessLockForItsScope ) {
   ActivityLock& lock = ActivityUnlockAnchor::lock();
   EXPECT_EQ( &lock, &ActivityUnlockAnchor::lock() );
   EXPECT_FALSE( lock.held() );
   {
      ActivityLockGuard guard;
      EXPECT_TRUE( lock.held() );
      std::atomic<bool> heldElsewhere = true;
      std::thread( [&] { heldElsewhere = lock.held(); } ).join();
      EXPECT_FALSE( heldElsewhere ) << "held() answers for the calling thread only";
   }
   EXPECT_FALSE( lock.held() );
   EXPECT_TRUE( otherThreadCanTake( lock ) );
}

TEST( ActivityLockTest, UnlockAnchorReleasesForItsScopeAndTakesBackEvenOnAnException ) {
   ActivityLockGuard guard;
   ActivityLock& lock = ActivityUnlockAnchor::lock();
   bool otherTook = false;
   EXPECT_THROW(
       {
          UnlockAnchor anchor( lock );
          EXPECT_FALSE( lock.held() );
          otherTook = otherThreadCanTake( lock );
          throw std::runtime_error( "sdk call failed" );
       },
       std::runtime_error );
   EXPECT_TRUE( otherTook );
   EXPECT_TRUE( lock.held() );
}

// Other tests of this binary start threads: re-run the child from the start.
class ActivityLockDeathTest : public ::testing::Test {
 protected:
   void SetUp() override { GTEST_FLAG_SET( death_test_style, "threadsafe" ); }
};

TEST_F( ActivityLockDeathTest, MisuseStopsNamingTheBrokenCondition ) {
   ActivityLock lock;
   EXPECT_DEATH( lock.unlock(), "Assertion `held\\(\\)' failed" );
   EXPECT_DEATH( UnlockAnchor anchor( lock ), "Assertion `held\\(\\)' failed" );
   lock.lock();
   EXPECT_DEATH( lock.lock(), "Assertion `!held\\(\\)' failed" );
   lock.unlock();
}

}  // namespace
