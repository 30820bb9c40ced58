#include "platform/status/AclHwStatus.h"

#include "platform/status/AttributeSupport.h"

namespace HalyardCentral {

using HalyardStatus::assignIfChanged;

AclHwStatus::Ptr aclHwStatusFactory() {
   AclHwStatus::Ptr status( new AclHwStatus );
   status->hasNotificationActiveIs( true );
   return status;
}

void AclHwStatus::initializedIs( bool value ) {
   if ( assignIfChanged( initialized_, value ) ) {
      notify( &NotifieeConst::onInitialized );
   }
}

void AclHwStatus::raclIdBitsIs( U32 bits ) {
   if ( assignIfChanged( raclIdBits_, bits ) ) {
      notify( &NotifieeConst::onRaclIdBits );
   }
}

void AclHwStatus::ingressRaclSharingSupportedIs( bool value ) {
   if ( assignIfChanged( ingressRaclSharingSupported_, value ) ) {
      notify( &NotifieeConst::onIngressRaclSharingSupported );
   }
}

}  // namespace HalyardCentral
