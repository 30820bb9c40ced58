// Chip-wide ACL facts that the central part of the agent publishes once it
// has looked at the hardware. The ACL back-end reads them; the sharing
// manager waits for `initialized` before it sizes the raclId space.
//
//   initialized                  the facts below are final
//   raclIdBits                   how many bits of the L3 interface class the hardware
//                                offers for raclIds: 9 or 10 (0 until known)
//   ingressRaclSharingSupported  the hardware can share ingress router ACLs across VLANs
//
// Each real change tells the notifiees once. Threads: activity thread.
#pragma once

#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace HalyardCentral {

class AclHwStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardCentral::AclHwStatus" )

 public:
   using Ptr = Vesper::Ptr<AclHwStatus>;
   using PtrConst = Vesper::Ptr<const AclHwStatus>;

   class NotifieeConst : public Vesper::NotifieeBase<AclHwStatus> {
    public:
      virtual void onInitialized() {}
      virtual void onRaclIdBits() {}
      virtual void onIngressRaclSharingSupported() {}
   };

   bool initialized() const { return initialized_; }
   void initializedIs( bool value );
   U32 raclIdBits() const { return raclIdBits_; }
   void raclIdBitsIs( U32 bits );
   bool ingressRaclSharingSupported() const { return ingressRaclSharingSupported_; }
   void ingressRaclSharingSupportedIs( bool value );

 private:
   friend Ptr aclHwStatusFactory();
   AclHwStatus() = default;

   bool initialized_ = false;
   U32 raclIdBits_ = 0;
   bool ingressRaclSharingSupported_ = false;
};

// A new record, nothing known yet, with notifications on.
AclHwStatus::Ptr aclHwStatusFactory();

}  // namespace HalyardCentral
