#include "platform/fennel/AclKey.h"

#include "platform/pylon/ValueHash.h"

namespace Fennel {

AclKey::AclKey( std::string aclName, Acl::AclType aclType, Acl::AclDirection direction,
                bool standard, AclVlanIdOrNone vlanId, std::string aclGroup )
    : aclName_( std::move( aclName ) ),
      aclType_( aclType ),
      direction_( direction ),
      standard_( standard ),
      vlanId_( vlanId ),
      aclGroup_( std::move( aclGroup ) ) {}

U32 AclKey::hash() const {
   return Pylon::OneAtATimeHash()
       .addText( aclName_ )
       .addU32( static_cast<U32>( aclType_ ) )
       .addU32( static_cast<U32>( direction_ ) )
       .addByte( standard_ )
       .addU16( vlanId_.value() )
       .addText( aclGroup_ )
       .value();
}

namespace {

constexpr std::string_view typeName = "Fennel::AclKey";

std::string unquoted( std::string_view raw ) {
   auto text = Pylon::unquoteText( raw );
   if ( !text ) {
      throw Vesper::ParseException( "expected a quoted text" );
   }
   return *text;
}

}  // namespace

std::string valueToStrep( const AclKey& key ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "aclName", Pylon::quoteText( key.aclName() ) )
       .attribute( "aclType", Vesper::stringValue( key.aclType() ) )
       .attribute( "direction", Vesper::stringValue( key.direction() ) )
       .attribute( "standard", Pylon::boolText( key.standard() ) )
       .attribute( "vlanId", valueToStrep( key.vlanId() ) )
       .attribute( "aclGroup", Pylon::quoteText( key.aclGroup() ) )
       .done();
}

AclKey parseStrep( std::string_view text, Pylon::ValueType<AclKey> ) {
   Pylon::ValueTextReader reader( text, typeName );
   auto name = reader.attribute( "aclName", unquoted );
   auto type = reader.attribute( "aclType", Vesper::sequenceToValue<Acl::AclType> );
   auto direction = reader.attribute( "direction", Vesper::sequenceToValue<Acl::AclDirection> );
   bool standard = reader.attribute( "standard", []( std::string_view raw ) {
      auto b = Pylon::parseBool( raw );
      if ( !b ) {
         throw Vesper::ParseException( "expected True or False" );
      }
      return *b;
   } );
   auto vlanId = reader.attribute( "vlanId", strepToValue<AclVlanIdOrNone> );
   auto group = reader.attribute( "aclGroup", unquoted );
   reader.end();
   return AclKey( std::move( name ), type, direction, standard, vlanId, std::move( group ) );
}

std::ostream& operator<<( std::ostream& os, const AclKey& key ) {
   return os << valueToStrep( key );
}

}  // namespace Fennel
