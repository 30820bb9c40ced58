// Identification of the back-end library.
#pragma once

namespace Halyard {

// The name of this library as the agent loads it.
const char* aclLibName();

}  // namespace Halyard
