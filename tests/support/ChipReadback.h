// Reading the back-end's work out of the chip model: which entries stand in which TCAM group,
// in lookup order, and what an entry holds.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipModel.h"
#include "sim/chip/ChipTypes.h"

namespace HalyardTest {

// The entries of the group of `a`, in lookup order (installed or not).
std::vector<U32> groupEntries( const Sim::ChipModel& chip, Halyard::TcamGroupAssignment a );
// The same, only those installed.
std::vector<U32> installedEntries( const Sim::ChipModel& chip, Halyard::TcamGroupAssignment a );
// Every entry of every group of the chip, group by group.
std::vector<U32> chipEntries( const Sim::ChipModel& chip );
// The TCAM group assignment whose group holds the entry; nullopt for an unknown entry.
std::optional<Halyard::TcamGroupAssignment> groupOf( const Sim::ChipModel& chip, U32 entry );

// A numeric qualifier's data and mask, or nullopt when the entry lacks it.
struct NumericQual {
   U64 data = 0;
   U64 mask = 0;
   friend bool operator==( const NumericQual&, const NumericQual& ) = default;
};
std::optional<NumericQual> numericQual( const Sim::ChipModel& chip, U32 entry, Sim::QualId q );

// The port's field-processor classes, ingress and egress.
U32 ingressClass( const Sim::ChipModel& chip, U32 port );
U32 egressClass( const Sim::ChipModel& chip, U32 port );
// The bit of the port table (or L-port table) row that makes the port take its class from
// the port table's group id; nullopt while nothing wrote it.
std::optional<U32> portTableBit( const Sim::ChipModel& chip, U32 port, bool lport );

// The entry's dump, for failure messages.
std::string entryText( const Sim::ChipModel& chip, U32 entry );

}  // namespace HalyardTest
