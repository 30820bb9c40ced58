#include "platform/pylon/ModId.h"

#include "platform/pylon/ValueHash.h"

namespace Pylon {

ModId::ModId( S64 value ) {
   if ( value < min || value > null ) {
      throw Vesper::RangeException( "ModId::value < ModId::min or > ModId::null not allowed" );
   }
   value_ = static_cast<U16>( value );
}

U32 ModId::hash() const {
   return OneAtATimeHash().addU16( value_ ).value();
}

std::string valueToStrep( ModId v ) {
   return std::to_string( v.value() );
}

ModId parseStrep( std::string_view text, ValueType<ModId> ) {
   std::optional<S64> n = parseSigned( text );
   if ( !n ) {
      throw Vesper::ParseException( "'" + std::string( text ) + "' is not a module id" );
   }
   return ModId( *n );
}

std::ostream& operator<<( std::ostream& os, ModId v ) {
   return os << valueToStrep( v );
}

}  // namespace Pylon
