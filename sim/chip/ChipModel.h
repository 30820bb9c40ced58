// Sim::ChipModel: the field processor of one simulated chip (one unit).
//
// It stores what the SDK is told (groups, entries with their qualifiers, actions, range
// checkers and user-defined field data; port, VLAN and class-table state), answers every read
// as the SDK does, and pushes packets through its three stages: VFP, then IFP, then EFP once
// for every port the packet is to leave by.
//
// Contract:
//   1. Writes answer a Status and change nothing unless it is Ok. Reads answer std::optional;
//      nullopt is the not-found answer (no such entry, or the entry lacks that qualifier or
//      action).
//   2. Lookup sees entries as they stood when last installed: writes to an installed entry
//      (qualifiers, actions, range checkers, UDF data) are read back at once but reach the
//      lookup at the next install, which also enables the entry. Priority, ordinal and
//      enable take effect at once, as the hardware moves or validates the row.
//   3. In each group of a stage at most one entry hits a packet: among installed, enabled
//      entries that match, the highest priority (0 lowest, 0x7fffffff highest), then the lowest
//      ordinal, then the lowest id.
//   4. The hits of one stage combine family by family (drop; CPU copy or its cancel; CPU queue;
//      internal priority; egress mask; mirror; source class): for each family the hit of the
//      group of higher priority decides, while drops and egress masks add up over all hits.
//      A later stage overrides an earlier one family by family; nothing undoes a drop. In EFP
//      a drop removes only the copy for that port; its other actions apply as a later stage,
//      port by port in ascending order.
//   5. Before any entry, forwarding's destinations are cut to the ingress port's egress mask
//      for this module; an ingress port out of STP forwarding state forwards nothing (its CPU
//      copies still go), and EFP sees no copy of a packet that goes nowhere.
//   6. Entry priorities above kMaxPriority, ports at or beyond portCount and VLANs above 4095
//      are refused with Status::Param or Status::NotFound; so is a write outside the key set
//      of the entry's group (Status::Param).
//   7. A packet whose ingress or egress ports are not ports of this chip is a caller error and
//      raises Vesper::RangeException.
//   8. Single-threaded: the owner serialises calls. lookup is not const, since it counts hits.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipResources.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/ClassTables.h"
#include "sim/chip/EntryValues.h"
#include "sim/chip/Packet.h"
#include "sim/chip/PortBitmap.h"
#include "sim/chip/PortState.h"
#include "sim/chip/Verdict.h"

namespace Sim {

struct EntryRecord;
struct ActionValue;

// How a group finds the entry that hits a packet. Both give the same answer; the scan is the
// plain walk of the group's entries in lookup order, kept as the reference that the index is
// checked against.
enum class LookupMethod : U8 { Indexed, Scan };

struct ChipConfig {
   U32 portCount = 64;
   S32 moduleId = 0;
   U32 rangeCheckers = 32;  // 24 to 32 on most chips, 64 on Tomahawk3-class ones
   U32 udfChunks = 16;
   LookupMethod lookup = LookupMethod::Indexed;
   // The TCAM slices of each stage, by Stage. The chip model only keeps them for the TCAM
   // managers, which share them out among groups; a stage without slices is not divided, and
   // its groups are bounded by their own capacities alone.
   std::array<StageSlices, kStageCount> slices{};
};

struct GroupInfo {
   GroupId id = 0;
   Stage stage = Stage::Ifp;
   S32 priority = 0;
   U32 entryCount = 0;
};

class ChipModel {
 public:
   static constexpr U32 kMaxPriority = 0x7fffffff;

   explicit ChipModel( const ChipConfig& config = ChipConfig{} );
   ~ChipModel();
   ChipModel( const ChipModel& ) = delete;
   ChipModel& operator=( const ChipModel& ) = delete;

   const ChipConfig& config() const { return config_; }

