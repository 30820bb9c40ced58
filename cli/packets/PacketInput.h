// Packets for replay: JSON lines in the tool's packet form, or pcap and pcapng captures, read
// into Fennel::Packet, the reference evaluator's input.
//
// JSON lines: one object a line, blank lines skipped; fields left out take defaults (no VLAN,
// not routed, no egress interface). cli/README.md lists every field.
// Captures: Ethernet frames, decoded with at most one 802.1Q tag; they carry no interfaces, so
// the defaults give "in" (required) and "out".
//
// Contract:
//  1. An input with any error yields no packets: the readers throw PacketError, whose text
//     names the file and the line ("FILE:LINE: message") for JSON lines, or the file and the
//     packet ("FILE: packet N: message") for captures, and says what was expected. Nothing else
//     escapes from the readers for any input.
//  2. Packets come in one canonical form, whatever the input: a layer 4 header is present
//     exactly when the protocol is TCP, UDP or the family's ICMP and the packet is no later
//     fragment; an IP length equal to what the headers and payload give is left unset. So a
//     capture holding the packets of a JSON-lines file reads to equal packets.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "fennel/Packet.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/Types.h"

namespace HalyardCli {

class PacketError : public std::runtime_error {
 public:
   using std::runtime_error::runtime_error;
};

// Metadata for packets that do not carry their own: every capture packet, and JSON lines
// without "in" or "out".
struct PacketDefaults {
   std::optional<Pylon::IntfId> in;
   std::optional<Pylon::IntfId> out;
   // Whether the switch has the interface a packet names; unset: every well-formed name.
   std::function<bool( Pylon::IntfId )> interfaceExists;
};

// Reads a file of either kind, told apart by the capture formats' magic numbers.
std::vector<Fennel::Packet> readPacketFile( const std::string& path,
                                            const PacketDefaults& defaults );
// The same from bytes in memory; `name` stands for the file in messages.
std::vector<Fennel::Packet> readPackets( std::span<const U8> bytes, std::string_view name,
                                         const PacketDefaults& defaults );

// Each kind on its own.
std::vector<Fennel::Packet> readJsonLines( std::string_view text, std::string_view name,
                                           const PacketDefaults& defaults );
std::vector<Fennel::Packet> readCapture( std::span<const U8> bytes, std::string_view name,
                                         const PacketDefaults& defaults );
bool isCapture( std::span<const U8> bytes );

// One packet object. Throws PacketError with the message alone (no file or line).
Fennel::Packet packetFromJson( const nlohmann::json& object, const PacketDefaults& defaults );
// The packet in the JSON-lines form, every header it carries written out; reads back equal.
nlohmann::ordered_json packetToJson( const Fennel::Packet& packet );

// IPv6 "no next header": what an IPv6 packet without a layer 4 header carries.
constexpr U8 kIp6NoNextHeader = 59;
// The IPv6 extension headers a frame is walked through (hop-by-hop, routing, fragment,
// destination options); never a packet's `next`, which is the protocol after them.
constexpr bool isIp6ExtensionHeader( U8 next ) {
   return next == 0 || next == 43 || next == 44 || next == 60;
}

// One Ethernet frame decoded. Throws PacketError with the message alone.
Fennel::Packet decodeFrame( std::span<const U8> frame, const PacketDefaults& defaults );

// Puts a packet into the canonical form of contract 2. REQUIRES: at most one IP header and at
// most one layer 4 header.
void canonicalise( Fennel::Packet& packet );
// The IP length the headers and payload give: IPv4 total length, or IPv6 40 plus the payload
// length (fragment header included); 0 for a packet without IP.
U32 computedIpLength( const Fennel::Packet& packet );

}  // namespace HalyardCli
