// Sim::SwitchVerdict: what the simulated switch did with one packet injected on an interface.
//
// A packet whose destination is on its ingress unit is looked up there once. One bound for
// another unit is looked up on the ingress unit with that unit's link port as its destination,
// and, if it leaves by it, looked up again on the egress unit as a HiGig packet arriving on the
// egress unit's link port with the real destination: the egress unit's VFP and IFP see it as a
// chip's ingress pipeline sees a packet from its stacking port, and its EFP decides the copy.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/halyard/HalyardPort.h"
#include "platform/vesper/Types.h"
#include "sim/chip/Verdict.h"

namespace Sim {

struct SwitchVerdict {
   U32 ingressUnit = 0;
   Verdict ingress;
   std::optional<U32> egressUnit;  // set when the destination is on another unit
   std::optional<Verdict> egress;  // that unit's lookup; nullopt if the packet never got there
   // The front-panel ports the packet leaves by, as (unit, port).
   std::vector<HalyardTypes::HalyardPort> delivered;

   bool forwarded() const { return !delivered.empty(); }
   // A VFP or IFP drop on either unit, or EFP drops of every copy: a packet that had
   // destinations and reaches none because EFP entries dropped it reads as dropped.
   bool dropped() const;
   bool copyToCpu() const { return ingress.copyToCpu || ( egress && egress->copyToCpu ); }
   // One line for failure messages and traces.
   std::string text() const;
};

}  // namespace Sim
