// Internal to the configuration reader: the names operators write for numbers (IP protocols,
// TCP and UDP ports, ICMP and ICMPv6 types, EtherTypes, DSCP and ECN values).
#pragma once

#include <optional>
#include <string_view>

#include "platform/vesper/Types.h"

namespace HalyardCli::ConfigText {

inline constexpr U8 kProtoAny = 0;
inline constexpr U8 kProtoIcmp = 1;
inline constexpr U8 kProtoTcp = 6;
inline constexpr U8 kProtoUdp = 17;
inline constexpr U8 kProtoIcmp6 = 58;

// A protocol name other than the "any" words (ip, ipv6) and the ICMP words, which depend on the
// list's family: igmp, tcp, udp, gre, esp, ahp, ospf, pim, vrrp, sctp.
std::optional<U8> ipProtocolNamed( std::string_view name );

// A well-known port of `proto` (tcp or udp): www, bgp, domain, ssh, ntp, snmp, ...
std::optional<U16> portNamed( std::string_view name, U8 proto );
// A few names of `proto`'s ports, for messages.
std::string_view portNameExamples( U8 proto );

// An ICMP (v6: ICMPv6) message name: its type, and its code where the name fixes one.
struct IcmpName {
   std::string_view name;
   U8 type;
   std::optional<U8> code;
};
const IcmpName* icmpNamed( std::string_view name, bool v6 );

std::optional<U16> etherTypeNamed( std::string_view name );
std::optional<U8> dscpNamed( std::string_view name );
std::optional<U8> ecnNamed( std::string_view name );

}  // namespace HalyardCli::ConfigText
