#include "platform/acl/ParamConfig.h"

namespace Acl {

namespace {

// Stores `value` in `field`; true when that changed the field.
template <class T>
bool changed( T& field, T value ) {
   if ( field == value ) {
      return false;
   }
   field = value;
   return true;
}

}  // namespace

void ParamConfig::ingressRaclSharingIs( bool sharing ) {
   if ( changed( ingressRaclSharing_, sharing ) ) {
      notify( &NotifieeConst::onIngressRaclSharing );
   }
}

void ParamConfig::ingressMirrorAclKeyWidthModeIs( AclKeyWidthMode mode ) {
   if ( changed( ingressMirrorAclKeyWidthMode_, mode ) ) {
      notify( &NotifieeConst::onIngressMirrorAclKeyWidthMode );
   }
}

void ParamConfig::ingressIpv6SecurityAclKeyWidthModeIs( AclKeyWidthMode mode ) {
   if ( changed( ingressIpv6SecurityAclKeyWidthMode_, mode ) ) {
      notify( &NotifieeConst::onIngressIpv6SecurityAclKeyWidthMode );
   }
}

void ParamConfig::permitIcmp6TypesConfigIs( PermitIcmp6TypesConfig config ) {
   if ( changed( permitIcmp6TypesConfig_, config ) ) {
      notify( &NotifieeConst::onPermitIcmp6TypesConfig );
   }
}

void ParamConfig::permitDuringAclUpdateConfigIs( PermitDuringAclUpdateConfig config ) {
   if ( changed( permitDuringAclUpdateConfig_, config ) ) {
      notify( &NotifieeConst::onPermitDuringAclUpdateConfig );
   }
}

ParamConfig::Ptr paramConfigFactory() {
   ParamConfig::Ptr config( new ParamConfig );
   config->hasNotificationActiveIs( true );
   return config;
}

}  // namespace Acl
