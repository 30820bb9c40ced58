#include "fennel/PortBlocks.h"

#include <algorithm>

#include "platform/vesper/Assert.h"

namespace Fennel {

namespace {

// The largest block that starts at `start` and ends at or before `high`. Arithmetic in 32 bits so
// that the block of 65536 values (the whole field) has a size.
U32 largestBlockSize( U32 start, U32 high ) {
   U32 size = start == 0 ? 0x10000 : ( start & -start );  // alignment of the start
   while ( start + size - 1 > high ) {
      size >>= 1;
   }
   return size;
}

}  // namespace

std::vector<PortBlock> rangeBlocks( U16 low, U16 high ) {
   VESPER_ASSERT( low <= high );
   // Greedy from the bottom: the largest aligned block at each start is always part of a minimal
   // cover, because any cover must put `start` in some aligned block inside the range, and the
   // largest such block contains every smaller one that starts there.
   std::vector<PortBlock> blocks;
   U32 start = low;
   while ( start <= high ) {
      const U32 size = largestBlockSize( start, high );
      blocks.push_back( PortBlock{ static_cast<U16>( start ), static_cast<U16>( ~( size - 1 ) ) } );
      start += size;
   }
   return blocks;
}

std::optional<PortBlock> singleBlock( U16 low, U16 high ) {
   VESPER_ASSERT( low <= high );
   const U32 size = largestBlockSize( low, high );
   if ( U32{ low } + size - 1 != high ) {
      return std::nullopt;
   }
   return PortBlock{ low, static_cast<U16>( ~( size - 1 ) ) };
}

std::vector<PortRange> complementRanges( std::vector<U16> values ) {
   std::ranges::sort( values );
   std::vector<PortRange> ranges;
   U32 next = 0;  // first value not yet excluded nor covered
   for ( U16 v : values ) {
      if ( v > next ) {
         ranges.push_back( PortRange{ static_cast<U16>( next ), static_cast<U16>( v - 1 ) } );
      }
      next = std::max<U32>( next, U32{ v } + 1 );
   }
   if ( next <= 0xFFFF ) {
      ranges.push_back( PortRange{ static_cast<U16>( next ), 0xFFFF } );
   }
   return ranges;
}

}  // namespace Fennel
