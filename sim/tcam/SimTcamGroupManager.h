// Sim::SimTcamGroupManager: the TCAM group manager of the simulated switch. It sets up one
// field-processor group per assignment of its group table on every unit's chip model, hands
// out the entry managers, and keeps what entries share per unit: range checkers, user-defined
// field chunks and the class compression tables. The managers do their hardware work on the
// chip models directly, as the closed managers of a real agent do through the SDK.
//
// Made by create(), which turns notifications on. Units are added by whoever assembles the
// switch, after create() and before the first entry of the unit is asked for. The chip models
// are the assembler's and must outlive the manager.
//
// Contract, beyond HalyardTcamGroupManager's:
//   1. Entry ids are one space per group manager. A bounded manager's ids are its indices, the
//      same on every unit; its range starts at its entryBase(), and the ranges of the bounded
//      managers come first from 1. Unbounded ids are issued upward after them, unique across
//      units, and never issued twice. So an id names one manager, and tcamManagerForEntry
//      holds every issued id until it is released.
//   2. Range checkers are shared per unit by equal RangeCheckerDesc, with a use count per
//      get; an id goes back to the unit's pool at its last release, once no entry refers to it
//      any more. A unit has at most UnitLimits::rangeCheckers of them, and an entry at most
//      UnitLimits::rangeCheckersPerEntry. rangeCheckersExhausted changes (and notifies) on
//      every change between full and not full.
//   3. User-defined field chunks are shared per unit by (base, offset, length), with use counts,
//      at most UnitLimits::udfChunks of them. The qualifier id of a chunk is the chip model's
//      chunk id, which the simulated SDK's UDF data calls take as they stand.
//   4. allocate...ClassId answers false when the value (or prefix) is bound to another class,
//      or when the table already holds its limit of bindings; binding the same class again
//      answers true.
//   5. Mirroring groups start valid, with no ACL type recorded (groupMirroringAclTypeNone).
//
// Threads: activity thread, with the activity lock held.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/tcam/HalyardTcamGroupManager.h"
#include "sim/chip/ChipModel.h"
#include "sim/tcam/GroupTable.h"
#include "sim/tcam/SdkCodes.h"
#include "sim/tcam/UnitLimits.h"

namespace Sim {

// What a summary shows of one unit's TCAM: each group, each stage's slices, and the shared
// pools.
struct GroupUsage {
   Halyard::TcamGroupAssignment assignment{};
   Stage stage = Stage::Ifp;
   bool wide = false;
   U32 used = 0;      // entries it holds
   U32 capacity = 0;  // what it holds plus what it could still get
   U32 slices = 0;    // slices it holds
};

struct StageUsage {
   U32 slices = 0;  // 0: the stage is not divided into slices
   U32 freeSlices = 0;
};

struct UnitUsage {
   std::vector<GroupUsage> groups;              // ascending assignment
   std::array<StageUsage, kStageCount> stages;  // by Stage
   U32 rangeCheckersUsed = 0;
   U32 rangeCheckerCapacity = 0;
   U32 udfChunksUsed = 0;
   U32 udfChunkCapacity = 0;
};

class TcamUnit;
class SimBoundedTcamEntryManager;
class SimUnboundedTcamEntryManager;
template <class Base>
class SimTcamEntryManagerOps;

class SimTcamGroupManager : public Halyard::HalyardTcamGroupManager {
   VESPER_FWK_TYPE( "Sim::SimTcamGroupManager" )

 public:
   using Ptr = Vesper::Ptr<SimTcamGroupManager>;

   static Ptr create( const GroupTable& table, const SdkCodes& codes = SdkCodes::current() );
   ~SimTcamGroupManager() override;

   const GroupTable& groupTable() const { return table_; }
   const SdkCodes& sdkCodes() const { return codes_; }

   // Sets up the unit's groups on `chip`. REQUIRES: the unit is new and the chip has none of
   // the table's group ids.
   void unitIs( U32 unit, ChipModel& chip, const UnitLimits& limits );
   void unitIs( U32 unit, ChipModel& chip ) { unitIs( unit, chip, UnitLimits::of( chip ) ); }
   bool unitHas( U32 unit ) const { return units_.count( unit ) != 0; }
   // The unit's chip model; null for an unknown unit.
   ChipModel* chip( U32 unit ) const;
   // The limits in force on the unit, cut to the chip's pools.
   std::optional<UnitLimits> unitLimits( U32 unit ) const;

