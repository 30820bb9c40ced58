// VfpAclTypeForPort: the claims of ports' VFP lookup by ACL type.
#include <string>

#include "acl/VfpAclTypeForPort.h"

namespace Halyard {

VfpAclTypeForPort::VfpAclTypeForPort( U32 unit )
    : NotifierBase( Vesper::Name( std::to_string( unit ) ) ), unit_( unit ) {}

std::optional<Acl::AclType> VfpAclTypeForPort::vfpAclTypeForPort(
    const Vesper::String& port ) const {
   const Acl::AclType* type = vfpAclTypeForPort_.find( port );
   return type ? std::optional<Acl::AclType>( *type ) : std::nullopt;
}

void VfpAclTypeForPort::vfpAclTypeForPortIs( const Vesper::String& port, Acl::AclType type ) {
   if ( vfpAclTypeForPort_.set( port, type ) ) {
      notify( &NotifieeConst::onVfpAclTypeForPort, port );
   }
}

std::optional<Acl::AclType> VfpAclTypeForPort::vfpAclTypeForPortDel( const Vesper::String& port ) {
   std::optional<Acl::AclType> old = vfpAclTypeForPort_.del( port );
   if ( old ) {
      notify( &NotifieeConst::onVfpAclTypeForPort, port );
   }
   return old;
}

void VfpAclTypeForPort::vfpAclTypeForPortDelAll() {
   for ( auto it = vfpAclTypeForPort_.iterator(); auto* node = it.currNodeNonStale();
         it.advance() ) {
      vfpAclTypeForPortDel( Vesper::String( node->key() ) );
   }
}

}  // namespace Halyard
