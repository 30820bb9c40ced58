// The switch of the bring-up tests; what bring-up is to leave in the chip for each management
// entry, and the field-processor command lines it is to write, worked out from the chip kind of
// the unit; and what an entry holds, read back from the chip model.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/halyard/HalyardAclFeature.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipModel.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"
#include "tests/support/TraceLines.h"

namespace AclBringupTest {

using HalyardTest::assertionFailure;
using HalyardTest::catalogKindNames;
using HalyardTest::CleanProcessState;
using HalyardTest::sdkCheckFailure;
using HalyardTest::SwitchLayout;

// The back-end wired on a switch of `layout` but not brought up: bring-up is what these tests
// run. The groups of `missingGroups` are not set up, so their managers are null. Unit u has
// module id u + 1 and front-panel ports Ethernet(100 u + p) on ports 1 .. 4.
class BringupSwitch : public HalyardTest::AgentSwitch {
 public:
   explicit BringupSwitch( const SwitchLayout& layout,
                           const std::vector<Halyard::TcamGroupAssignment>& missingGroups = {} );

   U32 unitCount() const { return static_cast<U32>( units().size() ); }
   U32 frontPanelPorts() const { return layout_.frontPanelPorts; }

   // The ids of the management and port-blocking entries, the same on every unit.
   U32 mgmtEntry( Halyard::AclManagementTcams offset ) const;
   U32 portBlockingEntry( Halyard::AclPortBlockingTcams offset ) const;
   // The ten entries in the order bring-up programs them.
   std::vector<U32> managementEntriesInOrder() const;

 private:
   SwitchLayout layout_;
};

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