   // For dumps and tests: the state of the shared resources and the entries of a unit.
   std::optional<U32> rangeCheckerId( U32 unit, const Halyard::RangeCheckerDesc& desc ) const;
   U32 rangeCheckerUses( U32 unit, const Halyard::RangeCheckerDesc& desc ) const;
   U32 udfChunkUses( U32 unit, Halyard::UdfOffsetBase base, U8 offset, U8 length ) const;
   // The description given when the entry was acquired; empty for an unknown entry.
   Vesper::String entryDescription( U32 unit, U32 entry ) const;
   // The use of the unit's groups, slices, range checkers and UDF chunks; nullopt for an
   // unknown unit.
   std::optional<UnitUsage> unitUsage( U32 unit ) const;
   // Changes at run time the most entries the group may hold on the unit, as a chip that gives
   // a stage's slices to other features would: a soak shrinks a group to force exhaustion and
   // grows it to see the waiting ACLs go in. Never below what the group holds nor above its
   // table capacity; an exhaustion change is notified as for any other change of room.
   // An unknown unit or group raises Vesper::RangeException.
   void groupCapacityIs( Halyard::TcamGroupAssignment a, U32 unit, U32 capacity );

   Halyard::HalyardBoundedTcamEntryManager::Ptr entryManager(
       Halyard::TcamGroupAssignment a ) const override;
   Halyard::HalyardUnboundedTcamEntryManager::Ptr unboundedEntryManager(
       Halyard::TcamGroupAssignment a ) const override;

   bool allocateEtherTypeClassId( U32 unit, U16 etherType, U8 classId ) override;
   bool allocateIpProtocolClassId( U32 unit, U16 ipProtocol, U8 classId ) override;
   bool allocateL4SrcPortClassId( U32 unit, U16 port, U8 classId ) override;
   bool allocateL4DstPortClassId( U32 unit, U16 port, U8 classId ) override;
   bool allocateDstIpClassId( U32 unit, const Pylon::IpAddrWithFullMask& prefix,
                              U64 shiftedClassId ) override;
   bool allocateDstIp6ClassId( U32 unit, const Pylon::Ip6AddrWithFullMask& prefix,
                               U64 shiftedClassId ) override;

 private:
   template <class Base>
   friend class SimTcamEntryManagerOps;
   friend class SimBoundedTcamEntryManager;
   friend class SimUnboundedTcamEntryManager;

   SimTcamGroupManager( const GroupTable& table, const SdkCodes& codes );
   void managersIs();
   void mirroringGroupsIs();

   TcamUnit* tcamUnit( U32 unit ) const;
   Halyard::HalyardTcamEntryManager* manager( Halyard::TcamGroupAssignment a ) const;

   // Entries (SimEntryAcquisition.cpp).
   U32 unboundedEntryGet( Halyard::TcamGroupAssignment a, U32 unit,
                          const Vesper::String& description );
   U32 boundedEntryGet( Halyard::TcamGroupAssignment a, U32 unit, U32 index,
                        const Vesper::String& description );
   void entryRelease( U32 unit, U32 entry );
   void entriesCompress( Halyard::TcamGroupAssignment a, U32 unit );
   U32 entriesAvailable( Halyard::TcamGroupAssignment a, U32 unit ) const;
   U32 entriesInUse( Halyard::TcamGroupAssignment a, U32 unit ) const;
   void exhaustedUpdate( Halyard::TcamGroupAssignment a, U32 unit );
   void stageExhaustedUpdate( Stage stage, U32 unit );

   // Range checkers and user-defined fields (SimSharedResources.cpp).
   U32 rangeCheckerGet( U32 unit, const Halyard::RangeCheckerDesc& desc );
   void rangeCheckerRelease( U32 unit, const Halyard::RangeCheckerDesc& desc );
   int rangeCheckerAttach( U32 unit, U32 entry, U32 rangeCheckerId );
   void rangeCheckersExhaustedUpdate( U32 unit );
   Halyard::QualIdList udfGet( U32 unit, Halyard::UdfOffsetBase base, U8 offset, U8 length );
   void udfRelease( U32 unit, Halyard::UdfOffsetBase base, U8 offset, U8 length );

   GroupTable table_;
   SdkCodes codes_;
   std::map<U32, std::unique_ptr<TcamUnit> > units_;
   std::map<Halyard::TcamGroupAssignment, Halyard::HalyardBoundedTcamEntryManager::Ptr> bounded_;
   std::map<Halyard::TcamGroupAssignment, Halyard::HalyardUnboundedTcamEntryManager::Ptr>
       unbounded_;
   // The next unbounded entry id; ids below it and above the bounded ranges have been issued.
   U32 nextEntryId_ = 1;
};

}  // namespace Sim
