// One chip as the peer agents of the simulated switch see it: the module id by which the
// status records name it, the chip number by which the VLAN topology's class requests name it
// (HalyardModInfo::chip), and the chip model they act on. The switch owns the model and
// outlives its agents.
#pragma once

#include "platform/pylon/ModId.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"

namespace Sim {

struct AgentChip {
   Pylon::ModId modId;
   U16 chip = 0;
   ChipModel* model = nullptr;
};

}  // namespace Sim
