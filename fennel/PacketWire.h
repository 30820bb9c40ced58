// The bytes a Fennel::Packet has on the wire, laid out as its contract (Packet.h) says, and
// where each header starts in them. Payload matches count their offsets on this image.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "fennel/Packet.h"
#include "platform/vesper/Types.h"

namespace Fennel {

struct WireImage {
   std::vector<U8> bytes;
   std::size_t l3 = 0;               // first byte after the EtherType (the IP header, if any)
   std::optional<std::size_t> l4;    // first byte after the IP header(s); IP, not a later fragment
   std::optional<std::size_t> data;  // first byte after a TCP, UDP or ICMP header

   // The byte at `at`; a byte past the end reads as 0, as the padding of a short frame does.
   U8 byte( std::size_t at ) const { return at < bytes.size() ? bytes[at] : 0; }
};

WireImage wireImage( const Packet& packet );

// The IPv4 total length or the IPv6 payload length (after the fixed header, fragment header
// included), as given or computed from the headers and the payload; 0 for a packet without IP.
U16 ipLength( const Packet& packet );

}  // namespace Fennel
