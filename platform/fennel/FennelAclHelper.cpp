// The state that FennelHelper::AclHelper keeps for its back-end: the dirty
// marks, unit errors, update requests, blocked interfaces and capabilities.
#include "platform/fennel/FennelAclHelper.h"

#include <utility>

#include "platform/vesper/Assert.h"

namespace FennelHelper {

namespace {

// Empties `map` member by member through `del`, which tells the notifiees;
// the key is copied first, since the member goes with the delete.
template <class Map, class Del>
void delAllThrough( const Map& map, Del&& del ) {
   for ( auto it = map.iterator(); auto* node = it.currNodeNonStale(); it.advance() ) {
      const auto key = node->key();
      del( key );
   }
}

}  // namespace

AclHelper::AclHelper() {
   for ( size_t i = 0; i < aclCapabilityCount; ++i ) {
      capabilities_[i] = aclCapabilityDefault( static_cast<AclCapability>( i ) );
   }
}

AclHelper::~AclHelper() = default;

void AclHelper::dirtyIs( bool dirty ) {
   if ( dirty == dirty_ ) {
      return;
   }
   dirty_ = dirty;
   notify( &NotifieeConst::onDirty );
}

void AclHelper::dirtyAclIs( const Fennel::AclKey& aclKey ) {
   if ( dirtyAcl_.set( aclKey, true ) ) {
      notify( &NotifieeConst::onDirtyAcl, aclKey );
   }
}

void AclHelper::dirtyAclDel( const Fennel::AclKey& aclKey ) {
   if ( dirtyAcl_.del( aclKey ) ) {
      notify( &NotifieeConst::onDirtyAcl, aclKey );
   }
}

void AclHelper::dirtyAclDelAll() {
   delAllThrough( dirtyAcl_, [this]( const Fennel::AclKey& key ) { dirtyAclDel( key ); } );
}

Fennel::AclCreateError AclHelper::unitError( const Vesper::Name& chipName ) const {
   const Fennel::AclCreateError* error = unitError_.find( chipName );
   return error ? *error : Fennel::aclCreateSuccess;
}

void AclHelper::unitErrorIs( const Vesper::Name& chipName, Fennel::AclCreateError error ) {
   if ( unitError_.set( chipName, error ) ) {
      notify( &NotifieeConst::onUnitError, chipName );
   }
}

void AclHelper::unitErrorDel( const Vesper::Name& chipName ) {
   if ( unitError_.del( chipName ) ) {
      notify( &NotifieeConst::onUnitError, chipName );
   }
}

void AclHelper::unitErrorDelAll() {
   delAllThrough( unitError_, [this]( const Vesper::Name& name ) { unitErrorDel( name ); } );
}

bool AclHelper::publishUnitError( const Vesper::Name& chipName ) const {
   const bool* publish = publishUnitError_.find( chipName );
   return publish && *publish;
}

void AclHelper::publishUnitErrorIs( const Vesper::Name& chipName, bool publish ) {
   if ( publishUnitError_.set( chipName, publish ) ) {
      notify( &NotifieeConst::onPublishUnitError, chipName );
   }
}

void AclHelper::publishUnitErrorDel( const Vesper::Name& chipName ) {
   if ( publishUnitError_.del( chipName ) ) {
      notify( &NotifieeConst::onPublishUnitError, chipName );
   }
}

void AclHelper::needsDeferredUpdateIs( bool needed ) {
   if ( needed == needsDeferredUpdate_ ) {
      return;
   }
   needsDeferredUpdate_ = needed;
   notify( &NotifieeConst::onNeedsDeferredUpdate );
}

void AclHelper::asyncAclConfigIs( bool async ) {
   if ( async == asyncAclConfig_ ) {
      return;
   }
   asyncAclConfig_ = async;
   notify( &NotifieeConst::onAsyncAclConfig );
}

bool AclHelper::aclIntfBlockedStatus( Pylon::IntfId intf ) const {
   const bool* blocked = aclIntfBlockedStatus_.find( intf );
   return blocked && *blocked;
}

void AclHelper::aclIntfBlockedStatusIs( Pylon::IntfId intf, bool blocked ) {
   if ( aclIntfBlockedStatus_.set( intf, blocked ) ) {
      notify( &NotifieeConst::onAclIntfBlockedStatus, intf );
   }
}

void AclHelper::aclIntfBlockedStatusDel( Pylon::IntfId intf ) {
   if ( aclIntfBlockedStatus_.del( intf ) ) {
      notify( &NotifieeConst::onAclIntfBlockedStatus, intf );
   }
}

bool AclHelper::getPermitDuringAclUpdate( Acl::PermitDuringAclUpdateConfig cliConfig ) const {
   if ( !permitDuringAclUpdate() ) {
      return false;
   }
   switch ( cliConfig ) {
      case Acl::PermitDuringAclUpdateConfig::permit:
         return true;
      case Acl::PermitDuringAclUpdateConfig::deny:
         return false;
      case Acl::PermitDuringAclUpdateConfig::platformDefault:
         break;
   }
   return defaultActionDuringAclUpdatePermit();
}

bool AclHelper::capability( AclCapability capability ) const {
   const auto index = static_cast<size_t>( capability );
   VESPER_ASSERT( index < aclCapabilityCount );
   return capabilities_[index];
}

void AclHelper::capabilityIs( AclCapability capability, bool value ) {
   const auto index = static_cast<size_t>( capability );
   VESPER_ASSERT( index < aclCapabilityCount );
   if ( capabilities_[index] == value ) {
      return;
   }
   capabilities_[index] = value;
   notify( &NotifieeConst::onCapability, capability );
}

U8 AclHelper::supportedTcpFlags() const {
   return supportedTcpFlags_ ? *supportedTcpFlags_ : supportedTcpFlagsDefault();
}

void AclHelper::supportedTcpFlagsIs( U8 flags ) {
   const U8 before = supportedTcpFlags();
   supportedTcpFlags_ = flags;
   if ( flags != before ) {
      notify( &NotifieeConst::onSupportedTcpFlags );
   }
}

void AclHelper::installImplicitIcmp6RulesIs( Fennel::Ip6DefaultIcmp6TypesSupported types ) {
   if ( types == installImplicitIcmp6Rules_ ) {
      return;
   }
   installImplicitIcmp6Rules_ = types;
   notify( &NotifieeConst::onInstallImplicitIcmp6Rules );
}

}  // namespace FennelHelper
