// The entry manager of one TCAM group: the closed class of the agent that
// owns the group's field-processor entries, range checkers and user-defined
// fields on every unit, and installs entries in hardware. The ACL back-end
// acquires and releases through it and never allocates on its own.
//
// Held by Vesper::Ptr. Its group manager owns it (by counted pointer) and is
// held here by a back pointer, so the two never keep each other alive. An
// implementation's factory turns notifications on after construction.
//
// Contract (what the callers rely on; how the manager chooses entries and ids,
// shares range checkers and packs its groups is its own business):
//  1. `unit` is the chip number; all per-entry state is per unit. An entry id
//     is a U32 that the manager issued; ids are unique across the units and
//     managers of one group manager (tcamManagerForEntry is keyed by id alone).
//  2. Failures are reported only as stated per operation: getRangeChecker
//     answers 0 when none is left, attachRangeChecker the SDK's resource code
//     when the entry takes no more checkers, getAclUdf an empty list when no
//     field can be had, and entriesAvailable tells ahead what getEntry can give.
//     The results of installEntry, removeEntry and setPriorityForEntry are the
//     SDK's codes and are not looked at.
//  3. installEntry may be called again on an installed entry: it rewrites it.
//  4. `exhausted[unit]` is true while the manager can serve no more on the
//     unit; absent reads false. The manager sets it on every change between
//     full and not full, and each real change tells the notifiees once with
//     onExhausted(unit).
//
// Threads: activity thread, with the activity lock held; the manager brackets
// its own SDK work.
#pragma once

#include "platform/halyard/QualIdList.h"
#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/halyard/UdfData.h"
#include "platform/shim/BcmTypes.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class HalyardTcamGroupManager;

class HalyardTcamEntryManager : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Halyard::HalyardTcamEntryManager" )

 public:
   using Ptr = Vesper::Ptr<HalyardTcamEntryManager>;
   using PtrConst = Vesper::Ptr<const HalyardTcamEntryManager>;
   using ExhaustedMap = Vesper::HashMap2018<U32, bool>;

   class NotifieeConst : public Vesper::NotifieeBase<HalyardTcamEntryManager> {
    public:
      virtual void onExhausted( U32 /*unit*/ ) {}
   };

   // The group this manager serves.
   Vesper::Ptr<HalyardTcamGroupManager> groupManager() const;
   // The group number; its low 8 bits name the group to the group manager's
   // per-group records (groupMirroringAclValid, groupMirroringAclType).
   U32 groupId() const { return groupId_; }
   // For traces (" Group : ").
   const Vesper::String& groupName() const { return groupName_; }
   // The priority at which every entry of the group stands; the order inside
   // the group is the manager's.
   U32 groupPriority() const { return groupPriority_; }

   // exhausted: see invariant 4.
   bool exhausted( U32 unit ) const;
   const ExhaustedMap& exhausted() const { return exhausted_; }
   void exhaustedIs( U32 unit, bool value );
   void exhaustedDel( U32 unit );

   // How many more entries getEntry can give on the unit.
   virtual U32 entriesAvailable( U32 unit ) const = 0;
   // How many entries the manager holds for callers on the unit.
   virtual U32 entriesInUse( U32 unit ) const = 0;
   // Turns an installed entry on or off; `toleratedRc` is an SDK return code
   // that is not to count as a failure.
   virtual void enableEntry( U32 unit, U32 entry, bool enable, int toleratedRc ) = 0;
   // Writes the entry's qualifiers and actions to the chip (again, if installed).
   virtual int installEntry( U32 unit, U32 entry ) = 0;
   // Takes the entry out of the chip and frees it.
   virtual int removeEntry( U32 unit, U32 entry ) = 0;
   virtual U64 hitsForEntry( U32 unit, U32 entry ) const = 0;
   // REQUIRES: the entry is not installed yet.
   virtual int setPriorityForEntry( U32 unit, U32 entry, U32 priority ) = 0;

   // The entry's port key as given to bcm_field_qualify_InPorts, recorded.
   virtual void addInPortsForEntry( U32 unit, U32 entry, const bcm_pbmp_t& data,
                                    const bcm_pbmp_t& mask ) = 0;
   // A permanent port key is not touched by the manager's own port updates.
   virtual void setTcamEntryBcmPbmpPermanent( U32 unit, U32 entry, bool permanent ) = 0;
   // The data bitmap of the recorded port key.
   virtual bcm_pbmp_t tcamEntryBcmPbmp( U32 unit, U32 entry ) const = 0;

   // A hardware range checker for the range; 0 when none is left. Equal
   // ranges may share one checker: each get is one use.
   virtual U32 getRangeChecker( U32 unit, const RangeCheckerDesc& desc ) = 0;
   // The SDK's resource code when the entry can take no more checkers; any
   // other value is success.
   virtual int attachRangeChecker( U32 unit, U32 entry, U32 rangeCheckerId ) = 0;
   // Gives back one use of the checker of the range.
   virtual void releaseRangeChecker( U32 unit, const RangeCheckerDesc& desc ) = 0;

   // The qualifiers of a user-defined field covering `length` bytes at `offset`
   // from `base`, for rules of `aclType` on `proto`; found or made. Empty when
   // none can be had. Each get is one use.
   virtual QualIdList getAclUdf( U32 unit, int aclType, U32 proto, UdfOffsetBase base, U8 offset,
                                 U8 length ) = 0;
   virtual void releaseAclUdf( U32 unit, int aclType, U32 proto, UdfOffsetBase base, U8 offset,
                               U8 length ) = 0;

   // Packs the entries of the manager's groups on the unit.
   virtual void compressEntries( U32 unit ) = 0;

   // The IP type recorded by qualifyIpType, or the SDK's not-found code.
   virtual int getIpType( U32 unit, U32 entry ) const = 0;
   // Sets bcm_field_qualify_IpType on the entry and records the type.
   virtual void qualifyIpType( U32 unit, U32 entry, bcm_field_IpType_t type ) = 0;

 protected:
   HalyardTcamEntryManager( Vesper::BackPtr<HalyardTcamGroupManager> groupManager, U32 groupId,
                            Vesper::String groupName, U32 groupPriority );

 private:
   Vesper::BackPtr<HalyardTcamGroupManager> groupManager_;
   U32 groupId_;
   Vesper::String groupName_;
   U32 groupPriority_;
   ExhaustedMap exhausted_;
};

}  // namespace Halyard
