#pragma once

namespace Vesper {

// The name of the object runtime, for diagnostics.
const char* runtimeName();

}  // namespace Vesper
