// Switch profiles for tests, built from a list of chip kinds rather than written out.
//
// A layout's unit u is of kinds[u], has module id u + firstModule (so that a test tells a
// module from a unit) and front-panel ports EthernetN on ports 1 .. frontPanelPorts, N being
// 100 u + port. Units of a kind outside the catalog go in SwitchOptions::unitKinds (see
// customKind); the layout names the catalog kind they derive from.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/pylon/IntfId.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Types.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/switch/SimSwitch.h"
#include "sim/switch/SwitchProfile.h"
#include "sim/tcam/GroupTable.h"

namespace HalyardTest {

struct SwitchLayout {
   SwitchLayout( std::vector<std::string> kinds = { "trident3" } ) : kinds( std::move( kinds ) ) {}

   std::vector<std::string> kinds;  // one unit per name of the chip catalog
   U32 frontPanelPorts = 4;
   U16 firstModule = 1;
   bool fabric = false;
   bool egressFilterPerPort = false;
   bool vlanBlocking = false;
};

Sim::SwitchProfile profileOf( const SwitchLayout& layout );

// The interface the layout puts on a port.
Pylon::IntfId intfOf( U32 unit, U32 port );

// Every kind name of the chip catalog, in catalog order.
std::vector<std::string> catalogKindNames();
// REQUIRES: `name` names a kind of the catalog (the process stops otherwise).
const Sim::ChipKind& catalogKind( std::string_view name );

// A kind of the test's own: a copy of the catalog kind `base`, renamed, with a ChipInfo no
// catalog kind has (chip type 0xd000 + `tag`). Change its capacities, probes or attributes, then
// give it to SwitchOptions::unitKinds.
Sim::ChipKind customKind( std::string_view base, std::string name, U16 tag );

// The group table a switch of one unit of `kind` gets.
Sim::GroupTable groupTableOf( const Sim::ChipKind& kind );
// The same, with the capacity of the groups of `assignments` set to `capacity` entries.
Sim::GroupTable groupTableWith( const Sim::ChipKind& kind,
                                const std::vector<Halyard::TcamGroupAssignment>& assignments,
                                U32 capacity );
// The same, without the groups of `assignments`: their managers are null.
Sim::GroupTable groupTableWithout( const Sim::ChipKind& kind,
                                   const std::vector<Halyard::TcamGroupAssignment>& assignments );

}  // namespace HalyardTest
