// Fennel::Evaluator: the reference evaluator. Given the configuration (the lists, the bindings
// and the hardware access-list settings) and a packet, it says what the configuration means for
// the packet: which ACLs apply, which rule of each matches first, and the verdict.
//
// It is written from the meaning of the configuration alone. It never reads what the back-end
// programmed, nor the subrule splitting of the generic layer, so that comparing its answer with
// the hardware's catches either of them.
//
// Meaning, as the operator reads a configuration:
//  1. ACLs that apply. On ingress: the ACLs bound in to the packet's interface `in`, to its
//     port-channel and to its sub-interface (Topology), and the router ACLs bound in to the
//     VLAN interface of the packet's VLAN when the packet is routed. On egress, when the packet
//     has an `out`: the ACLs bound out to it, its port-channel and, when `out` is a VLAN
//     interface, the router ACLs bound out to it for a routed packet. A MAC ACL applies to every
//     packet, an IPv4 ACL to IPv4 packets and an IPv6 ACL to IPv6 packets. A binding that names
//     a list that is not configured applies nothing.
//  2. In each ACL the rules are met in rising sequence number; the first that matches decides.
//     Remarks match nothing, and neither does a rule whose action is neither permit nor deny.
//  3. A rule with layer 4 terms (ports, TCP flags, ICMP type and code) matches only packets that
//     carry the layer 4 header: unfragmented packets and first fragments. In an IPv4 ACL a
//     permit with layer 4 terms, which some packet could meet, also matches later fragments
//     whose addresses, protocol and DSCP meet its terms, since their flow is the one it permits;
//     and `fragments` matches later fragments only (with layer 4 terms it has no effect).
//  4. When no rule matches: an IPv6 ACL lets every ICMPv6 packet pass with the setting
//     defaultTypes, and ICMPv6 neighbour and router solicitations and advertisements (types 133
//     to 136) with neighborDiscovery; everything else is denied (the implicit deny).
//  5. A packet passes only when every ACL that applies permits it.
// Term by term: addresses under their masks; a port, length or TTL term by its operator; TCP
// flags that must all be set; DSCP and ECN on the class-of-service byte; the VLAN under its mask
// (a packet without a VLAN has VLAN 0); a payload word under its mask at its offset, counted
// from the start or the end of the ACL's own header (Ethernet for MAC, IP for IP ACLs) on the
// packet's wire image (PacketWire.h), a later fragment having no end of the IP header to count
// from. The IP length is the IPv4 total length and the IPv6 payload length.
//
// Threads: any; an Evaluator reads the configuration it is given and keeps no state.
#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "fennel/Packet.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/AclTypes.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/String.h"

namespace Fennel {

// What the configuration does not say about interfaces: which port-channel a front-panel port
// is a member of, and which sub-interface a port or port-channel has in a VLAN.
struct Topology {
   std::map<Pylon::IntfId, Pylon::IntfId> portChannel;
   std::map<std::pair<Pylon::IntfId, U16>, Pylon::IntfId> subIntf;
};

// Which rule of an ACL decided.
enum class AclDecider : U8 {
   rule,               // the configured rule `seq`
   icmp6Permit,        // the ICMPv6 permit at the end of an IPv6 ACL (defaultTypes)
   neighborDiscovery,  // the neighbour discovery permits at the end of an IPv6 ACL
   implicitDeny,       // nothing matched
};

struct AclVerdict {
   Vesper::Name aclName;
   Acl::AclType type = Acl::AclType::ip;
   Acl::AclDirection direction = Acl::AclDirection::in;
   Pylon::IntfId intf;  // the interface the ACL is bound to
   AclDecider decider = AclDecider::implicitDeny;
   std::optional<U32> seq;  // the sequence number of the deciding rule, for AclDecider::rule
   bool permit = false;
   bool log = false;
};

struct Evaluation {
   // The ACLs that apply, ingress before egress; on each side by interface (port, port-channel,
   // sub-interface, VLAN), and per interface MAC, IPv4, IPv6.
   std::vector<AclVerdict> acls;
   bool permit = true;

   // The verdict of the ACL of this name, type and direction, or null.
   const AclVerdict* acl( const Vesper::Name& name, Acl::AclType type,
                          Acl::AclDirection direction ) const;
};

class Evaluator {
 public:
   Evaluator( Acl::Config::PtrConst config, Acl::IntfConfig::PtrConst intfConfig,
              Acl::ParamConfig::PtrConst paramConfig, Topology topology = {} );

   Evaluation evaluate( const Packet& packet ) const;

   // The verdict of one list for a packet, as if it applied: for the tests and the tool's
   // explanations. REQUIRES: the list's type applies to the packet (MAC, or the packet's family).
   AclVerdict evaluateAcl( const Acl::AclConfig& acl, Acl::AclDirection direction,
                           const Packet& packet ) const;

 private:
   void applyAt( Pylon::IntfId intf, Acl::AclDirection direction, const Packet& packet,
                 Evaluation& out ) const;

   Acl::Config::PtrConst config_;
   Acl::IntfConfig::PtrConst intfConfig_;
   Acl::ParamConfig::PtrConst paramConfig_;
   Topology topology_;
};

}  // namespace Fennel
