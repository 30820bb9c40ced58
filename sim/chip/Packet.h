// Sim::Packet: one packet as the simulated chip receives it, headers plus the metadata that the
// forwarding stages ahead of the field processor have already decided.
//
// Contract:
//   1. Header fields are plain values in host order (IPv4 addresses as U32, ports as U16); byte
//      arrays (MAC, IPv6) are in network order, first byte the most significant.
//   2. A header the packet does not carry is described by `l3` (no IP), by a non-first fragment
//      (no layer 4 header) or by `ipProtocol` (no known layer 4 header): its fields are then
//      ignored, and the chip sees zeros in their place, as a key builder does for absent headers.
//   3. `wireImage` writes the bytes the packet would have on the wire, which is what the
//      user-defined fields of the chip extract from.
//   4. The builders (`tcp4`, `udp6`, ...) fill a consistent packet: EtherType, protocol and
//      header sizes agree. The `...Is` setters return the packet so that tests read in one line:
//        auto p = Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1024, 80 ).ingressPortIs( 3
//        );
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

using MacAddr = std::array<U8, 6>;
using Ip6Addr = std::array<U8, 16>;

// Text forms for tests and tools; malformed text raises Vesper::ParseException.
U32 ip4( std::string_view dotted );
Ip6Addr ip6( std::string_view text );
MacAddr mac( std::string_view colonHex );

inline constexpr U16 kEtherTypeIpv4 = 0x0800;
inline constexpr U16 kEtherTypeIpv6 = 0x86DD;
inline constexpr U16 kEtherTypeArp = 0x0806;
inline constexpr U16 kTpidDot1q = 0x8100;
inline constexpr U8 kProtoIcmp = 1;
inline constexpr U8 kProtoTcp = 6;
inline constexpr U8 kProtoUdp = 17;
inline constexpr U8 kProtoIcmp6 = 58;
inline constexpr U8 kIp6ExtFragment = 44;

// TCP flag bits as they stand in the header's flags byte.
inline constexpr U8 kTcpFin = 0x01;
inline constexpr U8 kTcpSyn = 0x02;
inline constexpr U8 kTcpRst = 0x04;
inline constexpr U8 kTcpPsh = 0x08;
inline constexpr U8 kTcpAck = 0x10;
inline constexpr U8 kTcpUrg = 0x20;

enum class L3Kind : U8 { None, Ipv4, Ipv6 };

struct VlanTag {
   U16 vid = 0;
   U8 pcp = 0;
   bool dei = false;
};

// Byte positions of the header boundaries in the wire image; absent ones are nullopt.
struct HeaderOffsets {
   std::optional<std::size_t> l3;         // first byte after the EtherType
   std::optional<std::size_t> l4;         // first byte after the IP header(s), IP only
   std::optional<std::size_t> l4Payload;  // first byte after a TCP, UDP or ICMP header
};

struct Packet {
   // Ethernet.
   MacAddr srcMac{ 0x02, 0, 0, 0, 0, 0x01 };
   MacAddr dstMac{ 0x02, 0, 0, 0, 0, 0x02 };
   U16 etherType = 0;  // the EtherType after any tag; the builders set it
   std::optional<VlanTag> outerTag;

   // IP. `ipProtocol` is the IPv4 protocol, or for IPv6 the upper-layer next header that follows
   // the (at most one) extension header.
   L3Kind l3 = L3Kind::None;
   U32 srcIp4 = 0;
   U32 dstIp4 = 0;
   Ip6Addr srcIp6{};
   Ip6Addr dstIp6{};
   U8 ipProtocol = 0;
   std::optional<U8> ip6ExtensionHeader;
   U8 tos = 0;  // IPv4 TOS byte or IPv6 traffic class: DSCP in the top six bits, ECN below
   U8 ttl = 64;
   // IPv4 total length; for IPv6 40 plus the payload length. nullopt: computed from the headers
   // and the payload.
   std::optional<U16> ipTotalLength;
   bool moreFragments = false;
   U16 fragmentOffset = 0;  // in 8-byte units, as in the header

