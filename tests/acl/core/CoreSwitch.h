// A small simulated switch for the tests of the back-end core: one chip model per unit of
// catalog kinds behind the simulated SDK (installed as Shim::sdk_ for the object's life), the
// simulated TCAM group manager with every unit, a common-data record naming the units and a
// few interfaces, and the agent records that the helper is built with.
//
// Unit u is chip number u + chipOffset, so that tests can tell a chip number from a unit;
// its module id is u. Interface Ethernet(u * 100 + p) is port p of unit u.
//
// REQUIRES: the caller holds the activity lock for the object's life.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/acl/AclConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/pylon/IntfId.h"
#include "platform/status/AclHwStatus.h"
#include "platform/status/L3IntfStatus.h"
#include "platform/status/L3SliceAgentStatus.h"
#include "platform/status/StatusDp.h"
#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/status/VlanTopoSliceStatus.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/sdk/SimSdk.h"
#include "sim/tcam/SimTcamGroupManager.h"

namespace AclCoreTest {

inline constexpr U16 chipOffset = 10;

class CoreSwitch {
 public:
   // One unit per kind name of the chip catalog, in order; none for an empty list.
   explicit CoreSwitch( const std::vector<std::string>& kinds );
   ~CoreSwitch();
   CoreSwitch( const CoreSwitch& ) = delete;
   CoreSwitch& operator=( const CoreSwitch& ) = delete;

   // A helper wired to this switch's records.
   Halyard::AclHelper::Ptr makeHelper( bool hasFabric = false ) const;
   // The six security state machines that bring-up makes, on `helper`, with this switch's
   // managers.
   void makeSecurityStateMachines( const Halyard::AclHelper::Ptr& helper ) const;

   static Pylon::IntfId intfOf( U32 unit, U32 port );

   U32 units() const { return static_cast<U32>( chips_.size() ); }
   Sim::ChipModel& chip( U32 unit ) const { return *chips_.at( unit ); }
   const Sim::ChipKind& kind( U32 unit ) const { return *kinds_.at( unit ); }
   Sim::SimSdk& sdk() { return sdk_; }
   const Sim::SimSdk& sdk() const { return sdk_; }
   const Sim::SimTcamGroupManager::Ptr& groupMgr() const { return groupMgr_; }
   Halyard::HalyardUnboundedTcamEntryManager::Ptr manager( Halyard::TcamGroupAssignment a ) const;

   // The chip model's field-processor port classes.
   U32 ingressClass( U32 unit, U32 port ) const;
   U32 egressClass( U32 unit, U32 port ) const;
   // The bit of the port table (or L-port table) row that takes the class from the group id.
   std::optional<U32> portTableBit( U32 unit, U32 port, bool lport ) const;

   Halyard::HalyardCommonSmData::Ptr hcsd;
   HalyardVlanTopo::VlanTopoSliceStatus::Ptr sliceStatus;
   HalyardVlanTopo::VlanTopoBlockedStatus::Ptr blockedStatus;
   Acl::Config::Ptr mainConfig;
   Acl::ParamConfig::Ptr paramConfig;
   Acl::StatusDp::Ptr status;
   HalyardCentral::AclHwStatus::Ptr hwStatus;
   HalyardL3::L3SliceAgentStatus::Ptr l3SliceStatus;
   HalyardL3::L3IntfStatus::Ptr l3IntfStatus;

 private:
   std::vector<const Sim::ChipKind*> kinds_;
   std::vector<std::unique_ptr<Sim::ChipModel> > chips_;
   Sim::SimSdk sdk_;
   Shim::SdkInstall sdkInstall_;
   Sim::SimTcamGroupManager::Ptr groupMgr_;
};

}  // namespace AclCoreTest
