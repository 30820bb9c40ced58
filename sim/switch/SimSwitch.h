// Sim::SimSwitch: a simulated switch assembled from a profile, holding everything a forwarding
// agent hands the ACL back-end:
//   - one ChipModel per unit, of the unit's catalog kind and port count, and the SimSdk over
//     them, installed as Shim::sdk_ for the switch's life;
//   - the SimTcamGroupManager with its groups on every unit, each unit's TCAM slices from its
//     own chip kind (less what the profile takes away), which the groups of a stage share as
//     they need them, and each unit's range checker, UDF and class table limits;
//   - the agent's shared data (HalyardCommonSmData): the unit table with each unit's chip
//     number (the unit number), module id, ChipInfo and chip name; front-panel ports and
//     port-channels (by their first member) in halyardIntfToPort and its cache, front-panel
//     ports in halyardPortToIntf; with the fabric flag, every unit's link ports in
//     halyardPortToFabricIntf as "Fabric<module>/<n>"; the line card and epoch names and the
//     VLAN blocking switches;
//   - the chip table (the catalog's ChipAttributes per ChipInfo, egressFilterPerPort) and the
//     epoch status (ACLs supported under the line card and epoch names), both installed as the
//     process-wide records for the switch's life;
//   - the status records shared with the peer agents (VlanTopoSliceStatus,
//     VlanTopoBlockedStatus, L3SliceAgentStatus, L3IntfStatus), AclHwStatus (published as
//     initialized) and Acl::StatusDp, and the peer agents that answer them when stepped;
//   - the fabric device of fab_ioctl, a SimFabricDevice, installed for the switch's life. The
//     back-end sends its VLAN commands to the device whether or not the switch has fabric
//     ports, so every simulated switch has one; the fabric flag decides the fabric ports.
// VLAN interfaces and sub-interfaces get their VLAN as egress L3 interface class on every unit,
// as the L3 layer of the agent programs it.
//
// Contract:
//   1. A profile that is not complete (SwitchProfile::checkComplete) is refused with
//      ProfileError before anything is installed.
//   2. The installs nest: a switch made while another stands installs over it, and each puts
//      back what it found when it is destroyed. Destroy switches in reverse order of making.
//   3. What the switch hands out (chips, managers, records) refers to its chips and must not be
//      used after the switch is gone, even where a counted pointer keeps the object alive.
//   4. The switch never calls the SDK itself: its own work goes to the chip models directly, so
//      the SDK's call counts and injected faults belong to the code under test.
//
// Threads: the activity thread. The back-end requires the activity lock; the switch does not.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/IntfId.h"
#include "platform/shim/Sdk.h"
#include "platform/status/AclHwStatus.h"
#include "platform/status/FennelEpochStatus.h"
#include "platform/status/L3IntfStatus.h"
#include "platform/status/L3SliceAgentStatus.h"
#include "platform/status/StatusDp.h"
#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/status/VlanTopoSliceStatus.h"
#include "platform/tcam/HalyardAttributes.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/wiring/AgentRecords.h"
#include "sim/agents/L3Agent.h"
#include "sim/agents/VlanTopoAgent.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/chip/Packet.h"
#include "sim/sdk/SimSdk.h"
#include "sim/switch/ProcessWideInstall.h"
#include "sim/switch/SimFabricDevice.h"
#include "sim/switch/SwitchProfile.h"
#include "sim/switch/SwitchVerdict.h"
#include "sim/tcam/GroupTable.h"
#include "sim/tcam/SimTcamGroupManager.h"
#include "sim/tcam/UnitLimits.h"

namespace Sim {

// What a test may change of the switch a profile describes.
struct SwitchOptions {
   // Replaces the group table derived from the chip kinds: tiny capacities force exhaustion.
   std::optional<GroupTable> groupTable;
   // Lowers the capacity of some groups on every unit, over the table: exhausts a group
   // without taking slices from the others (the management groups keep theirs).
   std::map<Halyard::TcamGroupAssignment, U32> groupCapacities;
   // Replaces every unit's limits; each is cut to its chip's pools.
   std::optional<UnitLimits> unitLimits;
   // Units built as a chip kind of the caller's own (a catalog kind with other capacities,
   // probes or attributes) in place of the kind that their profile names, which still lays
   // out the unit's ports. Each needs a ChipInfo of its own, whose row joins the chip table,
   // and at least the profile's port count.
   std::map<U32, ChipKind> unitKinds;
   // What AclHwStatus publishes.
   U32 raclIdBits = 10;
   bool ingressRaclSharingSupported = true;
};

class SimSwitch {
 public:
   using HalyardPort = HalyardTypes::HalyardPort;

   explicit SimSwitch( const SwitchProfile& profile = defaultProfile(),
                       const SwitchOptions& options = {} );
   ~SimSwitch();
   SimSwitch( const SimSwitch& ) = delete;
   SimSwitch& operator=( const SimSwitch& ) = delete;

   const SwitchProfile& profile() const { return profile_; }
   bool hasFabric() const { return profile_.flags().fabric; }

