// Internal to GenericAclSm: what one pass collects as it goes.
#pragma once

#include <set>

#include "fennel/GenericAclSm.h"

namespace Fennel {

struct GenericAclSm::PassWork {
   PassSummary summary;
   std::set<AclKey> apply;        // ACLs whose rules this pass creates
   std::set<AclKey> lostPorts;    // bindings went
   std::set<AclKey> gainedPorts;  // bindings came
   std::set<AclKey> holdCommit;   // applied, but not to be committed in this pass
};

}  // namespace Fennel
