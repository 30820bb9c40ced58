// Which software epochs of the system support ACLs, as the generic ACL layer
// publishes it: one process-wide record.
//
// An epoch is named by a text that the agent's shared data holds (the line
// card name, or the epoch name for bring-up). aclSupported( name ) answers
// whether ACLs may be programmed under that epoch; a name that was never
// published reads false, so nothing is programmed under an unknown epoch.
// Each real change tells the notifiees once, with the name.
//
// fennelEpochStatus() answers the record in force; it is never null. The
// platform owner (the generic layer, or the simulation) installs its own with
// fennelEpochStatusIs() before the back-end starts; until then, and after
// fennelEpochStatusIs( nullptr ), an empty record stands.
//
// Threads: install before other threads look; use on the activity thread.
#pragma once

#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Fennel {

class FennelEpochStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Fennel::FennelEpochStatus" )

 public:
   using Ptr = Vesper::Ptr<FennelEpochStatus>;
   using AclSupportedMap = Vesper::HashMap2018<Vesper::Name, bool>;

   class NotifieeConst : public Vesper::NotifieeBase<FennelEpochStatus> {
    public:
      virtual void onAclSupported( const Vesper::Name& /*epochName*/ ) {}
   };

   bool aclSupported( const Vesper::Name& epochName ) const;
   const AclSupportedMap& aclSupported() const { return aclSupported_; }
   bool aclSupportedHas( const Vesper::Name& epochName ) const {
      return aclSupported_.has( epochName );
   }
   void aclSupportedIs( const Vesper::Name& epochName, bool supported );
   void aclSupportedDel( const Vesper::Name& epochName );

 private:
   friend Ptr fennelEpochStatusFactory();
   FennelEpochStatus() = default;

   AclSupportedMap aclSupported_;
};

// A new, empty record with notifications on.
FennelEpochStatus::Ptr fennelEpochStatusFactory();

// The record in force; never null.
FennelEpochStatus::Ptr fennelEpochStatus();
// Installs `status` as the record in force; null installs a new empty one.
void fennelEpochStatusIs( FennelEpochStatus::Ptr status );

}  // namespace Fennel