   // --- Groups. Group priority orders the groups of a stage: where hits of two groups set
   // actions of one family, the group of higher priority wins (equal priorities: lower id).
   Status groupCreate( GroupId id, Stage stage, S32 priority );
   Status groupDestroy( GroupId id );  // Busy while it holds entries
   Status groupPriorityIs( GroupId id, S32 priority );
   // What the group's key holds (KeySet); a new group takes everything.
   Status groupKeySetIs( GroupId id, const KeySet& keys );
   std::optional<KeySet> groupKeySet( GroupId id ) const;
   std::optional<GroupInfo> group( GroupId id ) const;
   std::vector<GroupId> groups() const;  // ascending id

   // --- Entries.
   std::optional<EntryId> entryCreate( GroupId group );  // nullopt: no such group
   Status entryCreateWithId( GroupId group, EntryId id );
   Status entryDestroy( EntryId id );
   bool entryExists( EntryId id ) const { return entries_.count( id ) != 0; }
   std::optional<GroupId> entryGroup( EntryId id ) const;
   // The group's entries in lookup order, installed or not.
   std::vector<EntryId> entries( GroupId group ) const;

   Status entryPriorityIs( EntryId id, U32 priority );
   std::optional<U32> entryPriority( EntryId id ) const;
   // Ties between equal priorities; the creator sets it (a new entry gets the creation order).
   Status entryOrdinalIs( EntryId id, U64 ordinal );
   std::optional<U64> entryOrdinal( EntryId id ) const;

   Status entryInstall( EntryId id );                // also reinstalls, and enables
   Status entryRemove( EntryId id );                 // out of hardware; the software face stays
   Status entryEnableIs( EntryId id, bool enable );  // NotInstalled unless installed
   std::optional<bool> entryInstalled( EntryId id ) const;
   std::optional<bool> entryEnabled( EntryId id ) const;
   // Whether the software face changed since the last install.
   std::optional<bool> entryPending( EntryId id ) const;
   std::optional<U64> entryHits( EntryId id ) const;
   Status entryHitsIs( EntryId id, U64 hits );

   // --- Qualifiers. Numeric data and mask must fit qualWidth( q ) bytes; byte forms must be
   // exactly that long. IpFrag and IpType take their enumerations.
   Status qualifierIs( EntryId id, QualId q, U64 data, U64 mask );
   Status qualifierIs( EntryId id, QualId q, std::span<const U8> data, std::span<const U8> mask );
   Status qualifierDel( EntryId id, QualId q );
   Status qualifiersDelAll( EntryId id );  // also InPorts, range checkers and UDF data
   std::optional<QualValue> qualifier( EntryId id, QualId q ) const;
   Status ipFragIs( EntryId id, IpFrag frag );
   std::optional<IpFrag> ipFrag( EntryId id ) const;
   Status ipTypeIs( EntryId id, IpType type );
   std::optional<IpType> ipType( EntryId id ) const;
   // Replaces the entry's InPorts: a port p matches unless mask has p and data has not.
   Status inPortsIs( EntryId id, const PortBitmap& data, const PortBitmap& mask );
   std::optional<InPortsValue> inPorts( EntryId id ) const;

   // --- Range checkers of the unit, and their use by entries.
   std::optional<RangeCheckerId> rangeCheckerCreate( const RangeChecker& c );
   Status rangeCheckerCreateWithId( RangeCheckerId id, const RangeChecker& c );
   Status rangeCheckerDestroy( RangeCheckerId id );  // Busy while entries use it
   std::optional<RangeChecker> rangeChecker( RangeCheckerId id ) const;
   std::vector<RangeCheckerId> rangeCheckerIds() const { return ranges_.ids(); }
   Status rangeCheckAttach( EntryId id, RangeCheckerId checker, bool invert = false );
   Status rangeCheckDetach( EntryId id, RangeCheckerId checker );
   // The entry's checkers in order of attachment; nullopt: no such entry.
   std::optional<std::vector<RangeCheckRef> > rangeChecks( EntryId id ) const;

