// The L3 interface classes of VLANs on one chip: VLAN -> class. The same
// record carries the ACL back-end's requests (L3SliceAgentStatus) and the L3
// agent's answers (L3IntfStatus), one per chip, keyed by the chip's module id.
//
// Each real change of `intfClassId` tells the notifiees once, with the VLAN.
// A member with class 0 is a real member, distinct from an absent one.
//
// Threads: activity thread.
#pragma once

#include "platform/pylon/ModId.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace HalyardL3 {

// An L3 interface class: the raclIds of the shared router ACLs on the VLAN.
using IntfClassId = U16;

class IntfClassIdPerChip : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardL3::IntfClassIdPerChip" )

 public:
   using Ptr = Vesper::Ptr<IntfClassIdPerChip>;
   using IntfClassIdMap = Vesper::HashMap2018<U32, IntfClassId>;

   class NotifieeConst : public Vesper::NotifieeBase<IntfClassIdPerChip> {
    public:
      virtual void onIntfClassId( U32 /*vlan*/ ) {}
   };

   // Made only through the owning status record's ...Is( modId ).
   explicit IntfClassIdPerChip( Pylon::ModId modId ) : modId_( modId ) {}

   Pylon::ModId modId() const { return modId_; }

   // Absent: 0.
   IntfClassId intfClassId( U32 vlan ) const;
   const IntfClassIdMap& intfClassId() const { return intfClassId_; }
   bool intfClassIdHas( U32 vlan ) const { return intfClassId_.has( vlan ); }
   void intfClassIdIs( U32 vlan, IntfClassId classId );
   void intfClassIdDel( U32 vlan );
   void intfClassIdDelAll();

 private:
   Pylon::ModId modId_;
   IntfClassIdMap intfClassId_;
};

}  // namespace HalyardL3
