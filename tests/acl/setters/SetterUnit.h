// The switch of the setter tests: one unit of a chip kind, the back-end wired on it and not
// brought up (the setters work on entries the tests take themselves), and short ways to take,
// install and read an entry.
//
// Kinds are those of the catalog, plus "dualclass": a Trident3-class chip with both destination
// class forms, which no catalog kind has, for the cases where the nibble form must win.
//
// REQUIRES: the caller holds the activity lock for the object's life.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/shim/BcmTypes.h"
#include "platform/tcam/ChipAttributes.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipModel.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/TraceLines.h"

namespace AclSettersTest {

using HalyardTest::assertionFailure;
using HalyardTest::checkedCalls;
using HalyardTest::linesStartingWith;
using HalyardTest::sdkCheckFailure;

// The trace handle of the setters' sources.
inline constexpr const char* setterTraceHandle = "Halyard::AclHelper";

// The catalog's kind names, then "dualclass".
std::vector<std::string> chipKindNames();

class SetterUnit : public HalyardTest::AgentSwitch {
 public:
   static constexpr U32 unit = 0;

   // REQUIRES: `kindName` is one of chipKindNames().
   explicit SetterUnit( std::string_view kindName );

   const Sim::ChipKind& kind() const { return AgentSwitch::kind( unit ); }
   bool attribute( HalyardCentral::ChipAttribute a ) const { return kind().attribute( a ); }
   Sim::ChipModel& chip() const { return AgentSwitch::chip( unit ); }
   Sim::SimSdk& sdk() { return sim().sdk(); }
   const Sim::SimTcamGroupManager::Ptr& groupMgr() const { return groupManager(); }
   const Halyard::HalyardCommonSmData::Ptr& hcsd() const { return sim().hcsd(); }

   // A new entry of the group of `a` on the unit.
   U32 newEntry( Halyard::TcamGroupAssignment a );
   // The chip group that holds the entry.
   Sim::GroupId groupOf( U32 entry ) const;
   // Writes the entry to the chip so that packets see it.
   void install( U32 entry );
   // The port key that the entry's manager recorded, and whether it is permanent.
   bcm_pbmp_t portKey( U32 entry ) const;
   bool portKeyPermanent( U32 entry ) const;
};

}  // namespace AclSettersTest
