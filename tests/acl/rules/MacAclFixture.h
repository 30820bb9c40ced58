// The fixture of the rule tests: a brought-up switch (tests/support), MAC ACLs bound to ports,
// and the pass over an ACL as the generic layer makes it.
//
// Layout unless a test builds its own: units of the given kinds, module u + 1, front-panel ports
// Ethernet(100 u + p) on ports 1 .. 4.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/RuleConfig.h"
#include "platform/fennel/AclData.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/chip/Packet.h"
#include "tests/support/AclRecords.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclRulesTest {

using HalyardTest::intfOf;
using HalyardTest::MacRuleSpec;

// A layout of the given kinds, or one Trident3-class unit.
HalyardTest::SwitchLayout layoutOf( std::vector<std::string> kinds = { "trident3" } );
// Options whose group table gives the groups of `assignments` `capacity` entries each, on a
// switch whose first unit is of `kind`.
HalyardTest::AgentOptions groupsSized( std::string_view kind,
                                       const std::vector<Halyard::TcamGroupAssignment>& assignments,
                                       U32 capacity );

// A packet of the EtherType between the two addresses.
Sim::Packet macPacket( const Pylon::EthAddr& src, const Pylon::EthAddr& dst, U16 etherType );

// The rules of the specs, each with an id of its own.
std::vector<Acl::RuleConfig> rulesOf( const std::vector<MacRuleSpec>& specs );

// The rule a packet meets first in `rules`, as a MAC ACL means it; nullopt: none (the closing
// deny).
std::optional<size_t> firstMatch( const std::vector<MacRuleSpec>& rules, const Sim::Packet& p );

class MacAclFixture : public ::testing::Test {
 protected:
   void build( const HalyardTest::SwitchLayout& layout = layoutOf(),
               const HalyardTest::AgentOptions& options = {} );

   HalyardTest::AgentSwitch& sw() { return *sw_; }
   Halyard::AclHelper& helper() { return *sw_->helper(); }

   // A MAC port ACL of the direction, bound to the interfaces.
   Fennel::AclData::Ptr macAcl( const std::string& name, Acl::AclDirection direction,
                                const std::vector<Pylon::IntfId>& intfs );
   Halyard::AclUnitData::Ptr unitData( const Fennel::AclData::Ptr& acl, U32 unit );
   Halyard::AclCommonUnitData::Ptr common( const Fennel::AclData::Ptr& acl, U32 unit );

   void precreate( const Fennel::AclData::Ptr& acl ) { helper().precreateAcl( acl, nullptr ); }
   // The rules in rule order, numbered from 0, then the closing rule; the last failure of a
   // rule, as the generic layer sees it. A rule keeps its id from pass to pass, as in the
   // configuration.
   Fennel::AclCreateError rulesCreated( const Fennel::AclData::Ptr& acl,
                                        const std::vector<Acl::RuleConfig>& rules );
   // A whole pass: precreate, rules, prepareToCommit, commit.
   Fennel::AclCreateError applied( const Fennel::AclData::Ptr& acl,
                                   const std::vector<Acl::RuleConfig>& rules );

   // The entries of rule `ruleNum` of the ACL on the unit.
   std::vector<U32> ruleEntries( const Fennel::AclData::Ptr& acl, U32 unit, U32 ruleNum );

   // The rule of the ACL on the unit whose entry a group hit in `v` (for `egressPort` in EFP);
   // nullopt when no entry of the ACL was hit.
   std::optional<U32> ruleHit( const Fennel::AclData::Ptr& acl, U32 unit, const Sim::Verdict& v,
                               std::optional<U32> egressPort = std::nullopt );

   Vesper::ActivityLockGuard activity_;
   HalyardTest::CleanProcessState clean_;
   std::unique_ptr<HalyardTest::AgentSwitch> sw_;
};

}  // namespace AclRulesTest
