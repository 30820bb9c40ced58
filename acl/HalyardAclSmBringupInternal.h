// Internal to the bring-up of AclHelper (HalyardAclSmBringup.cpp): the hidden management
// entries of one unit (HalyardAclSmMgmtEntries.cpp).
#pragma once

#include "acl/HalyardAclSm.h"
#include "platform/tcam/HalyardCommonSmData.h"

namespace Halyard {

// The toggle that lets the STP entries send every CPU copy of a blocked or learning port to
// the drop queue (off), or only those of logged packets (on, the default).
inline constexpr const char* mirrorOnDropToggle = "HalyardMirrorOnDrop";

// A member of the unit table of the common data: key() is the unit.
using UnitTableNode = HalyardCommonSmData::UnitTable::Node;

// Builds the ten management entries of the unit, each to its end before the next, in the
// order: the two port-blocking entries, the STP-blocked and STP-learning log preventers, the
// VFP drop+log, drop and log entries, the VLAN-blocking entry, the two egress port-blocking
// entries. Installs those meant to stand when helper.installEntries().
// REQUIRES: hwInit has taken the managers and filled allPortsMask for the unit.
void managementEntriesIs( const AclHelper& helper, const UnitTableNode& unitIter,
                          bool mirrorOnDrop );

}  // namespace Halyard
