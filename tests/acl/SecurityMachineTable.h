// The six security type-direction-feature machines that bring-up builds, with the TCAM group of
// each of their seven managers. Shared by the tests that build them by hand and the tests that
// check what bring-up built.
#pragma once

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclTypes.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/TcamGroupAssignment.h"

namespace HalyardAclTest {

struct SecurityMachineRow {
   Acl::AclType type;
   Acl::AclDirection direction;
   // entry, vfp, vni, std, stdVfp, router, stdRouter; noManager: null.
   Halyard::TcamGroupAssignment managers[7];
};

inline constexpr Halyard::TcamGroupAssignment noManager{};

// In the order bring-up builds them. On IPv6 ingress one group serves both standard managers.
inline constexpr SecurityMachineRow securityMachineRows[] = {
    { Acl::ip_,
      Acl::in_,
      { Halyard::tcamGroupIpAcl, Halyard::tcamGroupIpAclVfp, Halyard::tcamGroupIpAclVni, noManager,
        noManager, Halyard::tcamGroupRouterAcl, noManager } },
    { Acl::mac_,
      Acl::in_,
      { Halyard::tcamGroupMacAcl, Halyard::tcamGroupMacAclVfp, noManager, noManager, noManager,
        noManager, noManager } },
    { Acl::ip_,
      Acl::out_,
      { Halyard::tcamGroupIpAclEgress, noManager, noManager, noManager, noManager,
        Halyard::tcamGroupRouterAclEgress, noManager } },
    { Acl::mac_,
      Acl::out_,
      { Halyard::tcamGroupMacAclEgress, noManager, noManager, noManager, noManager, noManager,
        noManager } },
    { Acl::ipv6_,
      Acl::in_,
      { Halyard::tcamGroupIp6Acl, Halyard::tcamGroupIp6AclVfp, Halyard::tcamGroupIp6AclVni,
        Halyard::tcamGroupIp6StdAcl, Halyard::tcamGroupIp6StdAclVfp, Halyard::tcamGroupIp6RouterAcl,
        Halyard::tcamGroupIp6StdAcl } },
    { Acl::ipv6_,
      Acl::out_,
      { Halyard::tcamGroupIp6AclEgress, noManager, noManager, Halyard::tcamGroupIp6StdAclPortEgress,
        noManager, Halyard::tcamGroupIp6RouterAclEgress,
        Halyard::tcamGroupIp6StdAclRouterEgress } },
};

// Builds the six machines on `helper` with the managers of `groupManager`, as bring-up does,
// for tests of what the machines serve without the rest of bring-up.
inline void makeSecurityStateMachines( const Halyard::HalyardTcamGroupManager& groupManager,
                                       const Halyard::AclHelper::Ptr& helper ) {
   for ( const SecurityMachineRow& row : securityMachineRows ) {
      Halyard::HalyardUnboundedTcamEntryManager::Ptr m[7];
      for ( int i = 0; i < 7; ++i ) {
         if ( row.managers[i] != noManager ) {
            m[i] = groupManager.unboundedEntryManager( row.managers[i] );
         }
      }
      helper->halyardAclTypeDirectionFeatureSmIs(
          Halyard::HalyardAclTypeDirectionFeature( row.type, row.direction,
                                                   Halyard::aclFeatureSecurity ),
          helper.ptr(), m[0], m[1], m[2], m[3], m[4], m[5], m[6] );
   }
}

}  // namespace HalyardAclTest
