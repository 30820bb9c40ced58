// Counted objects and the pointers that hold them.
//
// PtrInterface is the base of every object with identity. It carries the
// reference count and the notification-active flag. Ptr<T> counts; BackPtr<T>
// does not, and is what a child uses for its owner (`aclHelper`, `parent`) so
// that owner and child never keep each other alive.
//
// Invariants:
//  1. An object is destroyed when its count drops to zero, through
//     zeroReferencesIs(true); its count is zero whenever it is destroyed.
//  2. Count changes are plain increments unless threadSafePointers_ is on;
//     then they are atomic. The switch is read at every change, so it must be
//     set before objects are shared between threads.
//  3. A new object has notifications off; its factory turns them on once the
//     constructor has run.
#pragma once

#include <atomic>
#include <compare>
#include <concepts>
#include <cstddef>
#include <utility>

#include "platform/vesper/Type.h"
#include "platform/vesper/Types.h"

namespace Vesper {

class NotifieeList;

// The process-wide switch for atomic count changes.
extern std::atomic<bool> threadSafePointers_;

class PtrInterface {
 public:
   PtrInterface() = default;
   PtrInterface( const PtrInterface& ) = delete;
   PtrInterface& operator=( const PtrInterface& ) = delete;

   U32 references() const;
   bool hasNotificationActive() const { return notificationActive_; }

   void newRef() const;
   // REQUIRES: references() > 0.
   void delRef() const;

   // The order of these virtual operations is part of the runtime's contract.
   // The notifiees registered with this object; null for one that never notifies.
   virtual NotifieeList* notifieeList() const;
   virtual void hasNotificationActiveIs( bool active );
   // Called with true when the last counted pointer lets go; destroys the object.
   virtual void zeroReferencesIs( bool zero );
   virtual const Type& fwkType() const;
   virtual ~PtrInterface();

 private:
   alignas( std::atomic_ref<U32>::required_alignment ) mutable U32 refCount_ = 0;
   bool notificationActive_ = false;
};

// A counted pointer. Conversions go from derived to base and from T to const T.
template <class T>
class Ptr {
 public:
   using element_type = T;

   constexpr Ptr() noexcept = default;
   constexpr Ptr( std::nullptr_t ) noexcept {}
   Ptr( T* p ) noexcept : p_( p ) { retain(); }
   Ptr( const Ptr& other ) noexcept : Ptr( other.p_ ) {}
   Ptr( Ptr&& other ) noexcept : p_( std::exchange( other.p_, nullptr ) ) {}
   template <class U>
   requires std::convertible_to<U*, T*> Ptr( const Ptr<U>& other )
   noexcept : Ptr( other.ptr() ) {}
   template <class U>
   requires std::convertible_to<U*, T*> Ptr( Ptr<U>&& other )
   noexcept : p_( other.release() ) {}
   ~Ptr() { releaseRef(); }

   // Copy first, then swap: assigning a pointer to itself leaves the count
   // as it was, and the old object is let go only after the new one is held.
   Ptr& operator=( const Ptr& other ) noexcept {
      Ptr( other ).swap( *this );
      return *this;
   }
   Ptr& operator=( Ptr&& other ) noexcept {
      Ptr( std::move( other ) ).swap( *this );
      return *this;
   }
   Ptr& operator=( std::nullptr_t ) noexcept {
      Ptr().swap( *this );
      return *this;
   }

   T* ptr() const noexcept { return p_; }
   T* operator->() const noexcept { return p_; }
   T& operator*() const noexcept { return *p_; }
   explicit operator bool() const noexcept { return p_ != nullptr; }
   void swap( Ptr& other ) noexcept { std::swap( p_, other.p_ ); }

   // Hands the reference to the caller: the count is not changed.
   [[nodiscard]] T* release() noexcept { return std::exchange( p_, nullptr ); }

 private:
   void retain() const {
      if ( p_ ) {
         p_->newRef();
      }
   }
   void releaseRef() {
      if ( p_ ) {
         std::exchange( p_, nullptr )->delRef();
      }
   }
   T* p_ = nullptr;
};

template <class T, class U>
bool operator==( const Ptr<T>& a, const Ptr<U>& b ) noexcept {
   return a.ptr() == b.ptr();
}
template <class T>
bool operator==( const Ptr<T>& a, std::nullptr_t ) noexcept {
   return !a;
}
template <class T, class U>
bool operator==( const Ptr<T>& a, const U* b ) noexcept {
   return a.ptr() == b;
}

template <class U, class T>
Ptr<U> ptrStaticCast( const Ptr<T>& p ) {
   return Ptr<U>( static_cast<U*>( p.ptr() ) );
}
template <class U, class T>
Ptr<U> ptrDynamicCast( const Ptr<T>& p ) {
   return Ptr<U>( dynamic_cast<U*>( p.ptr() ) );
}

// An uncounted pointer to an owner. The owner outlives the child by
// construction (it holds the child), so nothing here checks that.
template <class T>
class BackPtr {
 public:
   constexpr BackPtr() noexcept = default;
   constexpr BackPtr( std::nullptr_t ) noexcept {}
   constexpr BackPtr( T* p ) noexcept : p_( p ) {}
   template <class U>
   requires std::convertible_to<U*, T*> BackPtr( const Ptr<U>& p )
   noexcept : p_( p.ptr() ) {}
   template <class U>
   requires std::convertible_to<U*, T*> BackPtr( const BackPtr<U>& p )
   noexcept : p_( p.ptr() ) {}

   T* ptr() const noexcept { return p_; }
   T* operator->() const noexcept { return p_; }
   T& operator*() const noexcept { return *p_; }
   explicit operator bool() const noexcept { return p_ != nullptr; }

   template <class U>
   bool operator==( const BackPtr<U>& other ) const noexcept {
      return p_ == other.ptr();
   }
   template <class U>
   bool operator==( const U* other ) const noexcept {
      return p_ == other;
   }
   bool operator==( std::nullptr_t ) const noexcept { return !p_; }

 private:
   T* p_ = nullptr;
};

inline U32 PtrInterface::references() const {
   if ( threadSafePointers_.load( std::memory_order_relaxed ) ) {
      return std::atomic_ref<U32>( refCount_ ).load( std::memory_order_acquire );
   }
   return refCount_;
}

inline void PtrInterface::newRef() const {
   if ( threadSafePointers_.load( std::memory_order_relaxed ) ) {
      std::atomic_ref<U32>( refCount_ ).fetch_add( 1, std::memory_order_relaxed );
   } else {
      ++refCount_;
   }
}

}  // namespace Vesper
