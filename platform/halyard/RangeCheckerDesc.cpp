#include "platform/halyard/RangeCheckerDesc.h"

#include "platform/pylon/ValueHash.h"

namespace Halyard {

U32 RangeCheckerDesc::hash() const {
   return Pylon::OneAtATimeHash().addU32( low_ ).addU32( high_ ).addU32( type_ ).value();
}

namespace {

constexpr std::string_view typeName = "Halyard::RangeCheckerDesc";

U32 parseU32( std::string_view raw ) {
   auto n = Pylon::parseUnsigned( raw );
   if ( !n || *n > 0xFFFFFFFF ) {
      throw Vesper::ParseException( "expected a 32-bit number" );
   }
   return static_cast<U32>( *n );
}

}  // namespace

std::string valueToStrep( const RangeCheckerDesc& desc ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "low", std::to_string( desc.low() ) )
       .attribute( "high", std::to_string( desc.high() ) )
       .attribute( "type", std::to_string( desc.type() ) )
       .done();
}

RangeCheckerDesc parseStrep( std::string_view text, Pylon::ValueType<RangeCheckerDesc> ) {
   Pylon::ValueTextReader reader( text, typeName );
   U32 low = reader.attribute( "low", parseU32 );
   U32 high = reader.attribute( "high", parseU32 );
   U32 type = reader.attribute( "type", parseU32 );
   reader.end();
   return RangeCheckerDesc( low, high, type );
}

std::ostream& operator<<( std::ostream& os, const RangeCheckerDesc& desc ) {
   return os << valueToStrep( desc );
}

}  // namespace Halyard
