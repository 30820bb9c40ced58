// HalyardTest::AgentSwitch: a simulated switch with the ACL back-end wired on it as a forwarding
// agent wires it (aclHelperFactory with the switch's shared data, TCAM group manager and status
// records; aclSmEntityFactory and aclSmIs, which builds the generic machine around the helper),
// and, unless asked otherwise, brought up (hwInit).
//
// The generic machine is whatever Fennel::AclSm::create makes: a plain machine that drives
// nothing in the tests of the library, the generic layer's own where its factory is registered.
// Tests of the library call the back-end's operations themselves.
//
// Contract:
//   1. The switch (Sim::SimSwitch) installs the simulated SDK and the process-wide records for
//      the object's life; make agent switches one at a time, or destroy them in reverse order.
//   2. The machine and the helper go before the switch whose records they hold.
//   3. The ACL configuration records are the agent's own and start empty; tests fill them.
//
// REQUIRES: the caller holds the activity lock (Vesper::ActivityLockGuard) for the object's
// life, as the agent's activity thread does.
#pragma once

#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipModel.h"
#include "sim/switch/SimSwitch.h"
#include "sim/switch/SwitchProfile.h"
#include "sim/tcam/SimTcamEntryManager.h"
#include "tests/support/SwitchLayout.h"

namespace HalyardTest {

struct AgentOptions {
   Sim::SwitchOptions sim;
   // Run the one-time bring-up at once, as the generic machine does first.
   bool hwInit = true;
   // Build the entity and its generic machine around the helper.
   bool aclSm = true;
};

// The back-end wired but not brought up: for tests of what comes before or of bring-up itself.
inline AgentOptions notBroughtUp() {
   AgentOptions options;
   options.hwInit = false;
   return options;
}

class AgentSwitch {
 public:
   explicit AgentSwitch( const Sim::SwitchProfile& profile = Sim::defaultProfile(),
                         const AgentOptions& options = {} );
   explicit AgentSwitch( const SwitchLayout& layout, const AgentOptions& options = {} )
       : AgentSwitch( profileOf( layout ), options ) {}
   ~AgentSwitch();
   AgentSwitch( const AgentSwitch& ) = delete;
   AgentSwitch& operator=( const AgentSwitch& ) = delete;

   Sim::SimSwitch& sim() { return switch_; }
   const Sim::SimSwitch& sim() const { return switch_; }
   const Halyard::AclHelper::Ptr& helper() const { return helper_; }
   const Halyard::AclSmEntity::Ptr& aclSmEntity() const { return entity_; }

   const Acl::Config::Ptr& config() const { return config_; }
   const Acl::ParamConfig::Ptr& paramConfig() const { return paramConfig_; }
   const Acl::IntfConfig::Ptr& intfConfig() const { return intfConfig_; }
   const Fennel::FennelCommonSmData::Ptr& fcsd() const { return fcsd_; }

   // The one-time bring-up, when the options left it to the test.
   void hwInit() { helper_->hwInit(); }
   // Another helper on the same records, not brought up; with the switch's fabric flag or
   // the one given.
   Halyard::AclHelper::Ptr makeHelper() const { return makeHelper( switch_.hasFabric() ); }
   Halyard::AclHelper::Ptr makeHelper( bool hasFabric ) const;

   // ---- The switch, shortened.
   std::vector<U32> units() const { return switch_.units(); }
   Sim::ChipModel& chip( U32 unit ) const { return switch_.chip( unit ); }
   const Sim::ChipKind& kind( U32 unit ) const { return switch_.chipKind( unit ); }
   const Sim::SimTcamGroupManager::Ptr& groupManager() const { return switch_.groupManager(); }
   Halyard::HalyardUnboundedTcamEntryManager::Ptr manager( Halyard::TcamGroupAssignment a ) const {
      return groupManager()->unboundedEntryManager( a );
   }
   // REQUIRES: `a` is a bounded group of the switch (the process stops otherwise).
   Sim::SimBoundedTcamEntryManager& boundedManager( Halyard::TcamGroupAssignment a ) const;

 private:
   Sim::SimSwitch switch_;
   Acl::Config::Ptr config_;
   Acl::ParamConfig::Ptr paramConfig_;
   Acl::IntfConfig::Ptr intfConfig_;
   Fennel::FennelCommonSmData::Ptr fcsd_;
   Halyard::AclHelper::Ptr helper_;
   Halyard::AclSmEntity::Ptr entity_;
};

}  // namespace HalyardTest
