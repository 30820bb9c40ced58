// ACLs that change, driven through the back-end as the generic layer drives them on a simulated
// switch: interfaces bound with addIntfToAcl (and the interface configuration that says so),
// whole passes (destroyAcl where the ACL stands, precreateAcl, rules in rule order, the closing
// rule, prepareToCommit, commitAcl, updateAclPorts), teardown with destroyAcl and cleanupAcl;
// and what a test reads back: the resource pools of every unit, the rule a packet hit.
//
// REQUIRES: the caller holds the activity lock, and the switch outlives the ACLs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/RuleConfig.h"
#include "platform/fennel/AclData.h"
#include "platform/pylon/IntfId.h"
#include "sim/chip/Packet.h"
#include "sim/switch/SwitchVerdict.h"
#include "tests/support/AgentSwitch.h"

namespace AclLifecycleTest {

// The terms of one IP subrule that the tests use: a destination port under a mask, or a
// destination port range (a range checker on ingress).
struct Terms {
   U16 dstPort = 0;
   U16 dstPortMask = 0;
   U16 dstLow = 0;
   U16 dstHigh = 0;
   bool l4 = false;
};
Terms dstPortEq( U16 port );
Terms dstPortRange( U16 low, U16 high );

// One rule of an ACL: its configuration, and for an IP rule its subrules and whether it gets
// the entry that lets later fragments of a permitted flow through.
struct Rule {
   Acl::RuleConfig config;
   std::vector<Terms> subrules{ Terms{} };
   bool fragmentRule = false;
};

// "deny|permit any from the host", MAC; "permit any any".
Rule macFromHost( Acl::Action action, U8 host );
Rule macAny( Acl::Action action );
// IP rules from a filter, with a fresh unique id.
Rule ipRule( Acl::Action action, const Acl::IpFilter& filter,
             const std::vector<Terms>& subrules = { Terms{} } );
Rule ipRule( Acl::Action action, const Acl::Ip6Filter& filter,
             const std::vector<Terms>& subrules = { Terms{} } );
// Filters on a protocol (0: any) and a source prefix ("10.0.0.0/8", "2001:db8::/32"); any
// destination.
Acl::IpFilter ip4Filter( U8 proto, const std::string& src );
Acl::Ip6Filter ip6Filter( U8 proto, const std::string& src );
// ipRule( action, ip4Filter( proto, src ), subrules ).
Rule ip4( Acl::Action action, U8 proto, const std::string& src,
          const std::vector<Terms>& subrules = { Terms{} } );

// A MAC packet from host `host` (MAC 00:00:00:00:00:host), and IPv4 packets.
Sim::Packet macPacket( U8 host );
Sim::Packet tcpPacket( const std::string& src, U16 dstPort );
Sim::Packet udpPacket( const std::string& src, U16 dstPort );

// The interface name of a front-panel port of the layout, as inject takes it.
std::string intfName( U32 unit, U32 port );

class TestAcl {
 public:
   TestAcl( HalyardTest::AgentSwitch& sw, std::string name, Acl::AclType type,
            Acl::AclDirection direction );

   const Fennel::AclData::Ptr& data() const { return data_; }
   Halyard::HalyardAclData::Ptr records() const;
   Halyard::AclUnitData::Ptr unitData( U32 unit ) const;
   Halyard::AclCommonUnitData::Ptr common( U32 unit ) const;

   // addIntfToAcl, with the binding in the interface configuration; the reapply answer.
   bool bound( Pylon::IntfId intf );
   // removeIntfFromAcl, and the binding gone from the interface configuration.
   bool unbound( Pylon::IntfId intf, bool belongsToAnother = false );

   // A whole pass with `rules`, as the generic layer makes it; the last failure of a rule, or 0.
   // The ACL that stands in hardware is destroyed first. updateAclPorts( active ) ends it.
   Fennel::AclCreateError applied( const std::vector<Rule>& rules, bool active = true );
   // The same rules again (a reapply).
   Fennel::AclCreateError reapplied() { return applied( rules_ ); }
   // destroyAcl, then cleanupAcl.
   void removed();

   // The entries of a rule on the unit.
   std::vector<U32> ruleEntries( U32 unit, U32 ruleNum ) const;
   // The rule of this ACL whose entry a stage of the verdict hit; nullopt if none.
   std::optional<U32> ruleHit( const Sim::SwitchVerdict& verdict ) const;
   // The rule of this ACL that holds the entry on the unit; nullopt if none.
   std::optional<U32> ruleOfEntry( U32 unit, U32 entry ) const;

 private:
   HalyardTest::AgentSwitch& sw_;
   Fennel::AclData::Ptr data_;
   std::vector<Rule> rules_;
   U32 version_ = 0;
};

// Every pool the back-end draws from, per unit, as text: each ACL group's entries and slices,
// range checkers and UDF chunks in use, the free ingress and egress interface classes, and
// the VFP port claims. Equal texts mean equal pools. Without `slices`, the slices that groups
// hold are left out.
std::string poolsText( const HalyardTest::AgentSwitch& sw, bool slices = true );

// Takes every free ingress class of the unit, so that ACLs find none; gives them back.
std::vector<U8> ingressClassesTaken( const HalyardTest::AgentSwitch& sw, U32 unit );
void ingressClassesGiven( const HalyardTest::AgentSwitch& sw, U32 unit,
                          const std::vector<U8>& classes );

}  // namespace AclLifecycleTest
