// Replaying packets through the programmed switch: the hardware's answer for each packet, the
// rule each ACL's hit entry serves (named by its configured sequence number), and, when asked,
// the reference evaluator's answer beside it.
//
// From a hardware hit to an ACL rule: the hit entry of each group in the chip's verdict, the
// back-end's records of which ACL rule and subrule holds that entry (Fennel::EntryOwners), the
// rule number's origin in the generic layer's state (a configured sequence number, a neighbour
// discovery permit, or the closing rule). Entries that no ACL record holds are the back-end's
// hidden ones and name no ACL.
//
// REQUIRES: the switch is not programmed again while a Replayer lives (the owners are read
// once, when it is made).
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/switch/AclSwitch.h"
#include "fennel/Evaluator.h"
#include "fennel/GenericAclSm.h"
#include "fennel/HalyardView.h"
#include "fennel/Packet.h"

namespace HalyardCli {

// The rule of an ACL that the hardware hit, on the unit that looked the packet up.
struct AclHit {
   Fennel::AclKey key;
   U32 unit = 0;
   Fennel::RuleOrigin origin;
};

struct HardwareAnswer {
   bool permit = false;
   bool ingressPermit = false;       // no VFP or IFP drop on the ingress unit
   std::vector<std::string> egress;  // interfaces the packet leaves by
   bool cpu = false;                 // a copy goes to the CPU
   std::vector<AclHit> hits;         // ingress unit first, then the egress unit
};

struct PacketOutcome {
   U32 number = 0;  // 1-based, in input order
   HardwareAnswer hardware;
   std::optional<Fennel::Evaluation> reference;  // with a check
   bool agree = true;
   std::string difference;  // empty when they agree
};

// Hits of one ACL's rules.
struct RuleHits {
   std::map<U32, U64> bySeq;  // configured rules
   U64 neighborDiscovery = 0;
   U64 closing = 0;
};

struct ReplayTotals {
   U32 packets = 0;
   U32 permit = 0;
   U32 deny = 0;
   U32 cpu = 0;
   U32 disagree = 0;
   std::vector<U32> differing;  // packet numbers, the first few
   std::map<Fennel::AclKey, RuleHits> hits;
};

class Replayer {
 public:
   // `check`: compare every packet with the reference evaluator of the configuration applied
   // last.
   Replayer( AclSwitch& sw, bool check );

   PacketOutcome replay( const Fennel::Packet& packet );
   const ReplayTotals& totals() const { return totals_; }

 private:
   HardwareAnswer inject( const Fennel::Packet& packet );
   void addHits( U32 unit, const Sim::Verdict& verdict, std::vector<AclHit>& out ) const;
   void count( const PacketOutcome& outcome );

   AclSwitch& sw_;
   Fennel::EntryOwners owners_;
   std::optional<Fennel::Evaluator> evaluator_;
   ReplayTotals totals_;
};

// Where the hardware and the reference part on a packet, naming both answers and the rule each
// side chose; empty when they agree. An egress ACL counts only when the packet got past
// ingress.
std::string difference( const HardwareAnswer& hardware, const Fennel::Evaluation& reference );

// "rule 20", "closing rule", "neighbour discovery permit".
std::string originText( const Fennel::RuleOrigin& origin );
// The hardware's rule that stands for the evaluator's decision in one ACL: the implicit deny
// and the ICMPv6 permit at the end of an IPv6 list are both the closing rule's.
Fennel::RuleOrigin originOf( const Fennel::AclVerdict& verdict );

}  // namespace HalyardCli
