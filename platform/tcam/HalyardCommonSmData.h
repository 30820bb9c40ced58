// The agent-wide shared data of the forwarding agent, as the ACL back-end
// reads it: the units and their chips, the ports and their interfaces, the
// reserved port-blocking groups, and a few agent-wide switches.
//
// One record per agent, made by halyardCommonSmDataFactory() and filled by
// the platform owner (the agent, or the simulated switch); the back-end only
// reads it, apart from restartAgentIs(). Every setter notifies the notifiees
// once per real change: a new member, a changed value, a removed member. A
// set to the value that stands is silent.
//
// Collections (absent members read as stated):
//   halyardIntfToPort       interface -> port of the chip (unit, port); absent: invalidPort
//   halyardIntfToPortCache  the same shape; absent: invalidPort
//   halyardPortToIntf       port (unit, port) -> interface; absent: the empty interface
//   halyardModId            unit -> HalyardModInfo: the unit table; absent: HalyardModInfo()
//   portBlockTcamGroup      entry -> bool: each key is the first of four entries reserved
//                           for port blocking in one additional TCAM group
//   halyardPortToFabricIntf fabric port -> fabric interface name, walked in rising order; the
//                           key is a HalyardPort whose unit field holds the module id; empty
//                           on a system without fabric
// Switches:
//   aclRuleIndexConsistencyCheck  debugging: cross-check the two indices of the rule records
//   aclHwInitBypass               skip hardware bring-up and group compression
//   vfiForwarding                 the agent forwards by virtual forwarding instance
//   vlanBlockBypass, vlanSliceBlockEnabled  a VLAN block goes to the per-chip agents only
//                                 when the first is false and the second true
//   linecardName                  the line card whose epoch decides ACL support per interface
//   epochName                     the text handed to FennelEpochStatus::aclSupported()
// Requests:
//   restartAgentIs(ModRequest)    asks the supervisor to restart the agent; restartAgent()
//                                 is the last request filed
//
// Threads: activity thread only.
#pragma once

#include <map>

#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/IntfId.h"
#include "platform/tcam/HalyardModInfo.h"
#include "platform/tcam/ModRequest.h"
#include "platform/vesper/HashMap2018.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Halyard {

