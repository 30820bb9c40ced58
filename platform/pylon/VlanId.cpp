#include "platform/pylon/VlanId.h"

#include "platform/pylon/ValueHash.h"

namespace Pylon {

VlanId::VlanId( S64 value ) {
   if ( value < min || value > max ) {
      throw Vesper::RangeException( "VlanId::value < 1 or > 4094 not allowed" );
   }
   value_ = static_cast<U16>( value );
}

U32 VlanId::hash() const {
   return OneAtATimeHash().addU16( value_ ).value();
}

std::string valueToStrep( VlanId v ) {
   return std::to_string( v.value() );
}

VlanId parseStrep( std::string_view text, ValueType<VlanId> ) {
   std::optional<S64> n = parseSigned( text );
   if ( !n ) {
      throw Vesper::ParseException( "'" + std::string( text ) + "' is not a VLAN number" );
   }
   return VlanId( *n );
}

std::ostream& operator<<( std::ostream& os, VlanId v ) {
   return os << valueToStrep( v );
}

}  // namespace Pylon
