// The numbers by which the TCAM group manager hands out its entry managers:
// one TCAM group, and one manager, per assignment.
//
// The numbers are the group manager's own and stable; names say which ACLs
// a group serves ("Vfp": the VFP stage, "Vni": the VXLAN key, "Std": the
// narrow IPv6 key, "Router": router ACLs on VLANs, "Egress": the EFP stage;
// otherwise IFP). Two assignments are of the bounded kind, whose entries are
// addressed as an entry base plus an index (the management and port-blocking
// entries); all others are unbounded, handing out entries on demand.
#pragma once

#include "platform/vesper/Enum.h"
#include "platform/vesper/Types.h"

namespace Halyard {

enum TcamGroupAssignment : U32 {
   tcamGroupMacAcl = 2,
   tcamGroupIpAcl = 3,
   tcamGroupAclMgmt = 5,
   tcamGroupAclPortBlocking = 6,
   tcamGroupMacAclVfp = 15,
   tcamGroupIpAclVfp = 16,
   tcamGroupIpAclVni = 17,
   tcamGroupRouterAcl = 21,
   tcamGroupIp6Acl = 23,
   tcamGroupIp6AclVni = 24,
   tcamGroupIp6RouterAcl = 25,
   tcamGroupIp6AclVfp = 26,
   tcamGroupIp6StdAcl = 27,
   tcamGroupIp6StdAclVfp = 28,
   tcamGroupMacAclEgress = 29,
   tcamGroupIpAclEgress = 30,
   tcamGroupRouterAclEgress = 31,
   tcamGroupIp6AclEgress = 41,
   tcamGroupIp6StdAclPortEgress = 42,
   tcamGroupIp6StdAclRouterEgress = 43,
   tcamGroupIp6RouterAclEgress = 44,
   tcamGroupUrpfTHxV4ExceptionAcl = 46,
   tcamGroupUrpfTHxV4V6ExceptionAcl = 48,
   tcamGroupMirroringAcl1 = 74,
   tcamGroupMirroringAcl2 = 75,
   tcamGroupMirroringAcl3 = 76,
   tcamGroupMirroringAcl4 = 77,
};

inline constexpr Vesper::EnumName<TcamGroupAssignment> tcamGroupAssignmentNames[] = {
    { tcamGroupMacAcl, "tcamGroupMacAcl" },
    { tcamGroupIpAcl, "tcamGroupIpAcl" },
    { tcamGroupAclMgmt, "tcamGroupAclMgmt" },
    { tcamGroupAclPortBlocking, "tcamGroupAclPortBlocking" },
    { tcamGroupMacAclVfp, "tcamGroupMacAclVfp" },
    { tcamGroupIpAclVfp, "tcamGroupIpAclVfp" },
    { tcamGroupIpAclVni, "tcamGroupIpAclVni" },
    { tcamGroupRouterAcl, "tcamGroupRouterAcl" },
    { tcamGroupIp6Acl, "tcamGroupIp6Acl" },
    { tcamGroupIp6AclVni, "tcamGroupIp6AclVni" },
    { tcamGroupIp6RouterAcl, "tcamGroupIp6RouterAcl" },
    { tcamGroupIp6AclVfp, "tcamGroupIp6AclVfp" },
    { tcamGroupIp6StdAcl, "tcamGroupIp6StdAcl" },
    { tcamGroupIp6StdAclVfp, "tcamGroupIp6StdAclVfp" },
    { tcamGroupMacAclEgress, "tcamGroupMacAclEgress" },
    { tcamGroupIpAclEgress, "tcamGroupIpAclEgress" },
    { tcamGroupRouterAclEgress, "tcamGroupRouterAclEgress" },
    { tcamGroupIp6AclEgress, "tcamGroupIp6AclEgress" },
    { tcamGroupIp6StdAclPortEgress, "tcamGroupIp6StdAclPortEgress" },
    { tcamGroupIp6StdAclRouterEgress, "tcamGroupIp6StdAclRouterEgress" },
    { tcamGroupIp6RouterAclEgress, "tcamGroupIp6RouterAclEgress" },
    { tcamGroupUrpfTHxV4ExceptionAcl, "tcamGroupUrpfTHxV4ExceptionAcl" },
    { tcamGroupUrpfTHxV4V6ExceptionAcl, "tcamGroupUrpfTHxV4V6ExceptionAcl" },
    { tcamGroupMirroringAcl1, "tcamGroupMirroringAcl1" },
    { tcamGroupMirroringAcl2, "tcamGroupMirroringAcl2" },
    { tcamGroupMirroringAcl3, "tcamGroupMirroringAcl3" },
    { tcamGroupMirroringAcl4, "tcamGroupMirroringAcl4" } };
constexpr Vesper::EnumNames<TcamGroupAssignment> vesperEnumNames( TcamGroupAssignment ) {
   return { "Halyard::TcamGroupAssignment", tcamGroupAssignmentNames };
}

// Every assignment, in rising number: what a group manager walks to set up
// its groups.
inline constexpr TcamGroupAssignment tcamGroupAssignmentAll[] = {
    tcamGroupMacAcl,
    tcamGroupIpAcl,
    tcamGroupAclMgmt,
    tcamGroupAclPortBlocking,
    tcamGroupMacAclVfp,
    tcamGroupIpAclVfp,
    tcamGroupIpAclVni,
    tcamGroupRouterAcl,
    tcamGroupIp6Acl,
    tcamGroupIp6AclVni,
    tcamGroupIp6RouterAcl,
    tcamGroupIp6AclVfp,
    tcamGroupIp6StdAcl,
    tcamGroupIp6StdAclVfp,
    tcamGroupMacAclEgress,
    tcamGroupIpAclEgress,
    tcamGroupRouterAclEgress,
    tcamGroupIp6AclEgress,
    tcamGroupIp6StdAclPortEgress,
    tcamGroupIp6StdAclRouterEgress,
    tcamGroupIp6RouterAclEgress,
    tcamGroupUrpfTHxV4ExceptionAcl,
    tcamGroupUrpfTHxV4V6ExceptionAcl,
    tcamGroupMirroringAcl1,
    tcamGroupMirroringAcl2,
    tcamGroupMirroringAcl3,
    tcamGroupMirroringAcl4,
};

// The management and port-blocking groups: their managers are bounded.
constexpr bool isBoundedAssignment( TcamGroupAssignment assignment ) {
   return assignment == tcamGroupAclMgmt || assignment == tcamGroupAclPortBlocking;
}

}  // namespace Halyard