class HalyardCommonSmData : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Halyard::HalyardCommonSmData" )

 public:
   using Ptr = Vesper::Ptr<HalyardCommonSmData>;
   using PtrConst = Vesper::Ptr<const HalyardCommonSmData>;
   using HalyardPort = HalyardTypes::HalyardPort;
   using IntfToPortMap = Vesper::HashMap2018<Pylon::IntfId, HalyardPort>;
   using PortToIntfMap = Vesper::HashMap2018<HalyardPort, Pylon::IntfId>;
   using UnitTable = Vesper::HashMap2018<U16, HalyardModInfo>;
   using PortBlockGroupMap = Vesper::HashMap2018<U32, bool>;
   using FabricIntfMap = std::map<HalyardPort, Vesper::Name>;

   // What an interface without a port reads as: unit 0xFFFF, port 0x3FF.
   static constexpr HalyardPort invalidPort = HalyardPort::fromValue( 0x3FFu << 16 | 0xFFFFu );

   class NotifieeConst : public Vesper::NotifieeBase<HalyardCommonSmData> {
    public:
      virtual void onHalyardIntfToPort( Pylon::IntfId ) {}
      virtual void onHalyardIntfToPortCache( Pylon::IntfId ) {}
      virtual void onHalyardPortToIntf( HalyardPort ) {}
      virtual void onHalyardModId( U16 ) {}
      virtual void onPortBlockTcamGroup( U32 ) {}
      virtual void onHalyardPortToFabricIntf( HalyardPort ) {}
      virtual void onAclRuleIndexConsistencyCheck() {}
      virtual void onAclHwInitBypass() {}
      virtual void onVfiForwarding() {}
      virtual void onVlanBlockBypass() {}
      virtual void onVlanSliceBlockEnabled() {}
      virtual void onLinecardName() {}
      virtual void onEpochName() {}
      virtual void onRestartAgent() {}
   };

   // halyardIntfToPort
   HalyardPort halyardIntfToPort( Pylon::IntfId intf ) const;
   const IntfToPortMap& halyardIntfToPort() const { return halyardIntfToPort_; }
   bool halyardIntfToPortHas( Pylon::IntfId intf ) const { return halyardIntfToPort_.has( intf ); }
   void halyardIntfToPortIs( Pylon::IntfId intf, HalyardPort port );
   void halyardIntfToPortDel( Pylon::IntfId intf );
   void halyardIntfToPortDelAll();

   // halyardIntfToPortCache
   HalyardPort halyardIntfToPortCache( Pylon::IntfId intf ) const;
   const IntfToPortMap& halyardIntfToPortCache() const { return halyardIntfToPortCache_; }
   bool halyardIntfToPortCacheHas( Pylon::IntfId intf ) const {
      return halyardIntfToPortCache_.has( intf );
   }
   void halyardIntfToPortCacheIs( Pylon::IntfId intf, HalyardPort port );
   void halyardIntfToPortCacheDel( Pylon::IntfId intf );
   void halyardIntfToPortCacheDelAll();

   // halyardPortToIntf
   Pylon::IntfId halyardPortToIntf( HalyardPort port ) const;
   const PortToIntfMap& halyardPortToIntf() const { return halyardPortToIntf_; }
   bool halyardPortToIntfHas( HalyardPort port ) const { return halyardPortToIntf_.has( port ); }
   void halyardPortToIntfIs( HalyardPort port, Pylon::IntfId intf );
   void halyardPortToIntfDel( HalyardPort port );
   void halyardPortToIntfDelAll();

   // halyardModId: the unit table.
   HalyardModInfo halyardModId( U16 unit ) const;
   const UnitTable& halyardModId() const { return halyardModId_; }
   bool halyardModIdHas( U16 unit ) const { return halyardModId_.has( unit ); }
   void halyardModIdIs( U16 unit, const HalyardModInfo& info );
   void halyardModIdDel( U16 unit );
   void halyardModIdDelAll();

   // portBlockTcamGroup
   bool portBlockTcamGroup( U32 entry ) const;
   const PortBlockGroupMap& portBlockTcamGroup() const { return portBlockTcamGroup_; }
   bool portBlockTcamGroupHas( U32 entry ) const { return portBlockTcamGroup_.has( entry ); }
   void portBlockTcamGroupIs( U32 entry, bool value );
   void portBlockTcamGroupDel( U32 entry );
   void portBlockTcamGroupDelAll();

   // halyardPortToFabricIntf
   Vesper::Name halyardPortToFabricIntf( HalyardPort port ) const;
   const FabricIntfMap& halyardPortToFabricIntf() const { return halyardPortToFabricIntf_; }
   bool halyardPortToFabricIntfHas( HalyardPort port ) const {
      return halyardPortToFabricIntf_.contains( port );
   }
   void halyardPortToFabricIntfIs( HalyardPort port, const Vesper::Name& fabricIntf );
   void halyardPortToFabricIntfDel( HalyardPort port );
   void halyardPortToFabricIntfDelAll();

   // Switches and names.
   bool aclRuleIndexConsistencyCheck() const { return aclRuleIndexConsistencyCheck_; }
   void aclRuleIndexConsistencyCheckIs( bool value );
   bool aclHwInitBypass() const { return aclHwInitBypass_; }
   void aclHwInitBypassIs( bool value );
   bool vfiForwarding() const { return vfiForwarding_; }
   void vfiForwardingIs( bool value );
   bool vlanBlockBypass() const { return vlanBlockBypass_; }
   void vlanBlockBypassIs( bool value );
   bool vlanSliceBlockEnabled() const { return vlanSliceBlockEnabled_; }
   void vlanSliceBlockEnabledIs( bool value );
   const Vesper::Name& linecardName() const { return linecardName_; }
   void linecardNameIs( const Vesper::Name& name );
   const Vesper::Name& epochName() const { return epochName_; }
   void epochNameIs( const Vesper::Name& name );

   // Restart requests.
   const ModRequest& restartAgent() const { return restartAgent_; }
   void restartAgentIs( const ModRequest& request );

 private:
   friend Ptr halyardCommonSmDataFactory();
   HalyardCommonSmData() = default;

   IntfToPortMap halyardIntfToPort_;
   IntfToPortMap halyardIntfToPortCache_;
   PortToIntfMap halyardPortToIntf_;
   UnitTable halyardModId_;
   PortBlockGroupMap portBlockTcamGroup_;
   FabricIntfMap halyardPortToFabricIntf_;
   bool aclRuleIndexConsistencyCheck_ = false;
   bool aclHwInitBypass_ = false;
   bool vfiForwarding_ = false;
   bool vlanBlockBypass_ = false;
   bool vlanSliceBlockEnabled_ = false;
   Vesper::Name linecardName_;
   Vesper::Name epochName_;
   ModRequest restartAgent_;
};

// A new, empty record with notifications on.
HalyardCommonSmData::Ptr halyardCommonSmDataFactory();

}  // namespace Halyard
