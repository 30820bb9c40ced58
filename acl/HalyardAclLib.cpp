// Identification of the back-end library, so the tool can say which build of
// the library it has loaded.
#include "acl/HalyardAclLib.h"

namespace Halyard {

const char* aclLibName() {
   return "libHalyardAclLib";
}

}  // namespace Halyard
