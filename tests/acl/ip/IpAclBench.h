// IP ACLs driven through the back-end as the generic layer drives them, on a simulated switch:
// bound to ports, pre-created, rule by rule (each rule one or more subrules, rule numbers dense
// from 0), closed, committed; then packets pushed through the switch.
//
// REQUIRES: the caller holds the activity lock, and the switch outlives the ACL.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/RuleConfig.h"
#include "platform/fennel/AclData.h"
#include "platform/pylon/IntfId.h"
#include "sim/chip/Packet.h"
#include "sim/switch/SwitchVerdict.h"
#include "tests/support/AgentSwitch.h"

namespace AclIpTest {

// The terms of one subrule, as createIpAclSubrule takes them.
struct Terms {
   U16 srcPort = 0;
   U16 srcPortMask = 0;
   U16 dstPort = 0;
   U16 dstPortMask = 0;
   U16 srcLow = 0;
   U16 srcHigh = 0;
   U16 dstLow = 0;
   U16 dstHigh = 0;
   U16 ipLen = 0;
   U16 ipLenMask = 0;
   U16 ipLenLow = 0;
   U16 ipLenHigh = 0;
   U8 tcpFlags = 0;
   bool l4 = false;
   U8 ecn = 0;
   U8 ecnMask = 0;
};
Terms dstPortEq( U16 port );
Terms dstPortRange( U16 low, U16 high );
Terms srcPortRange( U16 low, U16 high );
// An exact IP length; the chip needs a checker for it.
Terms ipLengthEq( U16 length );

Pylon::IpAddrWithFullMask v4( std::string_view text );
Pylon::Ip6AddrWithFullMask v6( std::string_view text );
// A rule of the type with a fresh unique id.
Acl::RuleConfig ip4Rule( Acl::Action action, const Acl::IpFilter& filter, bool log = false );
Acl::RuleConfig ip6Rule( Acl::Action action, const Acl::Ip6Filter& filter, bool log = false );
Acl::IpFilter ip4Filter( U8 proto, std::string_view src = "0.0.0.0/0",
                         std::string_view dst = "0.0.0.0/0" );
Acl::Ip6Filter ip6Filter( U8 proto, std::string_view src = "::/0", std::string_view dst = "::/0" );

class IpAcl {
 public:
   // Binds the ACL to the interfaces and pre-creates it.
   IpAcl( HalyardTest::AgentSwitch& sw, std::string name, Acl::AclType type,
          Acl::AclDirection direction, const std::vector<Pylon::IntfId>& intfs,
          bool standard = false );

   const Fennel::AclData::Ptr& aclData() const { return aclData_; }
   Halyard::AclUnitData::Ptr unitData( U32 unit ) const;
   const Halyard::AclCommonUnitData::Ptr& common( U32 unit ) const;

   // The next rule, with its subrules numbered from 0; the last failure of them, or 0.
   Fennel::AclCreateError ruleIs( const Acl::RuleConfig& rule,
                                  const std::vector<Terms>& subrules = { Terms{} } );
   // The fragment rule of the last rule, after its subrules.
   Fennel::AclCreateError fragRuleIs();
   // The closing rule, in the next rule number.
   Fennel::AclCreateError closed();
   // prepareToCommit and commitAcl.
   void committed();
   // ruleIs for each, then closed and committed; every result must be 0.
   void applied( const std::vector<std::pair<Acl::RuleConfig, std::vector<Terms> > >& rules );

   U32 ruleCount() const { return nextRuleNum_; }
   // The entries of a rule's subrule on the unit, in set order.
   std::vector<U32> entries( U32 unit, U32 ruleNum, U32 subRule = 0 ) const;
   // The rule number whose entry the verdict hit in one of this ACL's groups; nullopt if none.
   std::optional<U32> hitRule( const Sim::SwitchVerdict& verdict ) const;

 private:
   HalyardTest::AgentSwitch& sw_;
   Fennel::AclData::Ptr aclData_;
   U32 nextRuleNum_ = 0;
   std::optional<Acl::RuleConfig> lastRule_;
   U32 lastSubrules_ = 0;
};

// The interface name of a front-panel port of the layout, as inject takes it.
std::string intfName( U32 unit, U32 port );

}  // namespace AclIpTest
