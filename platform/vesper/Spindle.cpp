#include <mutex>

#include "platform/vesper/Trace.h"

namespace Vesper {

namespace {
// Enough for the SDK calls of several ACL updates, few enough to keep in memory.
constexpr size_t spindleCapacity = 4096;
}  // namespace

struct Spindle::Impl {
   mutable std::mutex mutex;
   std::vector<std::string> ring;  // grows to capacity, then overwrites at `next`
   size_t next = 0;
};

Spindle::Spindle() : impl_( new Impl ) {
   impl_->ring.reserve( spindleCapacity );
}

Spindle& Spindle::instance() {
   static Spindle* const spindle = new Spindle;
   return *spindle;
}

void Spindle::write( std::string_view line ) {
   std::lock_guard guard( impl_->mutex );
   if ( impl_->ring.size() < spindleCapacity ) {
      impl_->ring.emplace_back( line );
   } else {
      impl_->ring[impl_->next].assign( line );
   }
   impl_->next = ( impl_->next + 1 ) % spindleCapacity;
}

std::vector<std::string> Spindle::lines() const {
   std::lock_guard guard( impl_->mutex );
   const auto& ring = impl_->ring;
   if ( ring.size() < spindleCapacity ) {
      return ring;
   }
   std::vector<std::string> ordered( ring.begin() + impl_->next, ring.end() );
   ordered.insert( ordered.end(), ring.begin(), ring.begin() + impl_->next );
   return ordered;
}

void Spindle::clear() {
   std::lock_guard guard( impl_->mutex );
   impl_->ring.clear();
   impl_->next = 0;
}

size_t Spindle::capacity() const {
   return spindleCapacity;
}

}  // namespace Vesper
