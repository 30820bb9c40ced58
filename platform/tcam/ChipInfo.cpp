#include "platform/tcam/ChipInfo.h"

#include "platform/pylon/ValueHash.h"
#include "platform/vesper/Exception.h"

namespace HalyardCentral {

namespace {

constexpr std::string_view typeName = "HalyardCentral::ChipInfo";

U32 parseWord( std::string_view raw ) {
   auto n = Pylon::parseUnsigned( raw );
   if ( !n || *n > 0xFFFFFFFF ) {
      throw Vesper::ParseException( "expected a number" );
   }
   return static_cast<U32>( *n );
}

}  // namespace

U32 ChipInfo::hash() const {
   return Pylon::OneAtATimeHash()
       .addU32( familyCode_ )
       .addU32( deviceId_ )
       .addU32( revisionId_ )
       .value();
}

std::string valueToStrep( const ChipInfo& chip ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "familyCode", std::to_string( chip.familyCode() ) )
       .attribute( "deviceId", std::to_string( chip.deviceId() ) )
       .attribute( "revisionId", std::to_string( chip.revisionId() ) )
       .done();
}

ChipInfo parseStrep( std::string_view text, Pylon::ValueType<ChipInfo> ) {
   Pylon::ValueTextReader reader( text, typeName );
   const U32 familyCode = reader.attribute( "familyCode", parseWord );
   const U32 deviceId = reader.attribute( "deviceId", parseWord );
   const U32 revisionId = reader.attribute( "revisionId", parseWord );
   reader.end();
   return ChipInfo( familyCode, deviceId, revisionId );
}

std::ostream& operator<<( std::ostream& os, const ChipInfo& chip ) {
   return os << valueToStrep( chip );
}

}  // namespace HalyardCentral
