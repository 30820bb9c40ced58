// Notifiers and notifiees: how reactors learn of changes.
//
// A class C that is observed derives from NotifierBase<> (or
// NotifierBase<Entity>) and nests a C::NotifieeConst, derived from
// NotifieeBase<C>, with one virtual onX() per attribute and onX(key) per
// member of a collection. Its setters call notify(&NotifieeConst::onX, ...)
// after a real change. A state machine's reactor VesperX derives from
// C::NotifieeConst, overrides the onX it cares for to call the machine's
// handleX, and is pointed at its notifier with notifierIs().
//
// Delivery is immediate, in the setter, on the activity thread, and only
// while the notifier's hasNotificationActive() is on. During a delivery a
// reactor may delete itself or another reactor, move itself or another to a
// different notifier, or drop the last counted pointer to the notifier:
//  1. a reactor removed during a delivery is not called afterwards in it;
//  2. a reactor added during a delivery is first called by the next one;
//  3. the notifier lives until the delivery ends.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/vesper/Ptr.h"

namespace Vesper {

class NotifieeList;

// One reactor's registration with (at most) one notifier.
class NotifieeLink {
 public:
   NotifieeLink( const NotifieeLink& ) = delete;
   NotifieeLink& operator=( const NotifieeLink& ) = delete;
   virtual ~NotifieeLink();

 protected:
   NotifieeLink() = default;
   // Leaves the present list, if any, and joins `list`, if not null.
   void listIs( NotifieeList* list );

 private:
   friend class NotifieeList;
   NotifieeList* list_ = nullptr;
};

// The notifiees of one notifier, in order of registration.
class NotifieeList {
 public:
   NotifieeList() = default;
   NotifieeList( const NotifieeList& ) = delete;
   NotifieeList& operator=( const NotifieeList& ) = delete;
   ~NotifieeList();

   size_t size() const { return size_; }

   // Calls `f` with each notifiee registered when the walk starts and still
   // registered when its turn comes.
   template <class F>
   void forEach( F&& f ) {
      ++walks_;
      const size_t end = links_.size();
      try {
         for ( size_t i = 0; i < end; ++i ) {
            if ( NotifieeLink* link = links_[i] ) {
               f( link );
            }
         }
      } catch ( ... ) {
         walkDone();
         throw;
      }
      walkDone();
   }

 private:
   friend class NotifieeLink;
   void add( NotifieeLink* link );
   void remove( NotifieeLink* link );
   // Closes holes left by removals once no walk depends on the positions.
   void walkDone();

   std::vector<NotifieeLink*> links_;  // null: removed during a walk
   size_t size_ = 0;
   int walks_ = 0;
};

// Base of C::NotifieeConst: holds a counted pointer to the notifier and the
// registration with it.
template <class Notifier>
class NotifieeBase : public NotifieeLink {
 public:
   ~NotifieeBase() override { listIs( nullptr ); }

   const Ptr<const Notifier>& notifier() const { return notifier_; }
   // Moves the registration to `notifier` (null: to none).
   void notifierIs( const Ptr<const Notifier>& notifier ) {
      if ( notifier == notifier_ ) {
         return;
      }
      listIs( notifier ? notifier->notifieeList() : nullptr );
      // Assigned last: dropping the old notifier may destroy it, and by now
      // this reactor is no longer in its list.
      notifier_ = notifier;
   }

 protected:
   NotifieeBase() = default;
   explicit NotifieeBase( const Ptr<const Notifier>& notifier ) { notifierIs( notifier ); }

 private:
   Ptr<const Notifier> notifier_;
};

// Base of an observed class; `Base` is PtrInterface or one of its subclasses.
template <class Base = PtrInterface>
class NotifierBase : public Base {
 public:
   using Base::Base;

   NotifieeList* notifieeList() const override { return &notifiees_; }

 protected:
   // Calls `handler` with `args` on each notifiee of the type that declares
   // it, if notifications are on.
   template <class Notifiee, class... Params, class... Args>
   void notify( void ( Notifiee::*handler )( Params... ), Args&&... args ) const {
      if ( !this->hasNotificationActive() ) {
         return;
      }
      // Hold the notifier for the delivery, unless nothing counts it (an
      // object that lives in a member or on the stack).
      const Ptr<const PtrInterface> keepAlive =
          this->references() ? Ptr<const PtrInterface>( this ) : nullptr;
      notifiees_.forEach( [&]( NotifieeLink* link ) {
         if ( auto* notifiee = dynamic_cast<Notifiee*>( link ) ) {
            ( notifiee->*handler )( args... );
         }
      } );
   }

 private:
   mutable NotifieeList notifiees_;
};

}  // namespace Vesper
