#include "platform/halyard/HalyardAclTypeDirectionFeature.h"

#include "platform/pylon/ValueHash.h"

namespace Halyard {

U32 HalyardAclTypeDirectionFeature::hash() const {
   return Pylon::OneAtATimeHash()
       .addU32( static_cast<U32>( type_ ) )
       .addU32( static_cast<U32>( direction_ ) )
       .addU32( static_cast<U32>( feature_ ) )
       .value();
}

namespace {
constexpr std::string_view typeName = "Halyard::HalyardAclTypeDirectionFeature";
}

std::string valueToStrep( const HalyardAclTypeDirectionFeature& tdf ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "type", Vesper::stringValue( tdf.type() ) )
       .attribute( "direction", Vesper::stringValue( tdf.direction() ) )
       .attribute( "feature", Vesper::stringValue( tdf.feature() ) )
       .done();
}

HalyardAclTypeDirectionFeature parseStrep( std::string_view text,
                                           Pylon::ValueType<HalyardAclTypeDirectionFeature> ) {
   Pylon::ValueTextReader reader( text, typeName );
   auto type = reader.attribute( "type", Vesper::sequenceToValue<Acl::AclType> );
   auto direction = reader.attribute( "direction", Vesper::sequenceToValue<Acl::AclDirection> );
   auto feature = reader.attribute( "feature", Vesper::sequenceToValue<HalyardAclFeature> );
   reader.end();
   return HalyardAclTypeDirectionFeature( type, direction, feature );
}

std::ostream& operator<<( std::ostream& os, const HalyardAclTypeDirectionFeature& tdf ) {
   return os << valueToStrep( tdf );
}

}  // namespace Halyard
