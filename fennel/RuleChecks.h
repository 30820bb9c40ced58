// What the back-end cannot program: ACL kinds it does not serve, and terms of a configured rule
// that no entry of it can carry. The generic layer refuses such a list before it touches the
// hardware, and says why: programming a rule without one of its terms would match more packets
// than the operator wrote.
//
// Refused, with the text returned:
//   kinds   a type or direction (or a router ACL) whose capability flag the back-end leaves off
//   MAC     VLAN, inner VLAN and MPLS label terms
//   IP      VLAN, VNI and TNI terms; TTL operators other than eq; an ICMP code without a type;
//           ICMP terms on a protocol other than icmp and icmpv6; port terms on a protocol other
//           than tcp and udp; TCP flags on a protocol other than tcp or beyond the back-end's
//           supported flags; IP length terms on an egress ACL (they need range checkers,
//           which egress lookups lack)
//   payload on an IPv6 or an egress ACL, or a word beyond byte 255 of its header
//   and every term or action whose capability flag is off: payload, DSCP, traffic class, ECN,
//   IP length, logging, address masks that are no prefix.
#pragma once

#include <optional>
#include <string>

#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"
#include "platform/fennel/AclKey.h"
#include "platform/fennel/FennelAclHelper.h"
#include "platform/vesper/Types.h"

namespace Fennel {

// What the back-end says it can program, from its capability flags.
struct BackEndFeatures {
   U8 tcpFlags = 0x3F;
   bool payload = true;
   bool dscp = true;
   bool trafficClass = true;
   bool ecn = true;
   bool ipLength = true;
   bool logging = true;
   bool nonPrefixMasks = true;

   // For the ACLs of `key` (a router ACL logs by its own flag).
   static BackEndFeatures of( const FennelHelper::AclHelper& helper, const AclKey& key );
};

// Why the back-end cannot serve an ACL of this kind at all, or nullopt.
std::optional<std::string> aclKindRefusal( const FennelHelper::AclHelper& helper,
                                           const AclKey& key );

// Why the rule cannot be programmed, or nullopt when it can. Remarks always can.
std::optional<std::string> ruleRefusal( const Acl::RuleConfig& rule, Acl::AclDirection direction,
                                        const BackEndFeatures& features );

}  // namespace Fennel
