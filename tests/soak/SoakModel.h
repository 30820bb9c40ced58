// The churn soak's picture of the configuration: access lists of every kind with their rules,
// and the bindings of lists to front-panel interfaces, written out in the tool's configuration
// language so that a failing step can be replayed with `halyard-acl apply`.
//
// Each list serves one direction only (its name says which): payload terms are served on
// ingress lists only, so a list that carries them is never bound on egress, where the generic
// layer would refuse it and keep its older version standing.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "platform/acl/AclTypes.h"
#include "platform/vesper/Types.h"

namespace Soak {

enum class Family : U8 { mac, ip4, ip6 };

struct PortTerm {
   enum class Op : U8 { none, eq, neq, gt, lt, range };
   Op op = Op::none;
   std::vector<U16> ports;  // eq: one to three; range: low, high; others: one
};

// An address prefix of either family, in network order; len 0 is "any".
struct Prefix {
   std::array<U8, 16> bytes{};
   U8 len = 0;
};

// One 32-bit word of payload, counted in words from the start or the end of the list's header.
struct Payload {
   bool headerStart = false;
   U8 word = 0;
   U32 pattern = 0;
   U32 mask = 0;
};

struct Rule {
   bool permit = true;
   // IP rules. proto 0 is "ip" (every protocol).
   U8 proto = 0;
   Prefix src;
   Prefix dst;
   PortTerm sport;
   PortTerm dport;
   bool fragments = false;
   std::optional<U8> icmpType;
   // MAC rules: addresses with masks (bits set are compared), EtherType.
   U64 macSrc = 0;
   U64 macSrcMask = 0;
   U64 macDst = 0;
   U64 macDstMask = 0;
   std::optional<U16> etherType;
   std::optional<Payload> payload;
};

struct List {
   Family family = Family::ip4;
   Acl::AclDirection direction = Acl::AclDirection::in;
   std::map<U32, Rule> rules;  // by sequence number
};

// (interface name, family, direction): one list at most, as on a switch.
using BindingKey = std::tuple<std::string, Family, Acl::AclDirection>;

struct Model {
   std::map<std::string, List> lists;
   std::map<BindingKey, std::string> bindings;

   // The configuration in the tool's language, settings first.
   std::string text() const;
};

const char* familyWord( Family f );  // "mac", "ip", "ipv6"
U32 addressBytes( Family f );        // 4 or 16
std::string ruleText( Family family, U32 seq, const Rule& rule );

}  // namespace Soak
