// Internal to AclHelper: the names by which VfpAclTypeForPort knows ports.
#pragma once

#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The name of the interface on `port` of `unit` in the agent's port-to-interface map; the
// empty interface's name for a port without one. A port above 0x3FF raises
// Vesper::RangeException "U10::value < 0 or > 0x03ff not allowed".
Vesper::String vfpPortName( const HalyardCommonSmData& hcsd, U32 unit, U32 port );

}  // namespace Halyard
