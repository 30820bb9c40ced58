// What this build can program, checked before anything is: the bindings the tool can serve,
// and which changes of configuration it can apply as a change of the one standing.
//
// The back-end does not serve teardown (destroyAcl, cleanupAcl) nor bindings that come and go
// (removeIntfFromAcl, updateAclPorts) yet, and stops the process where they are asked for. So
// a further configuration is applied only when what it changes is new: lists that no binding
// used before, and bindings of those. A list that stands bound must stand as it is, with the
// same bindings, and the hardware settings may not change while ACLs stand. Everything else
// is refused with a message that says what the change needs.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "cli/config/ConfigText.h"
#include "fennel/GenericAclSm.h"
#include "platform/fennel/AclKey.h"

namespace HalyardCli {

// An ACL instance as the generic layer makes it from the bindings: a list bound in one
// direction, on ports (VLAN 0) or on one VLAN interface.
struct AclInstance {
   Acl::AclConfig::PtrConst config;
   std::set<Pylon::IntfId> intfs;
};
std::map<Fennel::AclKey, AclInstance> aclInstances( const AclSetup& setup );

// A binding this build cannot serve (on a VLAN interface or a sub-interface), said in a
// sentence; nullopt when every binding is served.
std::optional<std::string> unservedBinding( const AclSetup& setup );

// Why `next` cannot be applied as a change of `standing` in this build; nullopt when it can.
std::optional<std::string> unsupportedChange( const AclSetup& standing, const AclSetup& next );

// Why the machine's next pass would apply a standing ACL again (it did not fit, or the
// back-end asked for it), which needs destroyAcl; nullopt when it would not.
std::optional<std::string> pendingReapply( const Fennel::GenericAclSm& machine );

// "ip access-list web in", "ipv6 access-list web out on Vlan100".
std::string instanceName( const Fennel::AclKey& key );

}  // namespace HalyardCli
