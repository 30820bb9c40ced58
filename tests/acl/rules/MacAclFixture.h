// The fixture of the rule tests: a brought-up switch and MAC ACLs bound to its ports, driven with
// the shared HalyardTest::DrivenAcl; the first match of MAC rules that the tests expect.
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
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclRulesTest {

using HalyardTest::intfOf;
using HalyardTest::macPacket;
using HalyardTest::MacRuleSpec;

// A layout of the given kinds, or one Trident3-class unit.
HalyardTest::SwitchLayout layoutOf( std::vector<std::string> kinds = { "trident3" } );
// Options whose group table gives the groups of `assignments` `capacity` entries each, on a
// switch whose first unit is of `kind`.
HalyardTest::AgentOptions groupsSized( std::string_view kind,
                                       const std::vector<Halyard::TcamGroupAssignment>& assignments,
                                       U32 capacity );

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

   // A MAC port ACL of the direction, bound to the interfaces in the records; not pre-created.
   HalyardTest::DrivenAcl macAcl( const std::string& name, Acl::AclDirection direction,
                                  const std::vector<Pylon::IntfId>& intfs );

   Vesper::ActivityLockGuard activity_;
   HalyardTest::CleanProcessState clean_;
   std::unique_ptr<HalyardTest::AgentSwitch> sw_;
};

}  // namespace AclRulesTest
