// What the TCAM managers may take of one unit's shared field-processor resources: range
// checkers, user-defined field chunks, and bindings in the class compression tables.
//
// of( chip ) gives the chip's own pools; a switch profile or a test lowers them to force
// exhaustion. A limit above the chip's pool is cut to the pool when the unit is added.
#pragma once

#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"

namespace Sim {

// Bindings each compression table can hold. Every class id is a U8, so 256 distinct values
// suffice for the exact tables; prefix tables hold whatever the chip's class memory holds.
struct ClassTableLimits {
   U32 etherType = 256;
   U32 ipProtocol = 256;
   U32 l4SrcPort = 256;
   U32 l4DstPort = 256;
   U32 dstIp = 1024;
   U32 dstIp6 = 1024;
};

struct UnitLimits {
   U32 rangeCheckers = 0;
   // Checkers one entry can carry: one of each kind a subrule can ask for (source port,
   // destination port, IP length).
   U32 rangeCheckersPerEntry = 3;
   U32 udfChunks = 0;
   ClassTableLimits classTables;

   static UnitLimits of( const ChipModel& chip ) {
      UnitLimits limits;
      limits.rangeCheckers = chip.config().rangeCheckers;
      limits.udfChunks = chip.config().udfChunks;
      return limits;
   }
};

}  // namespace Sim
