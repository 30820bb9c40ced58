// What this build can program, checked before anything is: the bindings the tool can serve,
// and the changes of configuration that the generic layer and the back-end apply as they
// should.
//
// Not served yet, and refused with a message that says what is missing:
//   - bindings on VLAN interfaces (router ACLs: the back-end's router ACL programming is not
//     there yet) and on sub-interfaces (the generic layer does not serve them);
//   - a change of the hardware access-list settings while ACLs stand: the generic layer does
//     not apply standing lists again when a setting changes, so the hardware would keep the
//     old behaviour while the configuration says otherwise;
//   - with "hardware access-list update default-result deny", a change that applies a standing
//     ACL again: its interfaces are blocked around the update (blockIntf), which the back-end
//     does not serve yet.
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

// A binding this build cannot serve, said in a sentence; nullopt when every binding is served.
std::optional<std::string> unservedBinding( const AclSetup& setup );

// Why `next` cannot be applied as a change of `standing` in this build; nullopt when it can.
std::optional<std::string> unsupportedChange( const AclSetup& standing, const AclSetup& next );

// Why the machine's next pass, under the settings `params`, would apply a standing ACL again
// where this build cannot (it did not fit, or the back-end asked for it, and updates block
// interfaces); nullopt when it would not.
std::optional<std::string> pendingReapply( const Fennel::GenericAclSm& machine,
                                           const Acl::ParamConfig& params );

// "ip access-list web in", "ipv6 access-list web out on Vlan100".
std::string instanceName( const Fennel::AclKey& key );

}  // namespace HalyardCli
