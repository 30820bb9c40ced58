#include "platform/halyard/UdfData.h"

namespace Halyard {

namespace {

constexpr std::string_view typeName = "Halyard::UdfData";

template <U64 max>
auto numberUpTo( std::string_view raw ) {
   auto n = Pylon::parseUnsigned( raw );
   if ( !n || *n > max ) {
      throw Vesper::ParseException( "expected a number up to " + std::to_string( max ) );
   }
   return *n;
}

}  // namespace

std::string valueToStrep( const UdfData& data ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "base", Vesper::stringValue( data.base() ) )
       .attribute( "offset", std::to_string( data.offset() ) )
       .attribute( "pattern", std::to_string( data.pattern() ) )
       .attribute( "mask", std::to_string( data.mask() ) )
       .attribute( "proto", std::to_string( data.proto() ) )
       .done();
}

UdfData parseStrep( std::string_view text, Pylon::ValueType<UdfData> ) {
   Pylon::ValueTextReader reader( text, typeName );
   auto base = reader.attribute( "base", Vesper::sequenceToValue<UdfOffsetBase> );
   auto offset = reader.attribute( "offset", numberUpTo<0xFFFF> );
   auto pattern = reader.attribute( "pattern", numberUpTo<0xFFFF> );
   auto mask = reader.attribute( "mask", numberUpTo<0xFFFF> );
   auto proto = reader.attribute( "proto", numberUpTo<0xFFFFFFFF> );
   reader.end();
   return UdfData( base, static_cast<U16>( offset ), static_cast<U16>( pattern ),
                   static_cast<U16>( mask ), static_cast<U32>( proto ) );
}

std::ostream& operator<<( std::ostream& os, const UdfData& data ) {
   return os << valueToStrep( data );
}

}  // namespace Halyard
