// HalyardCli::SimAgent: a forwarding agent in miniature around the ACL back-end.
//
// It holds the simulated switch and the records that an agent hands the back-end, and wires
// them as the agent does: aclHelperFactory with the switch's shared data, TCAM group manager
// and status records, then aclSmEntityFactory and aclSmIs, which builds the generic machine
// around the helper.
//
// Invariants:
//  1. The activity lock is held by the constructing thread for the agent's whole life: the
//     tool runs on one activity thread, and the back-end gives the lock up only around SDK
//     calls.
//  2. Members are declared so that the back-end goes before the switch whose records it
//     holds (destruction runs in reverse order of declaration).
#pragma once

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/switch/SimSwitch.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

class SimAgent {
 public:
   explicit SimAgent( const Sim::SwitchProfile& profile );
   ~SimAgent();
   SimAgent( const SimAgent& ) = delete;
   SimAgent& operator=( const SimAgent& ) = delete;

   Sim::SimSwitch& simSwitch() { return switch_; }
   const Sim::SimSwitch& simSwitch() const { return switch_; }
   const Halyard::AclHelper::Ptr& helper() const { return helper_; }
   const Halyard::AclSmEntity::Ptr& aclSmEntity() const { return entity_; }
   // The agent's configuration records, which the back-end and the generic machine read.
   const Acl::Config::Ptr& config() const { return config_; }
   const Acl::ParamConfig::Ptr& paramConfig() const { return paramConfig_; }
   const Acl::IntfConfig::Ptr& intfConfig() const { return intfConfig_; }

   // The first act of the generic machine on a new back-end: the one-time bring-up.
   void hwInit();

 private:
   Vesper::ActivityLockGuard activityLock_;
   Sim::SimSwitch switch_;
   Acl::Config::Ptr config_;
   Acl::ParamConfig::Ptr paramConfig_;
   Acl::IntfConfig::Ptr intfConfig_;
   Fennel::FennelCommonSmData::Ptr fcsd_;
   Halyard::AclHelper::Ptr helper_;
   Halyard::AclSmEntity::Ptr entity_;
};

}  // namespace HalyardCli
