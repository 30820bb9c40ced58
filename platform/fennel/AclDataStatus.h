// What the generic layer publishes about the last application of one ACL:
// the create error that stopped it, or success when it went through.
//
// The back-end is handed the record by precreateAcl() and addIntfToAcl() and
// leaves it alone; the generic layer writes it, and its readers (the
// operator's show commands, the tool's summary) react to each real change.
//
// Threads: activity thread.
#pragma once

#include <utility>

#include "platform/fennel/AclCreateError.h"
#include "platform/fennel/AclKey.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"

namespace Fennel {

class AclDataStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Fennel::AclDataStatus" )

 public:
   using Ptr = Vesper::Ptr<AclDataStatus>;
   using PtrConst = Vesper::Ptr<const AclDataStatus>;

   class NotifieeConst : public Vesper::NotifieeBase<AclDataStatus> {
    public:
      virtual void onCreateError() {}
   };

   const AclKey& key() const { return key_; }
   AclCreateError createError() const { return createError_; }
   void createErrorIs( AclCreateError error );

 private:
   friend Ptr aclDataStatusFactory( AclKey key );
   explicit AclDataStatus( AclKey key ) : key_( std::move( key ) ) {}

   AclKey key_;
   AclCreateError createError_ = aclCreateSuccess;
};

// A new record saying success, with notifications on.
AclDataStatus::Ptr aclDataStatusFactory( AclKey key );

}  // namespace Fennel
