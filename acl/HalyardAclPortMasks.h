// The two process-wide port bitmaps of the back-end, filled at hardware bring-up and read by
// all later programming:
//   noPortsMask          a cleared bitmap: as the data of an InPorts key under a full mask it
//                        refuses every port (the port-blocking entries start that way)
//   allPortsMask[unit]   the unit's full port bitmap as the SDK reports it (PBMP_ALL), the mask
//                        of every bcm_field_qualify_InPorts the back-end writes
//
// Units index a fixed table, so that a read inside an SDK call (with the activity lock given
// up) touches no structure that could change under it. A unit at or beyond maxUnits stops the
// process. Threads: written by bring-up on the activity thread, read there afterwards.
#pragma once

#include <array>

#include "platform/shim/BcmTypes.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class UnitPortMasks {
 public:
   // More units than any system of these chips has.
   static constexpr U32 maxUnits = 64;

   // REQUIRES: unit < maxUnits.
   bcm_pbmp_t& operator[]( U32 unit );
   const bcm_pbmp_t& operator[]( U32 unit ) const;

 private:
   std::array<bcm_pbmp_t, maxUnits> masks_{};
};

extern UnitPortMasks allPortsMask;
extern bcm_pbmp_t noPortsMask;

}  // namespace Halyard
