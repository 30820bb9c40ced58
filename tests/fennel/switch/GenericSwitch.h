// FennelTest::GenericSwitch: a simulated switch with the back-end wired as the agent wires it
// and the generic layer's own machine around it, and the means to set the hardware's answer
// for a packet beside the reference evaluator's.
//
// REQUIRES: one GenericSwitch at a time (the simulated switch installs process-wide records);
// the caller holds the activity lock.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fennel/Evaluator.h"
#include "fennel/GenericAclSm.h"
#include "fennel/HalyardView.h"
#include "fennel/Packet.h"
#include "sim/chip/Packet.h"
#include "tests/support/AgentSwitch.h"

namespace FennelTest {

// Registers the generic machine for the life of the object, so that the agent's entity builds
// one; the plain machine comes back after.
class GenericMachineRegistration {
 public:
   GenericMachineRegistration();
   ~GenericMachineRegistration();
};

// One ACL the hardware looked a packet up in, and the rule whose entry it hit.
struct HardwareHit {
   Fennel::AclKey key;
   U32 unit = 0;
   Fennel::RuleOrigin origin;
};

struct HardwareOutcome {
   bool permit = false;
   bool ingressPermit = false;  // no VFP or IFP drop on the ingress unit
   std::vector<HardwareHit> hits;
   std::string text;
};

class GenericSwitch {
 public:
   explicit GenericSwitch( const Sim::SwitchProfile& profile = Sim::defaultProfile(),
                           const Sim::SwitchOptions& options = {} );

   HalyardTest::AgentSwitch& agent() { return agent_; }
   Fennel::GenericAclSm& machine() { return *machine_; }
   const Acl::Config::Ptr& config() const { return agent_.config(); }
   const Acl::IntfConfig::Ptr& intfConfig() const { return agent_.intfConfig(); }
   const Acl::ParamConfig::Ptr& paramConfig() const { return agent_.paramConfig(); }

   void bind( Acl::AclType type, const std::string& name, Pylon::IntfId intf,
              Acl::AclDirection direction );
   // The machine's passes, through which the test must go: the hardware changes.
   Fennel::PassSummary runPass();
   U32 settle();

   // Pushes the packet through the switch; the verdict and the hit of each ACL.
   HardwareOutcome inject( const Fennel::Packet& packet );
   Fennel::Evaluation reference( const Fennel::Packet& packet ) const;
   // Where the hardware and the evaluator differ on the packet; empty when they agree.
   std::string disagreement( const Fennel::Packet& packet );

 private:
   GenericMachineRegistration registration_;
   HalyardTest::AgentSwitch agent_;
   Fennel::GenericAclSm::Ptr machine_;
   // The entries' owners as of the last pass: one walk of the records, not one per packet.
   std::unique_ptr<Fennel::EntryOwners> owners_;
};

// The chip's packet for an operator's packet (the tool has its own; the tests of this layer
// may not include it).
Sim::Packet simPacket( const Fennel::Packet& packet );

}  // namespace FennelTest
