// The simulated switch grows here; this unit keeps the target non-empty.
#include "sim/SimLayer.h"

namespace Sim {

const char* layerName() {
   return "sim";
}

}  // namespace Sim
