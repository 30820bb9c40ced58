// Sim::Verdict: what the field processor did to one packet.
//
// A verdict is filled by ChipModel::lookup. It may be reused for the next packet: lookup resets
// every field and keeps the capacity of `hits`, so a reused verdict costs no allocation.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

struct StageHit {
   Stage stage = Stage::Ifp;
   GroupId group = 0;
   EntryId entry = 0;
   std::optional<U32> egressPort;  // EFP hits: the port whose copy was looked up
   friend bool operator==( const StageHit&, const StageHit& ) = default;
};

struct Verdict {
   bool dropped = false;       // a Drop action of VFP or IFP: the packet goes to no port
   bool stpDiscarded = false;  // the ingress port's STP state does not forward
   PortBitmap egressPorts;     // destinations left after every stage
   PortBitmap egressDropped;   // destinations whose copy an EFP entry dropped
   bool copyToCpu = false;
   std::optional<U32> cpuMatchId;  // the match id a CopyToCpu reported with the copy
   std::optional<U32> cpuQueue;
   std::optional<U32> internalPriority;
   std::optional<U32> mirror;
   U32 sourceClass = 0;
   // At most one per group: VFP groups, IFP groups, then EFP groups port by port; within a
   // stage in order of precedence (group priority, highest first).
   std::vector<StageHit> hits;

   bool forwarded() const { return egressPorts.any(); }
   // The entry a group hit; for EFP groups the hit of the first port, unless one is named.
   std::optional<EntryId> hitIn( GroupId g ) const;
   std::optional<EntryId> hitIn( GroupId g, U32 egressPort ) const;
   // One line for failure messages and traces.
   std::string text() const;
};

}  // namespace Sim
