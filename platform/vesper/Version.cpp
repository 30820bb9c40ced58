#include "platform/vesper/Version.h"

namespace Vesper {

const char* runtimeName() {
   return "vesper";
}

}  // namespace Vesper
