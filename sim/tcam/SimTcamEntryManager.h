// The entry managers of the simulated switch, one per TCAM group of a SimTcamGroupManager:
// Sim::SimUnboundedTcamEntryManager hands out entries on demand, Sim::SimBoundedTcamEntryManager
// answers the entries of its fixed range by index. Both are made by their group manager, which
// owns them and keeps the per-unit state they work on.
//
// Contract, beyond HalyardTcamEntryManager's:
//   1. getEntry answers 0 when the unit's capacity for the group is reached (or the unit or
//      the index is unknown); entriesAvailable is capacity minus entriesInUse, and a freed
//      entry counts at once.
//   2. A new entry stands at the group's priority; setPriorityForEntry moves it. Among equal
//      priorities entries hit in ordinal order: a bounded entry's ordinal is its index, an
//      unbounded one's the order of acquisition. compressEntries renumbers an unbounded group's
//      ordinals on the unit densely from 0, in the order they had, so lookups do not change;
//      a bounded group's entries are fixed and stay as they are.
//   3. installEntry writes the entry's present software face to the chip, again if installed,
//      and enables it. removeEntry takes it out of the chip's lookup only: the entry stays
//      the caller's and can be installed again (the back-end removes entries of rules it
//      commits later, and the egress port-blocking entries of additional groups).
//   4. The per-entry operations act on any entry of the group manager on the unit, not only on
//      this manager's own: the back-end reaches some entries through a manager other than the
//      one that issued them. releaseEntry gives an entry back to the manager that issued it.
//      A void operation on an entry the group manager does not hold on the unit is a broken
//      invariant of the caller and stops the process; one with a result answers the SDK's
//      not-found code (hitsForEntry 0, tcamEntryBcmPbmp an empty bitmap).
//   5. enableEntry tolerates `toleratedRc`; any other refusal of the chip stops the process.
//   6. getIpType answers the value qualifyIpType recorded, or the not-found code.
//   7. exhausted[unit] follows entriesAvailable( unit ) == 0, notifying each real change.
#pragma once

#include <utility>

#include "platform/tcam/HalyardBoundedTcamEntryManager.h"
#include "platform/tcam/HalyardUnboundedTcamEntryManager.h"
#include "sim/tcam/GroupTable.h"
#include "sim/tcam/SimTcamGroupManager.h"

namespace Sim {

struct TcamEntryRecord;

// The operations the two kinds share; `Base` is the kind's interface.
template <class Base>
class SimTcamEntryManagerOps : public Base {
 public:
   Halyard::TcamGroupAssignment assignment() const { return assignment_; }
   // Entries per unit.
   U32 capacity() const;
   // Whether the entry's port key is marked permanent; false for an unknown entry.
   bool tcamEntryBcmPbmpPermanent( U32 unit, U32 entry ) const;

   U32 entriesAvailable( U32 unit ) const override;
   U32 entriesInUse( U32 unit ) const override;
   void enableEntry( U32 unit, U32 entry, bool enable, int toleratedRc ) override;
   int installEntry( U32 unit, U32 entry ) override;
   int removeEntry( U32 unit, U32 entry ) override;
   U64 hitsForEntry( U32 unit, U32 entry ) const override;
   int setPriorityForEntry( U32 unit, U32 entry, U32 priority ) override;

   void addInPortsForEntry( U32 unit, U32 entry, const bcm_pbmp_t& data,
                            const bcm_pbmp_t& mask ) override;
   void setTcamEntryBcmPbmpPermanent( U32 unit, U32 entry, bool permanent ) override;
   bcm_pbmp_t tcamEntryBcmPbmp( U32 unit, U32 entry ) const override;

   U32 getRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override;
   int attachRangeChecker( U32 unit, U32 entry, U32 rangeCheckerId ) override;
   void releaseRangeChecker( U32 unit, const Halyard::RangeCheckerDesc& desc ) override;

   // aclType and proto do not take part: chunks are shared by where they read the packet.
   Halyard::QualIdList getAclUdf( U32 unit, int aclType, U32 proto, Halyard::UdfOffsetBase base,
                                  U8 offset, U8 length ) override;
   void releaseAclUdf( U32 unit, int aclType, U32 proto, Halyard::UdfOffsetBase base, U8 offset,
                       U8 length ) override;

   void compressEntries( U32 unit ) override;

   int getIpType( U32 unit, U32 entry ) const override;
   // A type other than the two the back-end uses raises Vesper::RangeException.
   void qualifyIpType( U32 unit, U32 entry, bcm_field_IpType_t type ) override;

 protected:
   template <class... Extra>
   SimTcamEntryManagerOps( SimTcamGroupManager* groupManager, Halyard::TcamGroupAssignment a,
                           const GroupDef& def, Extra&&... extra )
       : Base( groupManager, a, groupName( a ), def.priority, std::forward<Extra>( extra )... ),
         sim_( groupManager ),
         assignment_( a ) {}

   SimTcamGroupManager& sim() const { return *sim_; }
   const SdkCodes& codes() const { return sim_->sdkCodes(); }
   // The chip of the unit and the record of the entry, or null.
   ChipModel* chip( U32 unit ) const { return sim_->chip( unit ); }
   TcamEntryRecord* record( U32 unit, U32 entry ) const;
   // REQUIRES: the group manager holds the entry on the unit (fatal otherwise).
   TcamEntryRecord& heldRecord( U32 unit, U32 entry, const char* operation ) const;

 private:
   static Vesper::String groupName( Halyard::TcamGroupAssignment a );

   Vesper::BackPtr<SimTcamGroupManager> sim_;
   Halyard::TcamGroupAssignment assignment_;
};

class SimUnboundedTcamEntryManager
    : public SimTcamEntryManagerOps<Halyard::HalyardUnboundedTcamEntryManager> {
   VESPER_FWK_TYPE( "Sim::SimUnboundedTcamEntryManager" )

 public:
   using Ptr = Vesper::Ptr<SimUnboundedTcamEntryManager>;

   U32 getEntry( U32 unit, const Vesper::String& description ) override;
   void releaseEntry( U32 unit, U32 entry ) override;

 private:
   friend class SimTcamGroupManager;
   SimUnboundedTcamEntryManager( SimTcamGroupManager* groupManager, Halyard::TcamGroupAssignment a,
                                 const GroupDef& def )
       : SimTcamEntryManagerOps( groupManager, a, def ) {}
};

class SimBoundedTcamEntryManager
    : public SimTcamEntryManagerOps<Halyard::HalyardBoundedTcamEntryManager> {
   VESPER_FWK_TYPE( "Sim::SimBoundedTcamEntryManager" )

 public:
   using Ptr = Vesper::Ptr<SimBoundedTcamEntryManager>;

   // The entry at `index` (entryBase() plus an offset below capacity()), made on first use.
   U32 getEntry( U32 unit, U32 index, const Vesper::String& description ) override;

 private:
   friend class SimTcamGroupManager;
   SimBoundedTcamEntryManager( SimTcamGroupManager* groupManager, Halyard::TcamGroupAssignment a,
                               const GroupDef& def, U32 entryBase )
       : SimTcamEntryManagerOps( groupManager, a, def, entryBase ) {}
};

}  // namespace Sim
