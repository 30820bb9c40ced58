// How the tool binds interfaces to ACLs while the back-end does not serve addIntfToAcl,
// removeIntfFromAcl and updateAclPorts: a Fennel::AclBindingOps that does what addIntfToAcl
// does for a port that needs nothing but the ACL's unit records.
//
// Binding an interface gives the ACL a unit record with its rule programmer on every unit of
// the switch (an ACL stands on every unit once any interface binds it) and puts the
// interface's ports among the active ports of their own units, before the ACL's first pass, so
// that precreateAcl finds them and the entries carry them from their creation. A port-channel
// brings every member's port, so that packets from any member meet the ACL, as the
// configuration means. Nothing of the hardware is touched here.
//
// What it cannot do, and refuses loudly (the process stops, naming the operation): take a
// binding away, and give ports to an ACL that stands in hardware. The tool checks each change
// of configuration before it programs anything (ConfigChange.h), so neither is reached.
#pragma once

#include <memory>

#include "acl/HalyardAclSm.h"
#include "fennel/GenericAclSm.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

// REQUIRES: the profile outlives the result; every interface bound is a front-panel port or
// a port-channel of it.
std::shared_ptr<Fennel::AclBindingOps> portBindings( Halyard::AclHelper::Ptr helper,
                                                     const Sim::SwitchProfile& profile );

}  // namespace HalyardCli
