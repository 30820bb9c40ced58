// The process-wide activity lock.
//
// One activity thread runs all code of the agent and holds this lock while it
// does. The lock is given up only for the length of a call that may block
// (an SDK call), through an UnlockAnchor, so that other threads of the agent
// may touch the objects meanwhile; reactors therefore may run between two
// such calls of one longer operation.
//
// Invariants:
//  1. At most one thread holds the lock; held() tells whether it is the caller.
//  2. The lock is not recursive: taking it twice on one thread is an error.
//  3. Only the holder may release it (checked, also in release builds).
#pragma once

#include <atomic>
#include <mutex>
#include <thread>

namespace Vesper {

// Owner-tracking mutex. Not recursive.
class ActivityLock {
 public:
   ActivityLock() = default;
   ActivityLock( const ActivityLock& ) = delete;
   ActivityLock& operator=( const ActivityLock& ) = delete;

   // REQUIRES: not held by the calling thread.
   void lock();
   // REQUIRES: held by the calling thread.
   void unlock();
   // Held by the calling thread?
   bool held() const;

 private:
   std::mutex mutex_;
   // Written only by the holder; read by any thread to answer held().
   std::atomic<std::thread::id> owner_{};
};

// Where code finds the process-wide lock.
struct ActivityUnlockAnchor {
   static ActivityLock& lock();
};

// Releases the held lock for its scope and takes it back in its destructor,
// also when an exception passes.
class UnlockAnchor {
 public:
   // REQUIRES: the calling thread holds `lock`.
   explicit UnlockAnchor( ActivityLock& lock );
   ~UnlockAnchor();
   UnlockAnchor( const UnlockAnchor& ) = delete;
   UnlockAnchor& operator=( const UnlockAnchor& ) = delete;

 private:
   ActivityLock& lock_;
};

// Takes the process-wide lock for a scope: what the activity thread of the
// tool and the test fixtures use around their work.
class ActivityLockGuard {
 public:
   ActivityLockGuard();
   ~ActivityLockGuard();
   ActivityLockGuard( const ActivityLockGuard& ) = delete;
   ActivityLockGuard& operator=( const ActivityLockGuard& ) = delete;
};

}  // namespace Vesper
