// Type records and per-type allocation tracking.
//
// Every class of counted objects answers a static type record through
// fwkType(), named as in the code ("Halyard::AclHelper"). The record counts
// the objects of the class allocated through the runtime: live objects, all
// allocations since start, and bytes currently held. Classes opt in with
// VESPER_FWK_TYPE, which gives them the record and class-level operator
// new/delete that go through vesperMemAlloc and the trackers.
//
// Counters are atomic, so objects may be made on any thread. A record
// registers itself by name for diagnostics while it lives.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/vesper/Types.h"

namespace Vesper {

class Type {
 public:
   explicit Type( std::string name );
   ~Type();
   Type( const Type& ) = delete;
   Type& operator=( const Type& ) = delete;

   const std::string& name() const { return name_; }
   U64 liveObjects() const { return liveObjects_.load( std::memory_order_relaxed ); }
   U64 allocations() const { return allocations_.load( std::memory_order_relaxed ); }
   U64 liveBytes() const { return liveBytes_.load( std::memory_order_relaxed ); }

   // The record registered under `name`, or null.
   static const Type* find( std::string_view name );
   // Every registered record, in order of registration.
   static std::vector<const Type*> all();

 private:
   friend void trackAllocation( const Type& type, size_t bytes );
   friend void trackDeallocation( const Type& type, size_t bytes );
   std::string name_;
   mutable std::atomic<U64> liveObjects_{ 0 };
   mutable std::atomic<U64> allocations_{ 0 };
   mutable std::atomic<U64> liveBytes_{ 0 };
};

void trackAllocation( const Type& type, size_t bytes );
// REQUIRES: a matching trackAllocation of the same size.
void trackDeallocation( const Type& type, size_t bytes );

// The runtime's allocator. Raises std::bad_alloc when memory is exhausted.
void* vesperMemAlloc( size_t size );
void vesperMemFree( void* p, size_t size );

}  // namespace Vesper

// Inside a class derived from PtrInterface: gives it the type record named
// `typeName` and routes its allocations through the per-type trackers. A
// derived class without its own use is counted under its base's record.
// Leaves the access at public.
#define VESPER_FWK_TYPE( typeName )                           \
 public:                                                      \
   static const ::Vesper::Type& fwkTypeStatic() {             \
      static const ::Vesper::Type type( typeName );           \
      return type;                                            \
   }                                                          \
   const ::Vesper::Type& fwkType() const override {           \
      return fwkTypeStatic();                                 \
   }                                                          \
   static void* operator new( std::size_t size ) {            \
      void* p = ::Vesper::vesperMemAlloc( size );             \
      ::Vesper::trackAllocation( fwkTypeStatic(), size );     \
      return p;                                               \
   }                                                          \
   static void operator delete( void* p, std::size_t size ) { \
      ::Vesper::trackDeallocation( fwkTypeStatic(), size );   \
      ::Vesper::vesperMemFree( p, size );                     \
   }
