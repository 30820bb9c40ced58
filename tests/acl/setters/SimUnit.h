// One unit of the simulated switch, assembled the way the agent's platform
// would for the field setters: a chip model of a catalog kind behind the
// simulated SDK (installed as Shim::sdk_ for the object's life), the
// simulated TCAM group manager with the kind's groups, a common-data record
// naming the unit, and a chip table holding the kind's row.
//
// Kinds come from the catalog by name, plus "dualclass": a chip of the
// trident3 kind that has both destination class forms, which no catalog kind
// has, for the cases where the nibble form must win.
//
// REQUIRES: the caller holds the activity lock for the object's life.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/shim/Sdk.h"
#include "platform/tcam/ChipAttributes.h"
#include "platform/tcam/HalyardAttributes.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/sdk/SimSdk.h"
#include "sim/tcam/SimTcamGroupManager.h"

namespace AclSettersTest {

// The catalog's kind names, then "dualclass".
std::vector<std::string> chipKindNames();
// REQUIRES: `name` is one of chipKindNames().
const Sim::ChipKind& chipKindNamed( std::string_view name );

class SimUnit {
 public:
   static constexpr U32 unit = 0;

   explicit SimUnit( const Sim::ChipKind& kind );
   ~SimUnit();
   SimUnit( const SimUnit& ) = delete;
   SimUnit& operator=( const SimUnit& ) = delete;

   const Sim::ChipKind& kind() const { return kind_; }
   bool attribute( HalyardCentral::ChipAttribute a ) const { return kind_.attribute( a ); }
   Sim::ChipModel& chip() { return chip_; }
   Sim::SimSdk& sdk() { return sdk_; }
   const Sim::SimTcamGroupManager::Ptr& groupMgr() const { return groupMgr_; }
   const Halyard::HalyardCommonSmData::Ptr& hcsd() const { return hcsd_; }

   // A new entry of the group of `a` on the unit.
   U32 newEntry( Halyard::TcamGroupAssignment a );
   // The chip group that holds the entries of `a`.
   Sim::GroupId groupOf( U32 entry ) const;
   // Writes the entry to the chip so that packets see it.
   void install( U32 entry );
   // The port key that the entry's manager recorded, and whether it is permanent.
   bcm_pbmp_t portKey( U32 entry ) const;
   bool portKeyPermanent( U32 entry ) const;

 private:
   const Sim::ChipKind& kind_;
   Sim::ChipModel chip_;
   Sim::SimSdk sdk_;
   Shim::SdkInstall sdkInstall_;
   Sim::SimTcamGroupManager::Ptr groupMgr_;
   Halyard::HalyardCommonSmData::Ptr hcsd_;
   Vesper::Ptr<HalyardCentral::HalyardAttributes> attributes_;
};

}  // namespace AclSettersTest
