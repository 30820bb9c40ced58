// The TCAM groups a simulated switch sets up: for each manager assignment number, the stage its
// group lives in, the group's priority, its key width, and the most entries the group may hold
// on one unit.
//
// A group's priority does two things, as on the hardware: it orders the groups of a stage
// (where the hits of two groups set one action family, the higher group wins), and it is the
// priority at which every entry of the group stands unless setPriorityForEntry says otherwise
// (0 lowest, 0x7fffffff highest).
//
// Room comes from the stage's slices (ChipConfig::slices), which the groups of a stage take
// and give back as they need them (TcamUnit.h); a group's capacity only caps what it may take.
// defaultGroupTable() sets each cap to what the whole stage could give the group, so that the
// slices alone decide; a test lowers one group's cap to exhaust it without starving the
// others, or builds a table by hand.
#pragma once

#include <map>

#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace Sim {

struct GroupDef {
   Stage stage = Stage::Ifp;
   U32 priority = 0;  // REQUIRES: at most 0x7fffffff
   U32 capacity = 0;  // the most entries per unit; a bounded group's count of indices
   // Bounded: entries are addressed by position (entry base plus an index) rather than
   // handed out on demand.
   bool bounded = false;
   // The wide (double) key: the group gets half a slice's narrow entries from each slice.
   bool wide = false;
};

using GroupTable = std::map<Halyard::TcamGroupAssignment, GroupDef>;

// One stage of a chip kind, in sum: its slices and their narrow entries per slice.
struct StageCapacity {
   U32 slices = 0;
   U32 entriesPerSlice = 0;
   U32 entries() const { return slices * entriesPerSlice; }
};

struct StageCapacities {
   StageCapacity vfp;
   StageCapacity ifp;
   StageCapacity efp;
};

// Entries of the two bounded groups: six management entries (with room for two more) and the
// four port-blocking entries.
inline constexpr U32 kMgmtGroupEntries = 8;
inline constexpr U32 kPortBlockingGroupEntries = 4;

// Every assignment of tcamGroupAssignmentAll with its stage, priority and key width. The
// bounded groups get their fixed counts; every other group may grow to the whole stage (half
// of it for a wide key): the stage's slices, shared as the groups ask for them, set the limit.
//
// Group priorities, highest first within each stage: port blocking, management, the uRPF
// exception groups, router ACLs, VNI-keyed ACLs, port ACLs (IPv4 before IPv6 before the
// narrow IPv6 key), MAC ACLs, then the mirroring groups. Blocking and management stand above
// every ACL so that their CPU-queue choice for blocked ports overrides an ACL's.
GroupTable defaultGroupTable( const StageCapacities& stages );

}  // namespace Sim
