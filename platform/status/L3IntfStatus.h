// The answers of the L3 agents: the L3 interface class that each has applied
// to each VLAN, per chip. Written by the L3 agents (the simulated switch's
// peer agent), read by the ACL back-end's sharing manager, which copies the
// answers into its store.
//
//   intfClassIdPerChipResponse  module id -> IntfClassIdPerChip, made by
//                               intfClassIdPerChipResponseIs( modId ), which returns the
//                               member standing. A new or removed member tells the
//                               notifiees once, with the module id.
//
// Threads: activity thread.
#pragma once

#include "platform/pylon/ModId.h"
#include "platform/status/IntfClassIdPerChip.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"

namespace HalyardL3 {

class L3IntfStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardL3::L3IntfStatus" )

 public:
   using Ptr = Vesper::Ptr<L3IntfStatus>;
   using PtrConst = Vesper::Ptr<const L3IntfStatus>;
   using PerChip = Vesper::OwnedCollection<Pylon::ModId, IntfClassIdPerChip>;

   class NotifieeConst : public Vesper::NotifieeBase<L3IntfStatus> {
    public:
      virtual void onIntfClassIdPerChipResponse( Pylon::ModId ) {}
   };

   IntfClassIdPerChip::Ptr intfClassIdPerChipResponse( Pylon::ModId modId ) const {
      return intfClassIdPerChipResponse_.find( modId );
   }
   const PerChip& intfClassIdPerChipResponse() const { return intfClassIdPerChipResponse_; }
   bool intfClassIdPerChipResponseHas( Pylon::ModId modId ) const {
      return intfClassIdPerChipResponse_.has( modId );
   }
   IntfClassIdPerChip::Ptr intfClassIdPerChipResponseIs( Pylon::ModId modId );
   IntfClassIdPerChip::Ptr intfClassIdPerChipResponseDel( Pylon::ModId modId );
   void intfClassIdPerChipResponseDelAll();

 private:
   friend Ptr l3IntfStatusFactory();
   L3IntfStatus() = default;

   PerChip intfClassIdPerChipResponse_;
};

// A new, empty record with notifications on.
L3IntfStatus::Ptr l3IntfStatusFactory();

}  // namespace HalyardL3
