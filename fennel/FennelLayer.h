#pragma once

namespace Fennel {

// The name of the generic ACL layer, for diagnostics.
const char* layerName();

}  // namespace Fennel
