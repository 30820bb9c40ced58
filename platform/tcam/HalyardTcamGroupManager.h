// The TCAM group manager: the closed class of the agent that sets up the
// field-processor groups of every unit, hands out one entry manager per
// group, and keeps the chip-wide tables that entries share (the class
// compression tables, the range checkers).
//
// Held by Vesper::Ptr; it owns its entry managers. An implementation's
// factory turns notifications on after construction. Operations are the
// platform's to implement; the records below are kept here, filled by the
// implementation and read by the ACL back-end.
//
// Records:
//   modChipInfo             unit -> chip type; the first step of every chip-attribute
//                           lookup (ChipLookup.h). Absent: the empty ChipInfo.
//   tcamManagerForEntry     entry -> the entry manager that issued it; absent: null.
//                           tcamEntryMgr( entry ) reads the same.
//   groupMirroringAclValid  group (low 8 bits of its number) -> the group is a mirroring
//                           ACL group; absent: false.
//   groupMirroringAclType   group -> the ACL type it was set up for; groupMirroringAclTypeNone
//                           (~0) when unset; a group with no record reads 0.
//   rangeCheckersExhausted  unit -> no range checker is left; absent: false. Each real
//                           change tells the notifiees once, onRangeCheckersExhausted( unit ).
//   ingressRaclSharingSupported  told once at bring-up, before the managers are fetched.
//   ingressMirrorAclKeyWidthMode 1: mirroring groups use the narrow key, which has no
//                           address or layer 4 port field.
//
// Contract of the operations:
//  1. entryManager( a ) answers the bounded manager of a bounded assignment,
//     unboundedEntryManager( a ) the unbounded manager of any other; null when
//     the group does not exist.
//  2. allocate...ClassId binds a value to a class in the unit's compression
//     table of that field; false when it cannot, which its callers treat as
//     fatal. The DstIp forms take the class already shifted into place.
//
// Threads: activity thread, with the activity lock held.
#pragma once

#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/tcam/HalyardBoundedTcamEntryManager.h"
#include "platform/tcam/HalyardTcamEntryManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The value of groupMirroringAclType for a group set up for no ACL type.
inline constexpr int groupMirroringAclTypeNone = ~0;

class HalyardTcamGroupManager : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Halyard::HalyardTcamGroupManager" )

 public:
   using Ptr = Vesper::Ptr<HalyardTcamGroupManager>;
   using PtrConst = Vesper::Ptr<const HalyardTcamGroupManager>;
   using ChipInfoMap = Vesper::HashMap2018<U16, HalyardCentral::ChipInfo>;
   using EntryManagerMap = Vesper::HashMap2018<U32, HalyardTcamEntryManager::Ptr>;

   class NotifieeConst : public Vesper::NotifieeBase<HalyardTcamGroupManager> {
    public:
      virtual void onRangeCheckersExhausted( U32 /*unit*/ ) {}
      virtual void onIngressRaclSharingSupported() {}
      virtual void onIngressMirrorAclKeyWidthMode() {}
   };

   // modChipInfo
   HalyardCentral::ChipInfo modChipInfo( U16 unit ) const;
   const ChipInfoMap& modChipInfo() const { return modChipInfo_; }
   bool modChipInfoHas( U16 unit ) const { return modChipInfo_.has( unit ); }
   void modChipInfoIs( U16 unit, const HalyardCentral::ChipInfo& chip ) {
      modChipInfo_.set( unit, chip );
   }
   void modChipInfoDel( U16 unit ) { modChipInfo_.del( unit ); }

   // tcamManagerForEntry
   HalyardTcamEntryManager::Ptr tcamManagerForEntry( U32 entry ) const;
   const EntryManagerMap& tcamManagerForEntry() const { return tcamManagerForEntry_; }
   bool tcamManagerForEntryHas( U32 entry ) const { return tcamManagerForEntry_.has( entry ); }
   void tcamManagerForEntryIs( U32 entry, const HalyardTcamEntryManager::Ptr& manager );
   void tcamManagerForEntryDel( U32 entry ) { tcamManagerForEntry_.del( entry ); }
   // The manager of the entry: the same as tcamManagerForEntry( entry ).
   HalyardTcamEntryManager::Ptr tcamEntryMgr( U32 entry ) const {
      return tcamManagerForEntry( entry );
   }

   // groupMirroringAclValid
   bool groupMirroringAclValid( U8 group ) const;
   void groupMirroringAclValidIs( U8 group, bool valid ) {
      groupMirroringAclValid_.set( group, valid );
   }
   // groupMirroringAclType
   int groupMirroringAclType( U8 group ) const;
   // Records `type`, or with groupMirroringAclTypeNone marks the group unset.
   void groupMirroringAclTypeIs( U8 group, int type ) { groupMirroringAclType_.set( group, type ); }

   // rangeCheckersExhausted
   bool rangeCheckersExhausted( U32 unit ) const;
   void rangeCheckersExhaustedIs( U32 unit, bool value );

   bool ingressRaclSharingSupported() const { return ingressRaclSharingSupported_; }
   void ingressRaclSharingSupportedIs( bool value );
   U32 ingressMirrorAclKeyWidthMode() const { return ingressMirrorAclKeyWidthMode_; }
   void ingressMirrorAclKeyWidthModeIs( U32 mode );

   virtual HalyardBoundedTcamEntryManager::Ptr entryManager( TcamGroupAssignment a ) const = 0;
   virtual HalyardUnboundedTcamEntryManager::Ptr unboundedEntryManager(
       TcamGroupAssignment a ) const = 0;

   virtual bool allocateEtherTypeClassId( U32 unit, U16 etherType, U8 classId ) = 0;
   virtual bool allocateIpProtocolClassId( U32 unit, U16 ipProtocol, U8 classId ) = 0;
   virtual bool allocateL4SrcPortClassId( U32 unit, U16 port, U8 classId ) = 0;
   virtual bool allocateL4DstPortClassId( U32 unit, U16 port, U8 classId ) = 0;
   virtual bool allocateDstIpClassId( U32 unit, const Pylon::IpAddrWithFullMask& prefix,
                                      U64 shiftedClassId ) = 0;
   virtual bool allocateDstIp6ClassId( U32 unit, const Pylon::Ip6AddrWithFullMask& prefix,
                                       U64 shiftedClassId ) = 0;

 protected:
   HalyardTcamGroupManager() = default;

 private:
   ChipInfoMap modChipInfo_;
   EntryManagerMap tcamManagerForEntry_;
   Vesper::HashMap2018<U8, bool> groupMirroringAclValid_;
   Vesper::HashMap2018<U8, int> groupMirroringAclType_;
   Vesper::HashMap2018<U32, bool> rangeCheckersExhausted_;
   bool ingressRaclSharingSupported_ = false;
   U32 ingressMirrorAclKeyWidthMode_ = 0;
};

}  // namespace Halyard
