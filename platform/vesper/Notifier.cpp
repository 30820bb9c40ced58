#include "platform/vesper/Notifier.h"

#include <algorithm>

#include "platform/vesper/Assert.h"

namespace Vesper {

NotifieeLink::~NotifieeLink() {
   listIs( nullptr );
}

void NotifieeLink::listIs( NotifieeList* list ) {
   if ( list == list_ ) {
      return;
   }
   if ( list_ ) {
      list_->remove( this );
   }
   if ( list ) {
      list->add( this );
   }
}

NotifieeList::~NotifieeList() {
   // A notifier that goes while reactors still name it (one not held by
   // counted pointers) leaves them registered nowhere.
   for ( NotifieeLink* link : links_ ) {
      if ( link ) {
         link->list_ = nullptr;
      }
   }
}

void NotifieeList::add( NotifieeLink* link ) {
   links_.push_back( link );
   link->list_ = this;
   ++size_;
}

void NotifieeList::remove( NotifieeLink* link ) {
   const auto it = std::find( links_.begin(), links_.end(), link );
   VESPER_ASSERT( it != links_.end() );
   if ( walks_ > 0 ) {
      *it = nullptr;
   } else {
      links_.erase( it );
   }
   link->list_ = nullptr;
   --size_;
}

void NotifieeList::walkDone() {
   if ( --walks_ == 0 ) {
      std::erase( links_, nullptr );
   }
}

}  // namespace Vesper
