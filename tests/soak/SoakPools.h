// Every pool the ACL back-end draws from on the simulated switch, as text, so that the state
// after the soak can be compared with bring-up's line by line: per unit, each TCAM group's
// entries (in the managers and in the chip), the stages' free slices, range checkers, UDF
// chunks, the free ingress classes and the free egress classes of each ACL type, the VFP port
// claims and the ports' field-processor classes; per switch, the back-end's ACL records and
// dirty ACLs.
#pragma once

#include <string>

#include "cli/switch/AclSwitch.h"

namespace Soak {

std::string poolsText( const HalyardCli::AclSwitch& sw );

}  // namespace Soak
