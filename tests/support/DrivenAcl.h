// HalyardTest::DrivenAcl: one ACL driven through the back-end as the generic layer drives it, on
// an AgentSwitch: ports bound (in the records ahead of the first pass, or with addIntfToAcl),
// precreateAcl, rules in rule order (rule numbers dense from 0 per pass; each IP rule one or more
// subrules, and its fragment rule where asked), the closing rule, prepareToCommit, commitAcl,
// updateAclPorts; teardown with destroyAcl and cleanupAcl. Then what a test reads back: the
// ACL's records per unit, the entries of a rule, the rule a packet hit, the resource pools.
//
// Either step by step (precreated, ruleIs, fragRuleIs, closed, committed) or a whole pass
// (applied, which destroys first where the ACL stands, as a reapply does).
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
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/IntfId.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "sim/chip/Packet.h"
#include "sim/chip/Verdict.h"
#include "sim/switch/SwitchVerdict.h"
#include "tests/support/AgentSwitch.h"

namespace HalyardTest {

// The terms of one IP subrule, as createIpAclSubrule takes them.
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
// Ranges take a range checker on ingress.
Terms dstPortRange( U16 low, U16 high );
Terms srcPortRange( U16 low, U16 high );
// An exact IP length; the chip needs a checker for it.
Terms ipLengthEq( U16 length );

// One rule of a pass: its configuration, and for an IP rule its subrules and whether it gets
// the entry that lets later fragments of a permitted flow through.
struct Rule {
   Acl::RuleConfig config;
   std::vector<Terms> subrules{ Terms{} };
   bool fragmentRule = false;
};

Pylon::IpAddrWithFullMask v4( std::string_view text );
Pylon::Ip6AddrWithFullMask v6( std::string_view text );
Acl::IpFilter ip4Filter( U8 proto, std::string_view src = "0.0.0.0/0",
                         std::string_view dst = "0.0.0.0/0" );
Acl::Ip6Filter ip6Filter( U8 proto, std::string_view src = "::/0", std::string_view dst = "::/0" );
// Rules with a fresh configured unique id (top bit clear), as the configuration gives them.
Acl::RuleConfig ip4Rule( Acl::Action action, const Acl::IpFilter& filter, bool log = false );
Acl::RuleConfig ip6Rule( Acl::Action action, const Acl::Ip6Filter& filter, bool log = false );
Rule ipRule( Acl::Action action, const Acl::IpFilter& filter,
             const std::vector<Terms>& subrules = { Terms{} } );
Rule ipRule( Acl::Action action, const Acl::Ip6Filter& filter,
             const std::vector<Terms>& subrules = { Terms{} } );
// ipRule( action, ip4Filter( proto, src ), subrules ).
Rule ip4( Acl::Action action, U8 proto, std::string_view src,
          const std::vector<Terms>& subrules = { Terms{} } );
// "deny|permit any from the host" (MAC 00:00:00:00:00:host), MAC; "permit any any".
Rule macFromHost( Acl::Action action, U8 host );
Rule macAny( Acl::Action action );

// A MAC packet from host `host`; one of the EtherType between two addresses; IPv4 packets.
Sim::Packet macPacket( U8 host );
Sim::Packet macPacket( const Pylon::EthAddr& src, const Pylon::EthAddr& dst, U16 etherType );
Sim::Packet tcpPacket( const std::string& src, U16 dstPort );
Sim::Packet udpPacket( const std::string& src, U16 dstPort );

// The interface name of a front-panel port of the layout, as inject takes it.
std::string intfName( U32 unit, U32 port );

class DrivenAcl {
 public:
   // Nothing bound, nothing programmed.
   DrivenAcl( AgentSwitch& sw, std::string name, Acl::AclType type, Acl::AclDirection direction,
              bool standard = false );
   // Bound to the ports in the records (portsBound) and pre-created.
   DrivenAcl( AgentSwitch& sw, std::string name, Acl::AclType type, Acl::AclDirection direction,
              const std::vector<Pylon::IntfId>& ports, bool standard = false );