   // --- User-defined field chunks of the unit, and entry data for them.
   std::optional<UdfId> udfCreate( const UdfChunk& c );
   Status udfCreateWithId( UdfId id, const UdfChunk& c );
   Status udfDestroy( UdfId id );  // Busy while entries use it
   std::optional<UdfChunk> udf( UdfId id ) const;
   std::vector<UdfId> udfIds() const { return udfs_.ids(); }
   // Data and mask must be as long as the chunk.
   Status udfDataIs( EntryId id, UdfId chunk, std::span<const U8> data, std::span<const U8> mask );
   Status udfDataDel( EntryId id, UdfId chunk );
   std::optional<UdfValue> udfData( EntryId id, UdfId chunk ) const;

   // --- Actions. Adding an action the entry has replaces its parameters. CopyToCpu and
   // SwitchToCpuCancel exclude each other (Conflict).
   Status actionIs( EntryId id, ActionId a, U32 param1, U32 param2 );
   Status actionPortsIs( EntryId id, ActionId a, const PortBitmap& ports );
   Status actionDel( EntryId id, ActionId a );
   Status actionsDelAll( EntryId id );
   std::optional<ActionParams> action( EntryId id, ActionId a ) const;
   std::optional<PortBitmap> actionPorts( EntryId id, ActionId a ) const;

   // --- Per-port, per-VLAN and class-table state, read by every lookup.
   ChipPorts& ports() { return ports_; }
   const ChipPorts& ports() const { return ports_; }
   ChipVlans& vlans() { return vlans_; }
   const ChipVlans& vlans() const { return vlans_; }
   ClassTables& classTables() { return classes_; }
   const ClassTables& classTables() const { return classes_; }

   // --- Lookup.
   Verdict lookup( const Packet& p );
   // The same, into a verdict that is reused: no allocation once its hit list has grown.
   void lookup( const Packet& p, Verdict& out );

   // A text dump of one entry: its state flags and its software face; nullopt: no such entry.
   std::optional<std::string> entryDump( EntryId id ) const;

 private:
   struct GroupRecord;
   struct StageContext;

   EntryRecord* find( EntryId id );
   const EntryRecord* find( EntryId id ) const;
   const KeySet& keysOf( const EntryRecord& e ) const;
   GroupRecord* findGroup( GroupId id );
   // The entry changed in a way the lookup of its group must see at once: its hardware face
   // or its state (install, remove, enable), or only its place in the order.
   void hardwareChanged( EntryRecord& e );
   void orderChanged( const EntryRecord& e );
   void softwareChanged( EntryRecord& e );
   void sortStage( Stage s );
   void releaseReferences( EntryRecord& e );
   Status addAction( EntryId id, ActionId a, const ActionValue& v );

   void rebuildTable( GroupRecord& g );
   EntryRecord* scanFirstMatch( GroupRecord& g, StageContext& ctx );
   EntryRecord* firstMatch( GroupRecord& g, StageContext& ctx );
   void indexQueue( EntryRecord& e );
   void indexFlush( GroupRecord& g );
   void runStage( Stage s, StageContext& ctx, Verdict& out, std::optional<U32> egressPort );

   ChipConfig config_;
   ChipPorts ports_;
   ChipVlans vlans_;
   RangeCheckers ranges_;
   UdfChunks udfs_;
   ClassTables classes_;

   std::map<GroupId, std::unique_ptr<GroupRecord> > groups_;
   std::unordered_map<EntryId, std::unique_ptr<EntryRecord> > entries_;
   // Groups of each stage in order of precedence: priority descending, then id ascending.
   std::array<std::vector<GroupRecord*>, 3> stageGroups_;
   EntryId nextEntryId_ = 1;
   U64 nextOrdinal_ = 0;
};

}  // namespace Sim