   // ---- Units. An unknown unit raises Vesper::RangeException.
   std::vector<U32> units() const;
   ChipModel& chip( U32 unit ) const;
   const ChipKind& chipKind( U32 unit ) const;
   Pylon::ModId modId( U32 unit ) const;
   const UnitPortLayout& portLayout( U32 unit ) const;
   // For the tool's summary: the unit's groups (stage, entries, capacity, slices held), each
   // stage's free slices, range checkers and UDF chunks used and available.
   UnitUsage tcamUsage( U32 unit ) const;

   // ---- The platform the back-end is given.
   SimSdk& sdk() { return sdk_; }
   const SimTcamGroupManager::Ptr& groupManager() const { return groupManager_; }
   const Halyard::HalyardCommonSmData::Ptr& hcsd() const { return hcsd_; }
   const Vesper::Ptr<HalyardCentral::HalyardAttributes>& attributes() const { return attributes_; }
   const Fennel::FennelEpochStatus::Ptr& epochStatus() const { return epochStatus_; }
   const HalyardVlanTopo::VlanTopoSliceStatus::Ptr& vlanTopoSliceStatus() const {
      return vlanTopoSliceStatus_;
   }
   const HalyardVlanTopo::VlanTopoBlockedStatus::Ptr& vlanTopoBlockedStatus() const {
      return vlanTopoBlockedStatus_;
   }
   const HalyardL3::L3SliceAgentStatus::Ptr& l3SliceAgentStatus() const {
      return l3SliceAgentStatus_;
   }
   const HalyardL3::L3IntfStatus::Ptr& l3IntfStatus() const { return l3IntfStatus_; }
   const HalyardCentral::AclHwStatus::Ptr& aclHwStatus() const { return aclHwStatus_; }
   const Acl::StatusDp::Ptr& statusDp() const { return statusDp_; }
   // The link aggregation agent's input: the profile's port-channels and their members.
   const Lag::Input::Config::Ptr& lagInputConfig() const { return lagInputConfig_; }
   SimFabricDevice& fabricDevice() { return fabric_; }

   // Whether ACLs are supported under the switch's line card and epoch. The back-end asks under
   // one name for every unit, so support is switched for the whole switch.
   void aclSupportedIs( bool supported );

   // ---- Peer agents. stepAgents() steps both; answers how much they did.
   VlanTopoAgent& vlanTopoAgent() { return vlanTopoAgent_; }
   L3Agent& l3Agent() { return l3Agent_; }
   U32 stepAgents();

   // ---- Interfaces. portOf: a front-panel port's port, a port-channel's first member's, a
   // sub-interface's parent's; nullopt for a VLAN interface or an unknown interface.
   std::optional<HalyardPort> portOf( Pylon::IntfId intf ) const;
   // The front-panel interface on a port; the null interface for any other port.
   Pylon::IntfId intfOf( HalyardPort port ) const;

   // Pushes `packet` through the switch as arriving on the interface named `ingress`, bound for
   // the interface named `egress` (empty: the packet's own egress ports on the ingress unit,
   // none unless set: forwarding chose no destination). SimSwitchInject.cpp
   // tells how each kind of interface fills the packet's ports, VLAN and routed flag; the
   // packet's own destination L2 class, source class and other metadata stand as given.
   // An unknown or malformed name raises Vesper::RangeException or Vesper::ParseException.
   SwitchVerdict inject( std::string_view ingress, Packet packet, std::string_view egress = {} );

 private:
   struct Unit {
      UnitDef def;
      const ChipKind* kind = nullptr;
      UnitPortLayout layout;
      std::unique_ptr<ChipModel> chip;
   };

   static std::map<U32, Unit> buildUnits( const SwitchProfile& profile,
                                          const std::map<U32, ChipKind>& unitKinds );
   const Unit& unitAt( U32 unit ) const;
   std::vector<AgentChip> agentChips() const;
   GroupTable groupTableFor( const SwitchOptions& options ) const;
   void unitsAttach( const SwitchOptions& options );
   void commonDataFill();
   void intfMapsFill();
   void fabricPortsFill();
   void statusFill( const SwitchOptions& options );
   void egressL3ClassesFill();

   // Declared first so that the chips outlive everything that refers to them.
   SwitchProfile profile_;
   std::map<U32, ChipKind> unitKinds_;
   std::map<U32, Unit> units_;
   SimSdk sdk_;
   Shim::SdkInstall sdkInstall_;
   SimFabricDevice fabric_;
   SimTcamGroupManager::Ptr groupManager_;
   Halyard::HalyardCommonSmData::Ptr hcsd_;
   Vesper::Ptr<HalyardCentral::HalyardAttributes> attributes_;
   Fennel::FennelEpochStatus::Ptr epochStatus_;
   ProcessWideInstall processWide_;
   HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus_;
   HalyardVlanTopo::VlanTopoBlockedStatus::Ptr vlanTopoBlockedStatus_;
   HalyardL3::L3SliceAgentStatus::Ptr l3SliceAgentStatus_;
   HalyardL3::L3IntfStatus::Ptr l3IntfStatus_;
   HalyardCentral::AclHwStatus::Ptr aclHwStatus_;
   Acl::StatusDp::Ptr statusDp_;
   Lag::Input::Config::Ptr lagInputConfig_;
   VlanTopoAgent vlanTopoAgent_;
   L3Agent l3Agent_;
};

}  // namespace Sim
