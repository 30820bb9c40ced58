// The answers of the VLAN topology agents: on which chip each VLAN stands
// blocked. Written by the agents (the simulated switch's peer agent), read by
// the ACL back-end, which sees a VLAN blocked once every chip reports it.
//
//   blocked  AclModSvi (module id, VLAN) -> bool; absent counts as not blocked.
//            Each real change tells the notifiees once, with the key that changed.
//
// Threads: activity thread.
#pragma once

#include "platform/status/AclModSvi.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"

namespace HalyardVlanTopo {

class VlanTopoBlockedStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardVlanTopo::VlanTopoBlockedStatus" )

 public:
   using Ptr = Vesper::Ptr<VlanTopoBlockedStatus>;
   using PtrConst = Vesper::Ptr<const VlanTopoBlockedStatus>;
   using BlockedMap = Vesper::HashMap2018<AclModSvi, bool>;

   class NotifieeConst : public Vesper::NotifieeBase<VlanTopoBlockedStatus> {
    public:
      virtual void onBlocked( const AclModSvi& ) {}
   };

   bool blocked( const AclModSvi& key ) const;
   const BlockedMap& blocked() const { return blocked_; }
   bool blockedHas( const AclModSvi& key ) const { return blocked_.has( key ); }
   void blockedIs( const AclModSvi& key, bool value );
   void blockedDel( const AclModSvi& key );
   void blockedDelAll();

 private:
   friend Ptr vlanTopoBlockedStatusFactory();
   VlanTopoBlockedStatus() = default;

   BlockedMap blocked_;
};

// A new, empty record with notifications on.
VlanTopoBlockedStatus::Ptr vlanTopoBlockedStatusFactory();

}  // namespace HalyardVlanTopo
