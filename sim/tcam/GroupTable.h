// The TCAM groups a simulated switch sets up: for each manager assignment number, the stage its
// group lives in, the group's priority and how many entries the group can hold on one unit.
//
// A group's priority does two things, as on the hardware: it orders the groups of a stage
// (where the hits of two groups set one action family, the higher group wins), and it is the
// priority at which every entry of the group stands unless setPriorityForEntry says otherwise
// (0 lowest, 0x7fffffff highest).
//
// defaultGroupTable() derives the capacities from what a chip kind says of its stages (slices
// and entries per slice), so that the chip catalog can feed it, and tests can make them tiny to
// force exhaustion. Tests may also build a GroupTable by hand.
#pragma once

#include <map>

#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace Sim {

struct GroupDef {
   Stage stage = Stage::Ifp;
   U32 priority = 0;  // REQUIRES: at most 0x7fffffff
   U32 capacity = 0;  // entries per unit
   // Bounded: entries are addressed by position (entry base plus an index) rather than
   // handed out on demand.
   bool bounded = false;
};

using GroupTable = std::map<Halyard::TcamGroupAssignment, GroupDef>;

// One stage of a chip kind. Entries per slice count narrow (single-wide) entries; a group
// with a double-wide key gets half as many out of the same slices.
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

// Every assignment of tcamGroupAssignmentAll with its stage and priority. The bounded groups
// come out of the IFP entries first; the rest of each stage is shared evenly among its
// unbounded groups, a double-wide group getting half a share.
//
// Group priorities, highest first within each stage: port blocking, management, the uRPF
// exception groups, router ACLs, VNI-keyed ACLs, port ACLs (IPv4 before IPv6 before the
// narrow IPv6 key), MAC ACLs, then the mirroring groups. Blocking and management stand above
// every ACL so that their CPU-queue choice for blocked ports overrides an ACL's.
GroupTable defaultGroupTable( const StageCapacities& stages );

}  // namespace Sim
