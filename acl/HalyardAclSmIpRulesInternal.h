// Internal to the IP rule entry points of AclHelper (HalyardAclSmIpRules.cpp,
// HalyardAclSmClosingRules.cpp): the marks a failed rule leaves, and the result of an entry
// acquisition as a create result.
#pragma once

#include <optional>

#include "acl/HalyardAclSm.h"
#include "platform/fennel/AclCreateError.h"
#include "platform/vesper/String.h"

namespace Halyard {

// The name under which the unit's errors are published.
inline Vesper::Name chipNameOf( const AclHelper& helper, U32 unit ) {
   return helper.hcsd()->halyardModId( static_cast<U16>( unit ) ).chipName();
}

// A rule failed on the unit: the ACL is dirty there (commit keeps away from it), the unit and
// the helper are dirty, and the chip's error is published. The code itself goes to
// unitErrorIs separately, since a program failure records it only after the last entry.
inline void markUnitFailed( AclHelper& helper, const AclUnitData& unitData ) {
   const U32 unit = unitData.unit();
   unitData.common()->dirtyIs( true );
   helper.unitDirtyIs( unit, true );
   helper.dirtyIs( true );
   helper.publishUnitErrorIs( chipNameOf( helper, unit ), true );
}

// What an acquisition says before any match is written: success with nothing to program (the
// action needs no entry), no entries (2), the payload failed (12); nullopt when its entries
// are to be programmed. commonCreateEntry has left the marks of its own failures.
inline std::optional<Fennel::AclCreateError> acquisitionResult( const CommonRuleData& result ) {
   if ( !result.needed() ) {
      return Fennel::aclCreateSuccess;
   }
   if ( result.entryCount() == 0 ) {
      return Fennel::aclCreateNoEntries;
   }
   if ( result.udfError() ) {
      return Fennel::aclCreateUdfError;
   }
   return std::nullopt;
}

}  // namespace Halyard
