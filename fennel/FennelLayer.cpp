// The generic ACL layer grows here; this unit keeps the target non-empty.
#include "fennel/FennelLayer.h"

namespace Fennel {

const char* layerName() {
   return "fennel";
}

}  // namespace Fennel
