#include "platform/tcam/HalyardCommonSmData.h"

#include "platform/status/AttributeSupport.h"

namespace Halyard {

using HalyardStatus::assignIfChanged;
using HalyardStatus::delAllThrough;
using HalyardPort = HalyardTypes::HalyardPort;

HalyardCommonSmData::Ptr halyardCommonSmDataFactory() {
   HalyardCommonSmData::Ptr hcsd( new HalyardCommonSmData );
   hcsd->hasNotificationActiveIs( true );
   return hcsd;
}

HalyardPort HalyardCommonSmData::halyardIntfToPort( Pylon::IntfId intf ) const {
   const auto* found = halyardIntfToPort_.find( intf );
   return found ? *found : invalidPort;
}

void HalyardCommonSmData::halyardIntfToPortIs( Pylon::IntfId intf, HalyardPort port ) {
   if ( halyardIntfToPort_.set( intf, port ) ) {
      notify( &NotifieeConst::onHalyardIntfToPort, intf );
   }
}

void HalyardCommonSmData::halyardIntfToPortDel( Pylon::IntfId intf ) {
   if ( halyardIntfToPort_.del( intf ) ) {
      notify( &NotifieeConst::onHalyardIntfToPort, intf );
   }
}

void HalyardCommonSmData::halyardIntfToPortDelAll() {
   delAllThrough( halyardIntfToPort_,
                  [this]( Pylon::IntfId intf ) { halyardIntfToPortDel( intf ); } );
}

HalyardPort HalyardCommonSmData::halyardIntfToPortCache( Pylon::IntfId intf ) const {
   const auto* found = halyardIntfToPortCache_.find( intf );
   return found ? *found : invalidPort;
}

void HalyardCommonSmData::halyardIntfToPortCacheIs( Pylon::IntfId intf, HalyardPort port ) {
   if ( halyardIntfToPortCache_.set( intf, port ) ) {
      notify( &NotifieeConst::onHalyardIntfToPortCache, intf );
   }
}

void HalyardCommonSmData::halyardIntfToPortCacheDel( Pylon::IntfId intf ) {
   if ( halyardIntfToPortCache_.del( intf ) ) {
      notify( &NotifieeConst::onHalyardIntfToPortCache, intf );
   }
}

void HalyardCommonSmData::halyardIntfToPortCacheDelAll() {
   delAllThrough( halyardIntfToPortCache_,
                  [this]( Pylon::IntfId intf ) { halyardIntfToPortCacheDel( intf ); } );
}

Pylon::IntfId HalyardCommonSmData::halyardPortToIntf( HalyardPort port ) const {
   const auto* found = halyardPortToIntf_.find( port );
   return found ? *found : Pylon::IntfId();
}

void HalyardCommonSmData::halyardPortToIntfIs( HalyardPort port, Pylon::IntfId intf ) {
   if ( halyardPortToIntf_.set( port, intf ) ) {
      notify( &NotifieeConst::onHalyardPortToIntf, port );
   }
}

void HalyardCommonSmData::halyardPortToIntfDel( HalyardPort port ) {
   if ( halyardPortToIntf_.del( port ) ) {
      notify( &NotifieeConst::onHalyardPortToIntf, port );
   }
}

void HalyardCommonSmData::halyardPortToIntfDelAll() {
   delAllThrough( halyardPortToIntf_,
                  [this]( HalyardPort port ) { halyardPortToIntfDel( port ); } );
}

HalyardModInfo HalyardCommonSmData::halyardModId( U16 unit ) const {
   const auto* found = halyardModId_.find( unit );
   return found ? *found : HalyardModInfo();
}

void HalyardCommonSmData::halyardModIdIs( U16 unit, const HalyardModInfo& info ) {
   if ( halyardModId_.set( unit, info ) ) {
      notify( &NotifieeConst::onHalyardModId, unit );
   }
}

void HalyardCommonSmData::halyardModIdDel( U16 unit ) {
   if ( halyardModId_.del( unit ) ) {
      notify( &NotifieeConst::onHalyardModId, unit );
   }
}

void HalyardCommonSmData::halyardModIdDelAll() {
   delAllThrough( halyardModId_, [this]( U16 unit ) { halyardModIdDel( unit ); } );
}

bool HalyardCommonSmData::portBlockTcamGroup( U32 entry ) const {
   const auto* found = portBlockTcamGroup_.find( entry );
   return found ? *found : false;
}

void HalyardCommonSmData::portBlockTcamGroupIs( U32 entry, bool value ) {
   if ( portBlockTcamGroup_.set( entry, value ) ) {
      notify( &NotifieeConst::onPortBlockTcamGroup, entry );
   }
}

void HalyardCommonSmData::portBlockTcamGroupDel( U32 entry ) {
   if ( portBlockTcamGroup_.del( entry ) ) {
      notify( &NotifieeConst::onPortBlockTcamGroup, entry );
   }
}

void HalyardCommonSmData::portBlockTcamGroupDelAll() {
   delAllThrough( portBlockTcamGroup_, [this]( U32 entry ) { portBlockTcamGroupDel( entry ); } );
}

Vesper::Name HalyardCommonSmData::halyardPortToFabricIntf( HalyardPort port ) const {
   const auto found = halyardPortToFabricIntf_.find( port );
   return found == halyardPortToFabricIntf_.end() ? Vesper::Name() : found->second;
}

void HalyardCommonSmData::halyardPortToFabricIntfIs( HalyardPort port,
                                                     const Vesper::Name& fabricIntf ) {
   auto [it, added] = halyardPortToFabricIntf_.try_emplace( port, fabricIntf );
   if ( added || assignIfChanged( it->second, fabricIntf ) ) {
      notify( &NotifieeConst::onHalyardPortToFabricIntf, port );
   }
}

void HalyardCommonSmData::halyardPortToFabricIntfDel( HalyardPort port ) {
   if ( halyardPortToFabricIntf_.erase( port ) ) {
      notify( &NotifieeConst::onHalyardPortToFabricIntf, port );
   }
}

void HalyardCommonSmData::halyardPortToFabricIntfDelAll() {
   // Lowest port first, the order of the map.
   while ( !halyardPortToFabricIntf_.empty() ) {
      halyardPortToFabricIntfDel( halyardPortToFabricIntf_.begin()->first );
   }
}

void HalyardCommonSmData::aclRuleIndexConsistencyCheckIs( bool value ) {
   if ( assignIfChanged( aclRuleIndexConsistencyCheck_, value ) ) {
      notify( &NotifieeConst::onAclRuleIndexConsistencyCheck );
   }
}

void HalyardCommonSmData::aclHwInitBypassIs( bool value ) {
   if ( assignIfChanged( aclHwInitBypass_, value ) ) {
      notify( &NotifieeConst::onAclHwInitBypass );
   }
}

void HalyardCommonSmData::vfiForwardingIs( bool value ) {
   if ( assignIfChanged( vfiForwarding_, value ) ) {
      notify( &NotifieeConst::onVfiForwarding );
   }
}

void HalyardCommonSmData::vlanBlockBypassIs( bool value ) {
   if ( assignIfChanged( vlanBlockBypass_, value ) ) {
      notify( &NotifieeConst::onVlanBlockBypass );
   }
}

void HalyardCommonSmData::vlanSliceBlockEnabledIs( bool value ) {
   if ( assignIfChanged( vlanSliceBlockEnabled_, value ) ) {
      notify( &NotifieeConst::onVlanSliceBlockEnabled );
   }
}

void HalyardCommonSmData::linecardNameIs( const Vesper::Name& name ) {
   if ( assignIfChanged( linecardName_, name ) ) {
      notify( &NotifieeConst::onLinecardName );
   }
}

void HalyardCommonSmData::epochNameIs( const Vesper::Name& name ) {
   if ( assignIfChanged( epochName_, name ) ) {
      notify( &NotifieeConst::onEpochName );
   }
}

void HalyardCommonSmData::restartAgentIs( const ModRequest& request ) {
   if ( assignIfChanged( restartAgent_, request ) ) {
      notify( &NotifieeConst::onRestartAgent );
   }
}

}  // namespace Halyard
