// A simulated switch with an AclHelper on it, for the tests of hardware bring-up and of the
// type-direction-feature state machines.
//
// Units are numbered from 0 in the order of the kinds given; unit u has module id u + 1, so
// that a test tells a module from a unit, and front-panel ports Ethernet(100 u + p) on ports
// 1 .. 4. The switch (Sim::SimSwitch) installs the simulated SDK and the process-wide records
// for the object's life; the helper is made on it at once, hwInit is left to the test.
//
// The environment and the toggles are the test's: a test fixture holds a CleanProcessState
// ahead of its switches.
//
// REQUIRES: the caller holds the activity lock for the object's life.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipModel.h"
#include "sim/switch/SimSwitch.h"
#include "sim/tcam/SimTcamEntryManager.h"

namespace AclBringupTest {

struct SwitchLayout {
   SwitchLayout( std::vector<std::string> kinds, bool fabric = false,
                 bool egressFilterPerPort = false )
       : kinds( std::move( kinds ) ),
         fabric( fabric ),
         egressFilterPerPort( egressFilterPerPort ) {}

   std::vector<std::string> kinds;  // one unit per kind name of the catalog
   bool fabric = false;
   bool egressFilterPerPort = false;
   // Groups the TCAM group manager does not set up: their managers are null.
   std::vector<Halyard::TcamGroupAssignment> missingGroups;
};

// What a death test expects on stderr: the failed assertion on `expr`, and the fatal line of a
// checked SDK call that failed, as regular expressions.
std::string assertionFailure( std::string_view expr );
std::string sdkCheckFailure( std::string_view call );

// Every kind name of the chip catalog, in catalog order.
std::vector<std::string> catalogKindNames();

// Clears SIMULATION_VMID and the mirror-on-drop toggle, now and when it ends.
class CleanProcessState {
 public:
   CleanProcessState();
   ~CleanProcessState();
   CleanProcessState( const CleanProcessState& ) = delete;
   CleanProcessState& operator=( const CleanProcessState& ) = delete;
};

class BringupSwitch {
 public:
   static constexpr U32 frontPanelPorts = 4;

   explicit BringupSwitch( const SwitchLayout& layout );
   ~BringupSwitch();
   BringupSwitch( const BringupSwitch& ) = delete;
   BringupSwitch& operator=( const BringupSwitch& ) = delete;

   Sim::SimSwitch& sw() { return switch_; }
   const Halyard::AclHelper::Ptr& helper() const { return helper_; }
   Sim::ChipModel& chip( U32 unit ) { return switch_.chip( unit ); }
   U32 units() const { return static_cast<U32>( kinds_.size() ); }
   const Sim::ChipKind& kind( U32 unit ) const;
   const Sim::SimTcamGroupManager::Ptr& groupManager() const { return switch_.groupManager(); }
   Halyard::HalyardUnboundedTcamEntryManager::Ptr manager( Halyard::TcamGroupAssignment a ) const {
      return groupManager()->unboundedEntryManager( a );
   }
   Sim::SimBoundedTcamEntryManager& boundedManager( Halyard::TcamGroupAssignment a ) const;

   void hwInit() { helper_->hwInit(); }
   // Another helper on the same records.
   Halyard::AclHelper::Ptr makeHelper() const;

   // The ids of the management and port-blocking entries, the same on every unit.
   U32 mgmtEntry( Halyard::AclManagementTcams offset ) const;
   U32 portBlockingEntry( Halyard::AclPortBlockingTcams offset ) const;
   // The ten entries in the order bring-up programs them.
   std::vector<U32> managementEntriesInOrder() const;

   // Every entry of every group of the unit's chip.
   std::vector<U32> chipEntries( U32 unit );

 private:
   std::vector<std::string> kinds_;
   Sim::SimSwitch switch_;
   Acl::Config::Ptr mainConfig_;
   Acl::ParamConfig::Ptr paramConfig_;
   Halyard::AclHelper::Ptr helper_;
};

}  // namespace AclBringupTest
