// The lookup key: the packet's fields laid out in 64-bit words, one slot per key field.
//
// Internal to the chip model. A key field is a physical field of the key; several qualifiers
// may read one (DSCP and Ip6TrafficClass both read the TOS byte, SrcIp6High reads the upper
// word of the source IPv6 address). An entry compiles into (word, mask, value) terms over this
// layout, so that matching a packet is a few word compares with no per-field dispatch.
//
// Invariants:
//   1. No slot straddles a word: a field of 64 bits or fewer lies in one word.
//   2. A slot's bits beyond the field's value are zero in every key.
#pragma once

#include <array>
#include <cstddef>

#include "platform/vesper/Types.h"

namespace Sim {

enum class KeyField : U8 {
   SrcIp6Hi,
   SrcIp6Lo,
   DstIp6Hi,
   DstIp6Lo,
   SrcMac,
   DstMac,
   SrcIp,
   DstIp,
   EgressL3Class,
   Vni,
   OutPort,
   PortClass,
   L2Class,
   L3Class,
   SrcClass,
   DstClass,
   DstClassL2,
   EtherTypeClass,
   IpProtocolClass,
   L4SrcPortClass,
   L4DstPortClass,
   DstIpClassNibble,
   DstIp6ClassNibble,
   EtherType,
   L4SrcPort,
   L4DstPort,
   OuterVlan,
   ForwardingVlan,
   IpProtocol,
   ExtensionHeaderType,
   Tos,
   Ttl,
   TcpControl,
   HiGig,
   L3Routable,
   MyStationHit,
   StpState,
   FragInfo,
   IpTypeFlags,
};
inline constexpr std::size_t kKeyFieldCount = static_cast<std::size_t>( KeyField::IpTypeFlags ) + 1;

struct KeySlot {
   U8 word;
   U8 shift;
   U8 bits;
   constexpr U64 fieldMask() const { return bits == 64 ? ~U64{ 0 } : ( U64{ 1 } << bits ) - 1; }
};

namespace KeyLayout {

// Field widths in bits, indexed by KeyField, in declaration order (widest first packs best).
inline constexpr std::array<U8, kKeyFieldCount> kBits{
    64, 64, 64, 64,                         // IPv6 addresses, two words each
    48, 48,                                 // MAC addresses
    32, 32, 32, 32, 32,                     // IPv4 addresses, egress L3 class, VNI, out port
    32, 32, 32, 32, 32, 32,                 // port, L2, L3, source, destination, dest L2 class
    32, 32, 32, 32, 32, 32,                 // compression classes
    16, 16, 16, 16, 16,                     // EtherType, L4 ports, VLANs
    8,  8,  8,  8,  8,  8,  8, 8, 8, 8, 8,  // bytes and flags
};

static_assert( kBits[kKeyFieldCount - 1] == 8, "one width per key field" );

struct Layout {
   std::array<KeySlot, kKeyFieldCount> slots{};
   std::size_t words = 0;
};

// Packs the fields in order, opening a new word when the next field does not fit.
constexpr Layout pack() {
   Layout l;
   unsigned word = 0;
   unsigned used = 0;
   for ( std::size_t f = 0; f < kKeyFieldCount; ++f ) {
      if ( used + kBits[f] > 64 ) {
         ++word;
         used = 0;
      }
      l.slots[f] = KeySlot{ static_cast<U8>( word ), static_cast<U8>( used ), kBits[f] };
      used += kBits[f];
   }
   l.words = word + 1;
   return l;
}

inline constexpr Layout kLayout = pack();
inline constexpr std::size_t kWords = kLayout.words;

constexpr const KeySlot& slot( KeyField f ) {
   return kLayout.slots[static_cast<std::size_t>( f )];
}

}  // namespace KeyLayout

// One packet's key as one stage sees it.
struct Key {
   std::array<U64, KeyLayout::kWords> words{};

   // REQUIRES: value fits the field; bits beyond it are cut.
   void put( KeyField f, U64 value ) {
      const KeySlot& s = KeyLayout::slot( f );
      U64& w = words[s.word];
      w = ( w & ~( s.fieldMask() << s.shift ) ) | ( ( value & s.fieldMask() ) << s.shift );
   }
   U64 get( KeyField f ) const {
      const KeySlot& s = KeyLayout::slot( f );
      return ( words[s.word] >> s.shift ) & s.fieldMask();
   }
};

// Encodings of the two derived key fields.
namespace FragBits {
inline constexpr U64 kFirst = 1;     // more-fragments set, offset 0
inline constexpr U64 kNotFirst = 2;  // offset not 0
inline constexpr U64 kFragment = 4;  // either of the two
}  // namespace FragBits

namespace IpTypeBits {
inline constexpr U64 kIpv4 = 1;
inline constexpr U64 kIpv6 = 2;
inline constexpr U64 kIp = 4;
inline constexpr U64 kIp6ExtHdr = 8;
inline constexpr U64 kArp = 16;
}  // namespace IpTypeBits

}  // namespace Sim
