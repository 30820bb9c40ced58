// The two predicates that tell whether a subrule term needs a hardware range checker.
#include "acl/HalyardAclHelper.h"

namespace Halyard {

bool useRangeChecker( U16 mask, U16 start, U16 end ) {
   return mask == 0 && start != end;
}

bool verifyIpLenRangeChecker( U16 mask, U16 start, U16 end ) {
   return mask == 0xFFFF || start != end;
}

}  // namespace Halyard
