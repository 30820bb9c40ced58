// HalyardCli::AclSwitch: the simulated switch with the ACL back-end wired on it as an agent
// wires it (SimAgent) and the generic layer's machine driving the back-end, programmed from
// configurations in turn, as an agent applies each configuration change.
//
// Contract:
//   1. The generic machine is registered for the object's life, so that the agent's entity
//      builds one; the plain machine comes back after.
//   2. apply() puts a configuration in the agent's records (Acl::Config, Acl::IntfConfig,
//      Acl::ParamConfig) and runs the machine's passes until nothing is left that a pass can do
//      at once: a change not applied, or a port range that found no range checker and goes in
//      as masked blocks on the next pass. An ACL that ran out of entries is tried once.
//   3. REQUIRES, for every configuration applied: unservedBinding() finds nothing, and a
//      further configuration passes unsupportedChange() against the one standing and
//      pendingReapply() finds nothing (ConfigChange.h).
//
// REQUIRES: one AclSwitch at a time (the simulated switch installs process-wide records).
#pragma once

#include <functional>
#include <optional>

#include "cli/SimAgent.h"
#include "cli/config/ConfigText.h"
#include "fennel/Evaluator.h"
#include "fennel/GenericAclSm.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

class AclSwitch {
 public:
   explicit AclSwitch( const Sim::SwitchProfile& profile );
   ~AclSwitch();
   AclSwitch( const AclSwitch& ) = delete;
   AclSwitch& operator=( const AclSwitch& ) = delete;

   // The back-end's one-time bring-up, which the first pass runs otherwise; apart, so that a
   // trace of programming can leave it out.
   void bringUp();
   // Applies `setup` as the next configuration (contract 2); answers the passes run.
   // `beforePass` hears of each pass (1 for the first) before it runs.
   U32 apply( const AclSetup& setup, const std::function<void( U32 )>& beforePass = {} );
   // The configuration applied last; null before the first.
   const AclSetup* standing() const { return standing_ ? &*standing_ : nullptr; }

   SimAgent& agent() { return agent_; }
   Sim::SimSwitch& simSwitch() { return agent_.simSwitch(); }
   const Sim::SimSwitch& simSwitch() const { return agent_.simSwitch(); }
   const Sim::SwitchProfile& profile() const { return profile_; }
   const Halyard::AclHelper& helper() const { return *agent_.helper(); }
   const Fennel::GenericAclSm& machine() const { return *machine_; }

   // What the configuration does not say about the switch's interfaces, for the evaluator.
   Fennel::Topology topology() const;
   // The reference evaluator of the configuration applied last. REQUIRES: standing().
   Fennel::Evaluator evaluator() const;

 private:
   struct MachineRegistration {
      MachineRegistration();
      ~MachineRegistration();
   };

   // Declared first: the registration must stand when the agent builds its machine.
   MachineRegistration registration_;
   SimAgent agent_;
   const Sim::SwitchProfile& profile_;  // the switch's own
   Fennel::GenericAclSm::Ptr machine_;
   std::optional<AclSetup> standing_;
};

// A pass can still do something at once: a port range waits to go in as blocks.
bool expansionWaiting( const Fennel::GenericAclSm& machine );

}  // namespace HalyardCli
