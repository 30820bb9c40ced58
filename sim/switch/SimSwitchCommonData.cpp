// What the switch publishes for the back-end at assembly: the agent's shared data, the status
// records the central part of the agent fills, and the L3 layer's egress interface classes.
#include <string>

#include "platform/tcam/HalyardModInfo.h"
#include "sim/switch/SimSwitch.h"

namespace Sim {

void SimSwitch::commonDataFill() {
   for ( const auto& [number, u] : units_ ) {
      hcsd_->halyardModIdIs(
          static_cast<U16>( number ),
          Halyard::HalyardModInfo( static_cast<U16>( number ), Pylon::ModId( u.def.module ),
                                   u.kind->chipInfo, Vesper::Name( u.def.chipName ) ) );
   }
   intfMapsFill();
   if ( hasFabric() ) {
      fabricPortsFill();
   }
   hcsd_->linecardNameIs( Vesper::Name( profile_.linecardName() ) );
   hcsd_->epochNameIs( Vesper::Name( profile_.epochName() ) );
   hcsd_->vlanSliceBlockEnabledIs( profile_.flags().vlanBlocking );
   hcsd_->vlanBlockBypassIs( profile_.flags().vlanBlockBypass );
}

void SimSwitch::intfMapsFill() {
   for ( const auto& [number, port] : profile_.ethernet() ) {
      const auto intf = Pylon::IntfId::ethernet( number );
      hcsd_->halyardIntfToPortIs( intf, port );
      hcsd_->halyardIntfToPortCacheIs( intf, port );
      hcsd_->halyardPortToIntfIs( port, intf );
   }
   // The agent knows a port-channel by one port of it, its first member's; the members
   // themselves are the link aggregation agent's.
   for ( const auto& [number, members] : profile_.portChannels() ) {
      const auto intf = Pylon::IntfId::portChannel( number );
      const HalyardPort port = *portOf( intf );
      hcsd_->halyardIntfToPortIs( intf, port );
      hcsd_->halyardIntfToPortCacheIs( intf, port );
      lagInputConfig_->memberIs( intf, members );
   }
}

// A fabric port is keyed by its unit's module id in the unit field, as the back-end compares
// it with the module of a unit.
void SimSwitch::fabricPortsFill() {
   for ( const auto& [number, u] : units_ ) {
      U32 n = 0;
      for ( U32 port : u.layout.linkPorts ) {
         const std::string name =
             "Fabric" + std::to_string( u.def.module ) + "/" + std::to_string( ++n );
         hcsd_->halyardPortToFabricIntfIs( HalyardPort( u.def.module, port ),
                                           Vesper::Name( name ) );
      }
   }
}

void SimSwitch::statusFill( const SwitchOptions& options ) {
   aclHwStatus_->raclIdBitsIs( options.raclIdBits );
   aclHwStatus_->ingressRaclSharingSupportedIs( options.ingressRaclSharingSupported );
   // Last, since readers wait for it to see the facts above as final.
   aclHwStatus_->initializedIs( true );
}

// Egress router ACLs on a VLAN compare the egress L3 interface class with the VLAN's number.
void SimSwitch::egressL3ClassesFill() {
   std::vector<U16> vlans;
   for ( const auto& [vlan, members] : profile_.vlans() ) {
      vlans.push_back( vlan );
   }
   for ( const auto& [intf, vlan] : profile_.subIntfs() ) {
      vlans.push_back( vlan );
   }
   for ( const auto& [number, u] : units_ ) {
      for ( U16 vlan : vlans ) {
         u.chip->vlans().egressL3ClassIs( vlan, vlan );
      }
   }
}

}  // namespace Sim
