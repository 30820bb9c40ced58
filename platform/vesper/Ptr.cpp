#include "platform/vesper/Ptr.h"

#include "platform/vesper/Assert.h"
#include "platform/vesper/Type.h"

namespace Vesper {

std::atomic<bool> threadSafePointers_{ false };

void PtrInterface::delRef() const {
   U32 left;
   if ( threadSafePointers_.load( std::memory_order_relaxed ) ) {
      // acq_rel: the thread that destroys the object sees every write made
      // through the other pointers before they let go.
      const U32 before =
          std::atomic_ref<U32>( refCount_ ).fetch_sub( 1, std::memory_order_acq_rel );
      VESPER_ASSERT( before > 0 );
      left = before - 1;
   } else {
      VESPER_ASSERT( refCount_ > 0 );
      left = --refCount_;
   }
   if ( left == 0 ) {
      // The count is mutable state of the object, not of its value: an
      // object held only through pointers to const still dies at zero.
      const_cast<PtrInterface*>( this )->zeroReferencesIs( true );
   }
}

NotifieeList* PtrInterface::notifieeList() const {
   return nullptr;
}

void PtrInterface::hasNotificationActiveIs( bool active ) {
   notificationActive_ = active;
}

void PtrInterface::zeroReferencesIs( bool zero ) {
   if ( zero ) {
      delete this;
   }
}

const Type& PtrInterface::fwkType() const {
   static const Type type( "Vesper::PtrInterface" );
   return type;
}

PtrInterface::~PtrInterface() {
   VESPER_ASSERT( refCount_ == 0 );
}

}  // namespace Vesper