   const Fennel::AclData::Ptr& data() const { return data_; }
   Halyard::HalyardAclData::Ptr records() const;
   Halyard::AclUnitData::Ptr unitData( U32 unit ) const;
   Halyard::AclCommonUnitData::Ptr common( U32 unit ) const;

   // Puts the ports on the ACL's unit records as binding does ahead of the first pass (bindPort).
   void portsBound( const std::vector<Pylon::IntfId>& ports );
   // addIntfToAcl, with the binding in the interface configuration; the reapply answer.
   bool bound( Pylon::IntfId intf );
   // removeIntfFromAcl, and the binding gone from the interface configuration.
   bool unbound( Pylon::IntfId intf, bool belongsToAnother = false );

   // ---- A pass step by step. precreateAcl; rule numbers start again from 0.
   Fennel::AclCreateError precreated();
   // The next rule (a MAC rule, or an IP rule's subrules numbered from 0); the last failure, or 0.
   Fennel::AclCreateError ruleIs( const Acl::RuleConfig& rule,
                                  const std::vector<Terms>& subrules = { Terms{} } );
   // The fragment rule of the last rule, after its subrules.
   Fennel::AclCreateError fragRuleIs();
   // The closing rule, in the next rule number.
   Fennel::AclCreateError closed();
   // prepareToCommit and commitAcl.
   void committed();
   // ruleIs for each rule, then closed; the closing rule's failure, else the last rule's.
   Fennel::AclCreateError rulesCreated( const std::vector<Acl::RuleConfig>& rules );
   // precreated, rulesCreated, committed.
   Fennel::AclCreateError firstPass( const std::vector<Acl::RuleConfig>& rules );
   // After precreated: ruleIs (and fragRuleIs) for each, closed, committed; each must succeed.
   void rulesCommitted( const std::vector<Rule>& rules );

   // ---- Whole passes. The ACL that stands in hardware is destroyed first; updateAclPorts(
   // active ) ends the pass. The last failure of a rule, or 0.
   Fennel::AclCreateError applied( const std::vector<Rule>& rules, bool active = true );
   Fennel::AclCreateError reapplied() { return applied( rules_ ); }
   // destroyAcl, then cleanupAcl.
   void removed();

   U32 ruleCount() const { return nextRuleNum_; }
   // The entries of a rule's subrule on the unit, in set order; of all its subrules.
   std::vector<U32> entries( U32 unit, U32 ruleNum, U32 subRule = 0 ) const;
   std::vector<U32> ruleEntries( U32 unit, U32 ruleNum ) const;
   // The rule of this ACL that holds the entry on the unit; nullopt if none.
   std::optional<U32> ruleOfEntry( U32 unit, U32 entry ) const;
   // The rule of this ACL whose entry a stage of the switch's verdict hit; nullopt if none.
   std::optional<U32> ruleHit( const Sim::SwitchVerdict& verdict ) const;
   // The same for one chip's verdict on the unit (for `egressPort` in EFP).
   std::optional<U32> ruleHitIn( U32 unit, const Sim::Verdict& verdict,
                                 std::optional<U32> egressPort = std::nullopt ) const;

 private:
   AgentSwitch* sw_;
   Fennel::AclData::Ptr data_;
   std::vector<Rule> rules_;
   U32 version_ = 0;
   U32 nextRuleNum_ = 0;
   std::optional<Acl::RuleConfig> lastRule_;
   U32 lastSubrules_ = 0;
};

// Every pool the back-end draws from, per unit, as text: each ACL group's entries (in the
// manager and in the chip), its capacity and slices and the stages' free slices, range checkers
// and UDF chunks in use, the free ingress and egress interface classes, the VFP port claims and
// the ports' field-processor classes. Equal texts mean equal pools. Without `slices`, capacity
// and slices are left out.
std::string poolsText( const Sim::SimSwitch& sim, const Halyard::AclHelper& helper,
                       bool slices = true );
std::string poolsText( const AgentSwitch& sw, bool slices = true );

// Takes every free ingress class of the unit, so that ACLs find none; gives them back.
std::vector<U8> ingressClassesTaken( const AgentSwitch& sw, U32 unit );
void ingressClassesGiven( const AgentSwitch& sw, U32 unit, const std::vector<U8>& classes );

}  // namespace HalyardTest
