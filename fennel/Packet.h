// Fennel::Packet: one packet as an operator describes it, headers plus where it comes from and
// goes to, in configuration terms (interface names, not chip ports).
//
// It is the input of the reference evaluator and the tool's packet form: the JSON lines of
// `halyard-acl replay` and the decoded frames of a capture read into it one to one. The tool turns
// it into the simulated chip's own packet by the switch's interface-to-port map.
//
// Contract:
//   1. Values are in host order; addresses use the network value types.
//   2. A header the packet does not carry is nullopt. At most one of ipv4 / ipv6, and at most one
//      of tcp / udp / icmp; a later fragment carries no layer 4 header.
//   3. `payload` is the bytes after the last header the packet carries (after the layer 4 header,
//      or after the IP header when there is none, or after Ethernet for a non-IP packet).
//   4. Header lengths on the wire are the usual fixed ones: Ethernet 14 (18 with a tag), IPv4 20,
//      IPv6 40 plus 8 for a fragment header, TCP 20, UDP 8, ICMP 8. A payload match counts its
//      offsets on that layout. A packet with a `vlan` carries an 802.1Q tag (priority 0).
//   5. Header fields the description leaves out have fixed values on the wire (PacketWire.h
//      writes them): IPv4 identification, checksums, TCP sequence and acknowledgement numbers,
//      urgent pointer, IPv6 flow label and fragment identification are 0; the TCP data offset
//      is 5 words and the window 0xFFFF; the UDP length is 8 plus the payload; a first fragment
//      has more-fragments set and offset 0, a later one more-fragments clear and offset
//      laterFragmentOffset.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/pylon/EthAddr.h"
#include "platform/pylon/IntfId.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/Types.h"

namespace Fennel {

// Where a packet stands in fragmentation: whole, first fragment (more-fragments set, offset 0),
// or a later fragment (offset not 0).
enum class Frag : U8 { none = 0, first = 1, later = 2 };

// The fragment offset of a later fragment on the wire, in 8-byte units: 1480 bytes, where the
// second fragment of a packet cut for a 1500-byte MTU starts.
inline constexpr U16 laterFragmentOffset = 185;

struct PacketEth {
   Pylon::EthAddr src;
   Pylon::EthAddr dst;
   U16 type = 0;  // EtherType after any VLAN tag
};

struct PacketIpv4 {
   Pylon::IpAddr src;
   Pylon::IpAddr dst;
   U8 proto = 0;
   U8 dscp = 0;  // 6 bits
   U8 ecn = 0;   // 2 bits
   U8 ttl = 64;
   std::optional<U16> len;  // total length; nullopt: computed from the headers and payload
   Frag frag = Frag::none;
};

struct PacketIpv6 {
   Pylon::Ip6Addr src;
   Pylon::Ip6Addr dst;
   U8 next = 0;  // upper-layer protocol (after the fragment header, if any)
   U8 dscp = 0;
   U8 ecn = 0;
   U8 hlim = 64;
   std::optional<U16> len;  // 40 plus the payload length; nullopt: computed
   Frag frag = Frag::none;
};

// TCP flag bits as they stand in the header's flags byte.
inline constexpr U8 tcpFin = 0x01;
inline constexpr U8 tcpSyn = 0x02;
inline constexpr U8 tcpRst = 0x04;
inline constexpr U8 tcpPsh = 0x08;
inline constexpr U8 tcpAck = 0x10;
inline constexpr U8 tcpUrg = 0x20;

struct PacketL4Ports {
   U16 sport = 0;
   U16 dport = 0;
   U8 flags = 0;  // TCP only: the tcp* bits above
};

struct PacketIcmp {
   U8 type = 0;
   U8 code = 0;
};

struct Packet {
   // Metadata. `in` is the interface the packet arrives on (a front-panel port or port-channel
   // member); `vlan` its VLAN (nullopt: untagged, the port's own); `routed` that forwarding routes
   // it; `out` the interface forwarding chose (nullopt: ingress lookup only).
   Pylon::IntfId in;
   std::optional<U16> vlan;
   bool routed = false;
   std::optional<Pylon::IntfId> out;

   PacketEth eth;
   std::optional<PacketIpv4> ipv4;
   std::optional<PacketIpv6> ipv6;
   std::optional<PacketL4Ports> tcp;
   std::optional<PacketL4Ports> udp;
   std::optional<PacketIcmp> icmp;  // ICMP for IPv4, ICMPv6 for IPv6
   std::vector<U8> payload;

   bool isIp() const { return ipv4 || ipv6; }
   Frag frag() const { return ipv4 ? ipv4->frag : ( ipv6 ? ipv6->frag : Frag::none ); }
};

}  // namespace Fennel
