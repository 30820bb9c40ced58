// The replaced global operator new and delete of halyard-bench (AllocHook.h says what they
// count). Relaxed atomics: the counts need no order with other memory, only to add up.
#include "bench/AllocHook.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> allocations{ 0 };
std::atomic<std::int64_t> liveBytes{ 0 };

void* counted( std::size_t size ) noexcept {
   void* p = std::malloc( size ? size : 1 );
   if ( p ) {
      allocations.fetch_add( 1, std::memory_order_relaxed );
      liveBytes.fetch_add( static_cast<std::int64_t>( malloc_usable_size( p ) ),
                           std::memory_order_relaxed );
   }
   return p;
}

void* countedOrThrow( std::size_t size ) {
   void* p = counted( size );
   if ( !p ) {
      throw std::bad_alloc();
   }
   return p;
}

void released( void* p ) noexcept {
   if ( p ) {
      liveBytes.fetch_sub( static_cast<std::int64_t>( malloc_usable_size( p ) ),
                           std::memory_order_relaxed );
      std::free( p );
   }
}

}  // namespace

namespace HalyardBench {

AllocCounts allocCounts() {
   return AllocCounts{ allocations.load( std::memory_order_relaxed ),
                       liveBytes.load( std::memory_order_relaxed ) };
}

}  // namespace HalyardBench

void* operator new( std::size_t size ) {
   return countedOrThrow( size );
}
void* operator new[]( std::size_t size ) {
   return countedOrThrow( size );
}
void* operator new( std::size_t size, const std::nothrow_t& ) noexcept {
   return counted( size );
}
void* operator new[]( std::size_t size, const std::nothrow_t& ) noexcept {
   return counted( size );
}
void operator delete( void* p ) noexcept {
   released( p );
}
void operator delete[]( void* p ) noexcept {
   released( p );
}
void operator delete( void* p, std::size_t ) noexcept {
   released( p );
}
void operator delete[]( void* p, std::size_t ) noexcept {
   released( p );
}
void operator delete( void* p, const std::nothrow_t& ) noexcept {
   released( p );
}
void operator delete[]( void* p, const std::nothrow_t& ) noexcept {
   released( p );
}
