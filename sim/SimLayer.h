#pragma once

namespace Sim {

// The name of the simulation layer, for diagnostics.
const char* layerName();

}  // namespace Sim
