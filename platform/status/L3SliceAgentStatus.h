// What this slice of the forwarding agent asks of the L3 agents: the L3
// interface class wanted on each VLAN, per chip. Written by the ACL back-end's
// sharing manager, read by the L3 agents (the simulated switch's peer agent),
// which apply the classes and answer in L3IntfStatus.
//
//   intfClassIdPerChipRequest  module id -> IntfClassIdPerChip, made by
//                              intfClassIdPerChipRequestIs( modId ), which returns the
//                              member standing. A new or removed member tells the
//                              notifiees once, with the module id.
//
// Threads: activity thread.
#pragma once

#include "platform/pylon/ModId.h"
#include "platform/status/IntfClassIdPerChip.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"

namespace HalyardL3 {

class L3SliceAgentStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardL3::L3SliceAgentStatus" )

 public:
   using Ptr = Vesper::Ptr<L3SliceAgentStatus>;
   using PtrConst = Vesper::Ptr<const L3SliceAgentStatus>;
   using PerChip = Vesper::OwnedCollection<Pylon::ModId, IntfClassIdPerChip>;

   class NotifieeConst : public Vesper::NotifieeBase<L3SliceAgentStatus> {
    public:
      virtual void onIntfClassIdPerChipRequest( Pylon::ModId ) {}
   };

   IntfClassIdPerChip::Ptr intfClassIdPerChipRequest( Pylon::ModId modId ) const {
      return intfClassIdPerChipRequest_.find( modId );
   }
   const PerChip& intfClassIdPerChipRequest() const { return intfClassIdPerChipRequest_; }
   bool intfClassIdPerChipRequestHas( Pylon::ModId modId ) const {
      return intfClassIdPerChipRequest_.has( modId );
   }
   IntfClassIdPerChip::Ptr intfClassIdPerChipRequestIs( Pylon::ModId modId );
   IntfClassIdPerChip::Ptr intfClassIdPerChipRequestDel( Pylon::ModId modId );
   void intfClassIdPerChipRequestDelAll();

 private:
   friend Ptr l3SliceAgentStatusFactory();
   L3SliceAgentStatus() = default;

   PerChip intfClassIdPerChipRequest_;
};

// A new, empty record with notifications on.
L3SliceAgentStatus::Ptr l3SliceAgentStatusFactory();

}  // namespace HalyardL3
