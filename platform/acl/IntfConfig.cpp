#include "platform/acl/IntfConfig.h"

#include "platform/vesper/Assert.h"

namespace Acl {

size_t IntfConfig::mapIndex( AclType type, AclDirection direction ) {
   const auto typeIndex = static_cast<size_t>( type );
   const auto directionIndex = static_cast<size_t>( direction );
   VESPER_ASSERT( typeIndex < 3 && directionIndex < 2 );
   return typeIndex * 2 + directionIndex;
}

const IntfConfig::IntfAclMap& IntfConfig::intfAcl( AclType type, AclDirection direction ) const {
   return intfAcl_[mapIndex( type, direction )];
}

Vesper::Name IntfConfig::intfAcl( AclType type, AclDirection direction, Pylon::IntfId intf ) const {
   const Vesper::Name* name = intfAcl( type, direction ).find( intf );
   return name ? *name : Vesper::Name();
}

bool IntfConfig::intfAclHas( AclType type, AclDirection direction, Pylon::IntfId intf ) const {
   return intfAcl( type, direction ).has( intf );
}

void IntfConfig::intfAclIs( AclType type, AclDirection direction, Pylon::IntfId intf,
                            const Vesper::Name& aclName ) {
   VESPER_ASSERT( !aclName.empty() );
   if ( intfAcl_[mapIndex( type, direction )].set( intf, aclName ) ) {
      notify( &NotifieeConst::onIntfAcl, type, direction, intf );
   }
}

void IntfConfig::intfAclDel( AclType type, AclDirection direction, Pylon::IntfId intf ) {
   if ( intfAcl_[mapIndex( type, direction )].del( intf ) ) {
      notify( &NotifieeConst::onIntfAcl, type, direction, intf );
   }
}

void IntfConfig::intfAclDelAll() {
   for ( const AclType type : { AclType::ip, AclType::ipv6, AclType::mac } ) {
      for ( const AclDirection direction : { AclDirection::in, AclDirection::out } ) {
         const IntfAclMap& map = intfAcl( type, direction );
         for ( auto it = map.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
            const Pylon::IntfId intf = node->key();
            intfAclDel( type, direction, intf );
         }
      }
   }
}

IntfConfig::Ptr intfConfigFactory() {
   IntfConfig::Ptr config( new IntfConfig );
   config->hasNotificationActiveIs( true );
   return config;
}

}  // namespace Acl
