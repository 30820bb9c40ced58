// Ranges of a 16-bit field (a layer 4 port, an IP length) as the field processor can match them.
//
// A TCAM entry compares a field under a mask: value/mask covers every v with
// (v & mask) == (value & mask). Such a set is an aligned block: 2^k consecutive values starting
// at a multiple of 2^k, with mask ~(2^k - 1). An arbitrary range needs a range checker, of which
// a chip has few (and egress lookups none), or several blocks, one entry each.
//
// Invariants of rangeBlocks(low, high):
//  1. The blocks cover [low, high] exactly: every value of the range in one block, no other value
//     in any, and no two blocks overlap.
//  2. They are the fewest aligned blocks that do so, in rising order of value.
//  3. For 16 bits there are at most 30 (the range 1-65534 takes 30).
#pragma once

#include <optional>
#include <vector>

#include "platform/vesper/Types.h"

namespace Fennel {

struct PortBlock {
   U16 value = 0;
   U16 mask = 0;  // bits set are compared

   U16 first() const { return value; }
   U16 last() const { return static_cast<U16>( value | static_cast<U16>( ~mask ) ); }
   bool contains( U16 v ) const { return ( v & mask ) == ( value & mask ); }

   friend bool operator==( const PortBlock&, const PortBlock& ) = default;
};

// The fewest aligned blocks that cover [low, high] exactly. REQUIRES: low <= high.
std::vector<PortBlock> rangeBlocks( U16 low, U16 high );

// The one block that is [low, high], when the range is a single aligned block.
// REQUIRES: low <= high.
std::optional<PortBlock> singleBlock( U16 low, U16 high );

// The ranges of values that a set excludes: the complement of `values` in [0, 65535], as
// inclusive [low, high] pairs in rising order; empty when the values cover everything.
struct PortRange {
   U16 low = 0;
   U16 high = 0;

   friend bool operator==( const PortRange&, const PortRange& ) = default;
};
std::vector<PortRange> complementRanges( std::vector<U16> values );

}  // namespace Fennel
