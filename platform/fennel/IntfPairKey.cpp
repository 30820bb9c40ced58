#include "platform/fennel/IntfPairKey.h"

#include "platform/pylon/ValueHash.h"

namespace Fennel {

U32 IntfPairKey::hash() const {
   return Pylon::OneAtATimeHash().addU64( intfId_.value() ).addU64( subIntfId_.value() ).value();
}

namespace {
constexpr std::string_view typeName = "Fennel::IntfPairKey";
}

std::string valueToStrep( const IntfPairKey& key ) {
   return Pylon::ValueTextWriter( typeName )
       .attribute( "intfId", valueToStrep( key.intfId() ) )
       .attribute( "subIntfId", valueToStrep( key.subIntfId() ) )
       .done();
}

IntfPairKey parseStrep( std::string_view text, Pylon::ValueType<IntfPairKey> ) {
   Pylon::ValueTextReader reader( text, typeName );
   auto intf = reader.attribute( "intfId", Pylon::strepToValue<Pylon::IntfId> );
   auto sub = reader.attribute( "subIntfId", Pylon::strepToValue<Pylon::IntfId> );
   reader.end();
   return IntfPairKey( intf, sub );
}

std::ostream& operator<<( std::ostream& os, const IntfPairKey& key ) {
   return os << valueToStrep( key );
}

}  // namespace Fennel
