// Internal to the reference evaluator: whether one rule's match terms meet one packet. The
// meaning is the one stated at the head of Evaluator.h.
#pragma once

#include "fennel/Packet.h"
#include "platform/acl/IpFilter.h"
#include "platform/acl/MacFilter.h"
#include "platform/acl/RuleConfig.h"

namespace Fennel::EvaluatorRules {

bool macRuleMatches( const Acl::MacFilter& filter, const Packet& packet );

// REQUIRES: packet.ipv4.
bool ipv4RuleMatches( const Acl::IpRuleConfig& rule, const Packet& packet );

// REQUIRES: packet.ipv6.
bool ipv6RuleMatches( const Acl::Ip6RuleConfig& rule, const Packet& packet );

// Whether a packet carries a layer 4 header that a term on ports, flags or ICMP can test.
bool hasLayer4Header( const Packet& packet );

}  // namespace Fennel::EvaluatorRules
