#include "platform/status/VlanTopoBlockedStatus.h"

#include "platform/status/AttributeSupport.h"

namespace HalyardVlanTopo {

VlanTopoBlockedStatus::Ptr vlanTopoBlockedStatusFactory() {
   VlanTopoBlockedStatus::Ptr status( new VlanTopoBlockedStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

bool VlanTopoBlockedStatus::blocked( const AclModSvi& key ) const {
   const bool* value = blocked_.find( key );
   return value && *value;
}

void VlanTopoBlockedStatus::blockedIs( const AclModSvi& key, bool value ) {
   if ( blocked_.set( key, value ) ) {
      notify( &NotifieeConst::onBlocked, key );
   }
}

void VlanTopoBlockedStatus::blockedDel( const AclModSvi& key ) {
   if ( blocked_.del( key ) ) {
      notify( &NotifieeConst::onBlocked, key );
   }
}

void VlanTopoBlockedStatus::blockedDelAll() {
   HalyardStatus::delAllThrough( blocked_, [this]( const AclModSvi& key ) { blockedDel( key ); } );
}

}  // namespace HalyardVlanTopo
