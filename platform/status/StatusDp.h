// The ACL status that the data plane publishes: one TCAM status record per
// switch chip, made at hardware bring-up so that readers find a record for
// every chip the ACLs can be programmed on.
//
//   tcamStatus  chip name -> TcamStatus, made by tcamStatusIs( name ), which returns the
//               member standing. A new or removed member tells the notifiees once.
//
// Threads: activity thread.
#pragma once

#include <utility>

#include "platform/vesper/Notifier.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Acl {

// The TCAM status of one switch chip, known by the chip's name.
class TcamStatus : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Acl::TcamStatus" )

 public:
   using Ptr = Vesper::Ptr<TcamStatus>;

   // Made only by StatusDp::tcamStatusIs().
   explicit TcamStatus( Vesper::Name name ) : name_( std::move( name ) ) {}

   const Vesper::Name& name() const { return name_; }

 private:
   Vesper::Name name_;
};

class StatusDp : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Acl::StatusDp" )

 public:
   using Ptr = Vesper::Ptr<StatusDp>;
   using PtrConst = Vesper::Ptr<const StatusDp>;
   using TcamStatusMap = Vesper::OwnedCollection<Vesper::Name, TcamStatus>;

   class NotifieeConst : public Vesper::NotifieeBase<StatusDp> {
    public:
      virtual void onTcamStatus( const Vesper::Name& ) {}
   };

   TcamStatus::Ptr tcamStatus( const Vesper::Name& name ) const { return tcamStatus_.find( name ); }
   const TcamStatusMap& tcamStatus() const { return tcamStatus_; }
   bool tcamStatusHas( const Vesper::Name& name ) const { return tcamStatus_.has( name ); }
   TcamStatus::Ptr tcamStatusIs( const Vesper::Name& name );
   TcamStatus::Ptr tcamStatusDel( const Vesper::Name& name );
   void tcamStatusDelAll();

 private:
   friend Ptr statusDpFactory();
   StatusDp() = default;

   TcamStatusMap tcamStatus_;
};

// A new, empty record with notifications on.
StatusDp::Ptr statusDpFactory();

}  // namespace Acl
