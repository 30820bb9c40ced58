#include "platform/pylon/U10.h"

#include "platform/pylon/ValueHash.h"

namespace Pylon {

U10::U10( S64 value ) {
   if ( value < min || value > max ) {
      throw Vesper::RangeException( "U10::value < 0 or > 0x03ff not allowed" );
   }
   value_ = static_cast<U16>( value );
}

U32 U10::hash() const {
   return OneAtATimeHash().addU16( value_ ).value();
}

std::string valueToStrep( U10 v ) {
   return std::to_string( v.value() );
}

U10 parseStrep( std::string_view text, ValueType<U10> ) {
   std::optional<S64> n = parseSigned( text );
   if ( !n ) {
      throw Vesper::ParseException( "'" + std::string( text ) + "' is not a number" );
   }
   return U10( *n );
}

std::ostream& operator<<( std::ostream& os, U10 v ) {
   return os << valueToStrep( v );
}

}  // namespace Pylon
