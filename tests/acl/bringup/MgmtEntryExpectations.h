// What bring-up is to leave in the chip for each management entry, and the field-processor
// command lines it is to write, worked out from the chip kind of the unit; and what an entry
// holds, read back from the chip model.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/chip/ChipModel.h"
#include "tests/acl/bringup/BringupSwitch.h"

namespace AclBringupTest {

using QualMap = std::map<Sim::QualId, std::pair<U64, U64> >;
using ActionMap = std::map<Sim::ActionId, Sim::ActionParams>;

struct EntryFace {
   QualMap quals;  // every numeric qualifier the entry holds: data, mask
   std::optional<Sim::InPortsValue> inPorts;
   ActionMap actions;  // every action with parameters
   std::map<Sim::ActionId, Sim::PortBitmap> portActions;
   friend bool operator==( const EntryFace&, const EntryFace& ) = default;
};

struct ExpectedEntry {
   U32 id = 0;
   std::string purpose;
   EntryFace face;
   bool permanent = false;  // the manager keeps its port key as it is
   bool installed = false;
};

// What the entry holds in the chip of `unit`.
EntryFace entryFace( Sim::ChipModel& chip, U32 entry );

// The ten entries of `unit`, in programming order.
std::vector<ExpectedEntry> expectedEntries( BringupSwitch& sw, U32 unit, bool mirrorOnDrop,
                                            bool install );

// The "fp ..." lines of the ten entries of `unit`, in order.
std::vector<std::string> expectedFpLines( BringupSwitch& sw, U32 unit, bool mirrorOnDrop,
                                          bool install );

// A readable form for failure messages.
std::string faceText( const EntryFace& face );

}  // namespace AclBringupTest
