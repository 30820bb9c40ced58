// Sim::ChipKind and the chip catalog: the kinds of switch chip that the simulated switch can
// be built from, with their capacities, the SDK's chip probes and the chip attributes.
//
// Contract:
//   1. The catalog is fixed for the life of the process; references into it stay valid.
//      Names and ChipInfo values are unique.
//   2. Between them the kinds answer every chip probe (isChipGroupA..F) and every member of
//      HalyardCentral::ChipAttributes both yes and no, so that every branch of the library
//      that hangs on one of them can be driven on some kind.
//   3. Port numbering of a unit: ports 0 .. portCount-1; port 0 is the CPU port, the others
//      front-panel ports, of which the last hiGigPorts are HiGig (stacking) ports where the
//      chip has any.
//   4. Capacities are per pipe: an ACL entry is programmed on every pipe (global mode), so a
//      pipe's slices are what one unit offers. A slice's count is of narrow (single-width)
//      entries; a wide (double-width) entry takes two narrow rows.
//
// The values are of the same order as the chip generations they are named after; they are
// the simulation's own choice, made so that scale tests meet realistic limits.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/tcam/ChipAttributes.h"
#include "platform/tcam/ChipInfo.h"
#include "platform/tcam/HalyardAttributes.h"
#include "platform/vesper/Ptr.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"

namespace Sim {

// The yes-or-no facts of the SDK's chip probes.
struct ChipProbes {
   bool groupA = false;
   bool groupB = false;
   bool groupC = false;
   bool groupD = false;
   bool groupE = false;
   bool groupF = false;
};

struct ChipKind {
   std::string name;         // what switch profiles name it by: "tomahawk3"
   std::string description;  // "Tomahawk3-class"
   HalyardCentral::ChipInfo chipInfo;
   U32 portCount = 0;
   U32 hiGigPorts = 0;
   U32 pipes = 1;
   StageSlices ifp;
   StageSlices vfp;
   StageSlices efp;
   U32 rangeCheckers = 0;
   U32 udfChunks = 0;
   ChipProbes probes;
   U32 attributeBits = 0;  // bit n: member n of HalyardCentral::ChipAttribute holds

   bool attribute( HalyardCentral::ChipAttribute a ) const {
      return ( attributeBits >> static_cast<U32>( a ) ) & 1u;
   }
   // The chip model of one unit of this kind.
   ChipConfig chipConfig( S32 moduleId ) const;
};

// Every kind, in a fixed order.
std::span<const ChipKind> chipCatalog();
// The kind of that name, or null.
const ChipKind* chipKindByName( std::string_view name );
// The kind of that chip type, or null.
const ChipKind* chipKindOf( const HalyardCentral::ChipInfo& chip );

// The chip table row of a kind: what the platform installs in HalyardAttributes.
Vesper::Ptr<HalyardCentral::ChipAttributes> chipAttributesOf( const ChipKind& kind );
// Installs the row of every kind of the catalog in `attrs`, keyed by its ChipInfo.
void chipTableFill( HalyardCentral::HalyardAttributes& attrs );

}  // namespace Sim
