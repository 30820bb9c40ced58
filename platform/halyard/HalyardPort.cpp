#include "platform/halyard/HalyardPort.h"

#include "platform/pylon/ValueHash.h"

namespace HalyardTypes {

HalyardPort::HalyardPort( U32 unit, U32 port ) {
   if ( unit > 0xFFFF ) {
      throw Vesper::RangeException( "HalyardPort::unit > 0xFFFF not allowed" );
   }
   if ( port > 0xFFFF ) {
      throw Vesper::RangeException( "HalyardPort::port > 0xFFFF not allowed" );
   }
   value_ = port << 16 | unit;
}

U32 HalyardPort::hash() const {
   return Pylon::OneAtATimeHash().addU32( value_ ).value();
}

namespace {

constexpr std::string_view typeName = "HalyardTypes::HalyardPort";

U32 parseU32( std::string_view raw ) {
   auto n = Pylon::parseUnsigned( raw );
   if ( !n || *n > 0xFFFFFFFF ) {
      throw Vesper::ParseException( "expected a number" );
   }
   return static_cast<U32>( *n );
}

}  // namespace

std::string valueToStrep( HalyardPort port ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "unit", std::to_string( port.unit() ) )
       .attribute( "port", std::to_string( port.port() ) )
       .done();
}

HalyardPort parseStrep( std::string_view text, Pylon::ValueType<HalyardPort> ) {
   Pylon::ValueTextReader reader( text, typeName );
   U32 unit = reader.attribute( "unit", parseU32 );
   U32 port = reader.attribute( "port", parseU32 );
   reader.end();
   return HalyardPort( unit, port );
}

std::ostream& operator<<( std::ostream& os, HalyardPort port ) {
   return os << valueToStrep( port );
}

}  // namespace HalyardTypes
