// Internal to the chip model: from a packet and the chip's state to what the entries compare.
//
// The key is built once per packet for the ingress stages and patched for IFP (the source
// class VFP set) and for each egress port (the egress port's class, the port itself, the egress
// VLAN). Range checker results are computed once per packet; user-defined fields are read from
// the packet's wire image, which is built only if an entry asks for one.
#pragma once

#include <array>
#include <cstddef>

#include "sim/chip/ChipResources.h"
#include "sim/chip/ClassTables.h"
#include "sim/chip/EntryRecord.h"
#include "sim/chip/KeyLayout.h"
#include "sim/chip/Packet.h"
#include "sim/chip/PortState.h"

namespace Sim {

struct ChipView {
   const ChipPorts& ports;
   const ChipVlans& vlans;
   const ClassTables& classes;
};

// REQUIRES: p.ingressPort is a port of the chip.
void buildIngressKey( const Packet& p, const ChipView& chip, Key& key );
// Turns an ingress key into the key EFP sees for the copy leaving by `egressPort`.
void egressKeyIs( Key& key, const Packet& p, const ChipView& chip, U32 egressPort );

// One bit per range checker (id - 1) that holds for the packet whose key this is.
U64 rangeHolds( const Packet& p, const Key& key, const RangeCheckers& checkers );

// Reads user-defined fields of one packet; builds the wire image on first use.
class UdfReader {
 public:
   explicit UdfReader( const Packet& p ) : packet_( p ) {}
   bool matches( const UdfTerm& t );
   // The byte `offset` bytes after the start of `base`: 0 past the packet's end, kNoByte
   // where the packet lacks the base header (a chunk then extracts nothing).
   static constexpr U32 kNoByte = 256;
   U32 byteAt( UdfBase base, U32 offset );

 private:
   // Enough for the deepest base (after IPv6, its extension header and TCP) plus the largest
   // offset and length; bytes past the packet's end read as zero.
   static constexpr std::size_t kFrameBytes = 512;
   void build();

   const Packet& packet_;
   bool built_ = false;
   std::size_t length_ = 0;
   HeaderOffsets offsets_;
   std::array<U8, kFrameBytes> frame_;
};

}  // namespace Sim
