// What this slice of the forwarding agent asks of the VLAN topology agents,
// one of which runs per chip: which VLANs to block on which chip, and per
// chip the VLAN classes the ACL back-end wants applied.
//
// Written by the ACL back-end, read by the VLAN topology agents (the
// simulated switch's peer agent). Every setter notifies once per real change.
//
//   block                  AclModSvi (module id, VLAN) -> bool: the VLAN is to be blocked on
//                          the chip; its routed traffic is then marked for the VLAN blocking
//                          entry. Absent: not asked. The agents answer in VlanTopoBlockedStatus.
//   aclVlanClassIdPerChip  chip number -> AclVlanClassIdPerChip, made by
//                          aclVlanClassIdPerChipIs( chip ), which returns the member standing.
//
// Threads: activity thread.
#pragma once

#include "platform/status/AclModSvi.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"

namespace HalyardVlanTopo {

// The VLAN classes requested on one chip: VLAN -> class.
class AclVlanClassIdPerChip : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardVlanTopo::AclVlanClassIdPerChip" )

 public:
   using VlanClassIdMap = Vesper::HashMap2018<U32, U16>;

   class NotifieeConst : public Vesper::NotifieeBase<AclVlanClassIdPerChip> {
    public:
      virtual void onVlanClassId( U32 /*vlan*/ ) {}
   };

   // Made only by VlanTopoSliceStatus::aclVlanClassIdPerChipIs().
   explicit AclVlanClassIdPerChip( U16 chip ) : chip_( chip ) {}

   U16 chip() const { return chip_; }

   // Absent: 0, no class.
   U16 vlanClassId( U32 vlan ) const;
   const VlanClassIdMap& vlanClassId() const { return vlanClassId_; }
   bool vlanClassIdHas( U32 vlan ) const { return vlanClassId_.has( vlan ); }
   void vlanClassIdIs( U32 vlan, U16 classId );
   void vlanClassIdDel( U32 vlan );
   void vlanClassIdDelAll();

 private:
   U16 chip_;
   VlanClassIdMap vlanClassId_;
};

class VlanTopoSliceStatus : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "HalyardVlanTopo::VlanTopoSliceStatus" )

 public:
   using Ptr = Vesper::Ptr<VlanTopoSliceStatus>;
   using PtrConst = Vesper::Ptr<const VlanTopoSliceStatus>;
   using BlockMap = Vesper::HashMap2018<AclModSvi, bool>;
   using ClassIdPerChip = Vesper::OwnedCollection<U16, AclVlanClassIdPerChip>;

   class NotifieeConst : public Vesper::NotifieeBase<VlanTopoSliceStatus> {
    public:
      virtual void onBlock( const AclModSvi& ) {}
      virtual void onAclVlanClassIdPerChip( U16 /*chip*/ ) {}
   };

   // block
   bool block( const AclModSvi& key ) const;
   const BlockMap& block() const { return block_; }
   bool blockHas( const AclModSvi& key ) const { return block_.has( key ); }
   void blockIs( const AclModSvi& key, bool value );
   void blockDel( const AclModSvi& key );
   void blockDelAll();

   // aclVlanClassIdPerChip
   Vesper::Ptr<AclVlanClassIdPerChip> aclVlanClassIdPerChip( U16 chip ) const {
      return aclVlanClassIdPerChip_.find( chip );
   }
   const ClassIdPerChip& aclVlanClassIdPerChip() const { return aclVlanClassIdPerChip_; }
   bool aclVlanClassIdPerChipHas( U16 chip ) const { return aclVlanClassIdPerChip_.has( chip ); }
   Vesper::Ptr<AclVlanClassIdPerChip> aclVlanClassIdPerChipIs( U16 chip );
   Vesper::Ptr<AclVlanClassIdPerChip> aclVlanClassIdPerChipDel( U16 chip );
   void aclVlanClassIdPerChipDelAll();

 private:
   friend Ptr vlanTopoSliceStatusFactory();
   VlanTopoSliceStatus() = default;

   BlockMap block_;
   ClassIdPerChip aclVlanClassIdPerChip_;
};

// A new, empty record with notifications on.
VlanTopoSliceStatus::Ptr vlanTopoSliceStatusFactory();

}  // namespace HalyardVlanTopo
