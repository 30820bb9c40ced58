// The terms of a configured rule that no entry of the back-end can carry. The generic layer
// refuses an ACL with such a rule before it touches the hardware, and says why: programming
// the rule without the term would match more packets than the operator wrote.
//
// Refused, with the text returned:
//   MAC     VLAN, inner VLAN and MPLS label terms; a payload term on an egress ACL
//   IP      VLAN, VNI and TNI terms; TTL operators other than eq; an ICMP code without a type;
//           ICMP terms on a protocol other than icmp and icmpv6; port terms on a protocol other
//           than tcp and udp; TCP flags on a protocol other than tcp or beyond the back-end's
//           supported flags; IP length terms on an egress ACL (they need range checkers,
//           which egress lookups lack); a payload term on an IPv6 or an egress ACL, or one
//           whose word lies beyond byte 255 of its header
#pragma once

#include <optional>
#include <string>

#include "platform/acl/AclTypes.h"
#include "platform/acl/RuleConfig.h"
#include "platform/vesper/Types.h"

namespace Fennel {

// Why the rule cannot be programmed, or nullopt when it can. Remarks always can.
std::optional<std::string> ruleRefusal( const Acl::RuleConfig& rule, Acl::AclDirection direction,
                                        U8 supportedTcpFlags );

}  // namespace Fennel
