// The result of every create operation of the back-end.
//
// 0 is success; the named failures are those the back-end produces. Any
// other number is passed upward unchanged, and prints as its number.
#pragma once

#include <ostream>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Fennel {

enum AclCreateError : U32 {
   aclCreateSuccess = 0,
   aclCreateNoEntries = 2,        // a TCAM manager has no entries left
   aclCreateNoRangeChecker = 3,   // no range checker for a port or length term
   aclCreateUdfError = 12,        // payload (user-defined field) programming failed
   aclCreateNotExpressible = 13,  // the rule cannot stand in the ACL's key
};

inline constexpr Vesper::EnumName<AclCreateError> aclCreateErrorNames[] = {
    { aclCreateSuccess, "aclCreateSuccess" },
    { aclCreateNoEntries, "aclCreateNoEntries" },
    { aclCreateNoRangeChecker, "aclCreateNoRangeChecker" },
    { aclCreateUdfError, "aclCreateUdfError" },
    { aclCreateNotExpressible, "aclCreateNotExpressible" } };
constexpr Vesper::EnumNames<AclCreateError> vesperEnumNames( AclCreateError ) {
   return { "Fennel::AclCreateError", aclCreateErrorNames };
}

inline std::ostream& operator<<( std::ostream& os, AclCreateError e ) {
   return os << Vesper::stringValue( e );
}

}  // namespace Fennel
