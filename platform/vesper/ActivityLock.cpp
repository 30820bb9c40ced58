#include "platform/vesper/ActivityLock.h"

#include "platform/vesper/Assert.h"

namespace Vesper {

void ActivityLock::lock() {
   VESPER_ASSERT( !held() );
   mutex_.lock();
   owner_.store( std::this_thread::get_id(), std::memory_order_relaxed );
}

void ActivityLock::unlock() {
   VESPER_ASSERT( held() );
   owner_.store( std::thread::id(), std::memory_order_relaxed );
   mutex_.unlock();
}

bool ActivityLock::held() const {
   // Only this thread can store its own id, so a relaxed load suffices to
   // recognise it; other threads' values are never equal to ours.
   return owner_.load( std::memory_order_relaxed ) == std::this_thread::get_id();
}

ActivityLock& ActivityUnlockAnchor::lock() {
   // Never destroyed: threads of the agent may still take it during exit.
   static ActivityLock* const theLock = new ActivityLock;
   return *theLock;
}

UnlockAnchor::UnlockAnchor( ActivityLock& lock ) : lock_( lock ) {
   lock_.unlock();
}

UnlockAnchor::~UnlockAnchor() {
   lock_.lock();
}

ActivityLockGuard::ActivityLockGuard() {
   ActivityUnlockAnchor::lock().lock();
}

ActivityLockGuard::~ActivityLockGuard() {
   ActivityUnlockAnchor::lock().unlock();
}

}  // namespace Vesper