   // Layer 4. For ICMP, type and code stand in their own fields.
   U16 l4SrcPort = 0;
   U16 l4DstPort = 0;
   U8 tcpFlags = 0;
   U8 icmpType = 0;
   U8 icmpCode = 0;
   // VXLAN network id of a packet that arrived in a terminated tunnel.
   std::optional<U32> vni;
   std::vector<U8> payload;

   // Metadata from the stages ahead of the field processor.
   U32 ingressPort = 0;
   U16 vlan = 1;                   // VLAN the packet is bridged in (tag or port default)
   std::optional<U16> egressVlan;  // VLAN it leaves in when routed; nullopt: `vlan`
   bool routed = false;            // L3Routable: it is to be routed
   bool myStationHit = false;      // its destination MAC is one of the router's
   bool higig = false;             // it came in with a HiGig header
   bool toCpu = false;             // forwarding already sends a copy to the CPU
   PortBitmap egressPorts;         // destinations chosen by forwarding
   U32 dstL2Class = 0;             // class of the destination L2 entry
   U32 dstL3Class = 0;             // class of the destination route or host
   U32 srcClass = 0;               // source class before any VFP entry sets one

   // Builders.
   static Packet ethernet( U16 etherType );
   static Packet ipv4( U32 src, U32 dst, U8 protocol );
   static Packet tcp4( U32 src, U32 dst, U16 srcPort, U16 dstPort, U8 flags = 0 );
   static Packet udp4( U32 src, U32 dst, U16 srcPort, U16 dstPort );
   static Packet icmp4( U32 src, U32 dst, U8 type, U8 code );
   static Packet ipv6( const Ip6Addr& src, const Ip6Addr& dst, U8 nextHeader );
   static Packet tcp6( const Ip6Addr& src, const Ip6Addr& dst, U16 srcPort, U16 dstPort,
                       U8 flags = 0 );
   static Packet udp6( const Ip6Addr& src, const Ip6Addr& dst, U16 srcPort, U16 dstPort );
   static Packet icmp6( const Ip6Addr& src, const Ip6Addr& dst, U8 type, U8 code );

   // Fluent setters.
   Packet& ingressPortIs( U32 port );
   Packet& egressPortIs( U32 port );  // unicast: exactly this destination
   Packet& egressPortsIs( const PortBitmap& ports );
   Packet& vlanIs( U16 v );
   Packet& taggedIs( U16 vid, U8 pcp = 0 );  // adds an 802.1Q tag and bridges in its VLAN
   Packet& routedIs( bool r = true );
   Packet& egressVlanIs( U16 v );
   Packet& tosIs( U8 t );
   Packet& ttlIs( U8 t );
   Packet& srcMacIs( const MacAddr& m );
   Packet& dstMacIs( const MacAddr& m );
   // Fragment state; an IPv6 packet gets a fragment extension header for it, and loses it
   // when it is whole again.
   Packet& fragmentIs( bool more, U16 offset );
   Packet& ip6ExtensionHeaderIs( U8 type );
   Packet& payloadIs( std::vector<U8> bytes );
   Packet& ipTotalLengthIs( U16 len );
   Packet& dstL2ClassIs( U32 c );
   Packet& dstL3ClassIs( U32 c );
   Packet& myStationHitIs( bool h = true );
   Packet& higigIs( bool h = true );
   Packet& toCpuIs( bool c = true );
   Packet& vniIs( U32 v );

   // Derived facts.
   bool isIp() const { return l3 != L3Kind::None; }
   bool isFragment() const { return isIp() && ( moreFragments || fragmentOffset != 0 ); }
   bool isLaterFragment() const { return isIp() && fragmentOffset != 0; }
   // A TCP, UDP or ICMP header is present: IP, known protocol, not a later fragment.
   bool hasL4Header() const;
   U8 l4HeaderSize() const;
   U8 l3HeaderSize() const;  // IPv4 20, IPv6 40 plus 8 for an extension header
   U16 ipLength() const;     // ipTotalLength or the computed length
   U16 effectiveEgressVlan() const { return egressVlan.value_or( vlan ); }

   // Writes the wire bytes into `out`, truncated to its size; returns the length written and
   // fills `offsets`. Checksums are left zero: nothing in the chip reads them.
   std::size_t wireImage( std::span<U8> out, HeaderOffsets& offsets ) const;
};

}  // namespace Sim
