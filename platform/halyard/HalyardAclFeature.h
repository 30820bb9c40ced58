// The Halyard enumerations of ACL features and of the hidden management
// entries. Their numbers are stable; their text is the enumerator's name
// (value 7 prints as "aclFeatureNone").
#pragma once

#include <ostream>

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Halyard {

// The reason for which a set of hardware entries exists, beside the ACL
// type and direction.
enum HalyardAclFeature : U32 {
   aclFeatureSecurity = 0,    // ordinary ACLs
   aclFeatureMirroring1 = 1,  // mirroring ACL groups, one TCAM group each
   aclFeatureMirroring2 = 2,
   aclFeatureMirroring3 = 3,
   aclFeatureMirroring4 = 4,
   aclFeatureUrpfTHxV4Exception = 5,    // uRPF exception group, IPv4 only
   aclFeatureUrpfTHxV4V6Exception = 6,  // uRPF exception group, IPv4 and IPv6
   aclFeatureNone = 7,
};

constexpr bool isMirroringFeature( HalyardAclFeature f ) {
   return f >= aclFeatureMirroring1 && f <= aclFeatureMirroring4;
}

// Offsets of the management entries from the first entry of the block that
// bring-up acquires.
enum AclManagementTcams : U32 {
   aclMgmtTcamStpBlock = 0,
   aclMgmtTcamStpLearn = 1,
   aclMgmtTcamVfpDropLog = 2,
   aclMgmtTcamVfpDrop = 3,
   aclMgmtTcamVfpLog = 4,
   aclMgmtTcamVlanBlock = 5,
};

// Offsets of the port blocking entries in their block.
enum AclPortBlockingTcams : U32 {
   aclMgmtTcamPortBlock1 = 0,
   aclMgmtTcamPortBlock2 = 1,
   aclMgmtTcamEgressBlock1 = 2,
   aclMgmtTcamEgressBlock2 = 3,
};

inline constexpr Vesper::EnumName<HalyardAclFeature> halyardAclFeatureNames[] = {
    { aclFeatureSecurity, "aclFeatureSecurity" },
    { aclFeatureMirroring1, "aclFeatureMirroring1" },
    { aclFeatureMirroring2, "aclFeatureMirroring2" },
    { aclFeatureMirroring3, "aclFeatureMirroring3" },
    { aclFeatureMirroring4, "aclFeatureMirroring4" },
    { aclFeatureUrpfTHxV4Exception, "aclFeatureUrpfTHxV4Exception" },
    { aclFeatureUrpfTHxV4V6Exception, "aclFeatureUrpfTHxV4V6Exception" },
    { aclFeatureNone, "aclFeatureNone" } };
constexpr Vesper::EnumNames<HalyardAclFeature> vesperEnumNames( HalyardAclFeature ) {
   return { "Halyard::HalyardAclFeature", halyardAclFeatureNames };
}

inline constexpr Vesper::EnumName<AclManagementTcams> aclManagementTcamsNames[] = {
    { aclMgmtTcamStpBlock, "aclMgmtTcamStpBlock" },
    { aclMgmtTcamStpLearn, "aclMgmtTcamStpLearn" },
    { aclMgmtTcamVfpDropLog, "aclMgmtTcamVfpDropLog" },
    { aclMgmtTcamVfpDrop, "aclMgmtTcamVfpDrop" },
    { aclMgmtTcamVfpLog, "aclMgmtTcamVfpLog" },
    { aclMgmtTcamVlanBlock, "aclMgmtTcamVlanBlock" } };
constexpr Vesper::EnumNames<AclManagementTcams> vesperEnumNames( AclManagementTcams ) {
   return { "Halyard::AclManagementTcams", aclManagementTcamsNames };
}

inline constexpr Vesper::EnumName<AclPortBlockingTcams> aclPortBlockingTcamsNames[] = {
    { aclMgmtTcamPortBlock1, "aclMgmtTcamPortBlock1" },
    { aclMgmtTcamPortBlock2, "aclMgmtTcamPortBlock2" },
    { aclMgmtTcamEgressBlock1, "aclMgmtTcamEgressBlock1" },
    { aclMgmtTcamEgressBlock2, "aclMgmtTcamEgressBlock2" } };
constexpr Vesper::EnumNames<AclPortBlockingTcams> vesperEnumNames( AclPortBlockingTcams ) {
   return { "Halyard::AclPortBlockingTcams", aclPortBlockingTcamsNames };
}

inline std::ostream& operator<<( std::ostream& os, HalyardAclFeature v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, AclManagementTcams v ) {
   return os << Vesper::stringValue( v );
}
inline std::ostream& operator<<( std::ostream& os, AclPortBlockingTcams v ) {
   return os << Vesper::stringValue( v );
}

}  // namespace Halyard
