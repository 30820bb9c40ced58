#include "platform/fennel/AclVlanIdOrNone.h"

#include "platform/pylon/ValueHash.h"

namespace Fennel {

AclVlanIdOrNone::AclVlanIdOrNone( U64 value ) {
   if ( value > vlanSharingId() ) {
      throw Vesper::RangeException(
          "AclVlanIdOrNone::value > AclVlanIdOrNone::vlanSharingId not allowed" );
   }
   value_ = static_cast<U16>( value );
}

U32 AclVlanIdOrNone::hash() const {
   return Pylon::OneAtATimeHash().addU16( value_ ).value();
}

std::string valueToStrep( AclVlanIdOrNone v ) {
   return std::to_string( v.value() );
}

AclVlanIdOrNone parseStrep( std::string_view text, Pylon::ValueType<AclVlanIdOrNone> ) {
   auto n = Pylon::parseUnsigned( text );
   if ( !n ) {
      throw Vesper::ParseException( "'" + std::string( text ) + "' is not an ACL VLAN number" );
   }
   return AclVlanIdOrNone( *n );
}

std::ostream& operator<<( std::ostream& os, AclVlanIdOrNone v ) {
   return os << valueToStrep( v );
}

}  // namespace Fennel
