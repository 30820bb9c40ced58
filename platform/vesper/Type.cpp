#include "platform/vesper/Type.h"

#include <algorithm>
#include <mutex>
#include <new>

#include "platform/vesper/Assert.h"

namespace Vesper {

namespace {

struct TypeRegistry {
   std::mutex mutex;
   std::vector<const Type*> types;
};

TypeRegistry& typeRegistry() {
   // Never destroyed: static type records of other libraries deregister
   // during exit, in an order nobody controls.
   static TypeRegistry* const registry = new TypeRegistry;
   return *registry;
}

}  // namespace

Type::Type( std::string name ) : name_( std::move( name ) ) {
   TypeRegistry& registry = typeRegistry();
   std::lock_guard guard( registry.mutex );
   registry.types.push_back( this );
}

Type::~Type() {
   TypeRegistry& registry = typeRegistry();
   std::lock_guard guard( registry.mutex );
   std::erase( registry.types, this );
}

const Type* Type::find( std::string_view name ) {
   TypeRegistry& registry = typeRegistry();
   std::lock_guard guard( registry.mutex );
   const auto it = std::find_if( registry.types.begin(), registry.types.end(),
                                 [name]( const Type* type ) { return type->name() == name; } );
   return it == registry.types.end() ? nullptr : *it;
}

std::vector<const Type*> Type::all() {
   TypeRegistry& registry = typeRegistry();
   std::lock_guard guard( registry.mutex );
   return registry.types;
}

void trackAllocation( const Type& type, size_t bytes ) {
   type.liveObjects_.fetch_add( 1, std::memory_order_relaxed );
   type.allocations_.fetch_add( 1, std::memory_order_relaxed );
   type.liveBytes_.fetch_add( bytes, std::memory_order_relaxed );
}

void trackDeallocation( const Type& type, size_t bytes ) {
   const U64 liveBefore = type.liveObjects_.fetch_sub( 1, std::memory_order_relaxed );
   VESPER_ASSERT( liveBefore > 0 );
   type.liveBytes_.fetch_sub( bytes, std::memory_order_relaxed );
}

void* vesperMemAlloc( size_t size ) {
   return ::operator new( size );
}

// The size is part of the interface for pool allocators; the global heap
// does not need it.
void vesperMemFree( void* p, size_t ) {
   ::operator delete( p );
}

}  // namespace Vesper
