#include "platform/acl/UniqueId.h"

#include <atomic>

#include "platform/pylon/ValueHash.h"

namespace Acl {

UniqueId UniqueId::next() {
   static std::atomic<U64> last{ 0 };
   return UniqueId( generatedBit | ++last );
}

U32 UniqueId::hash() const {
   return Pylon::OneAtATimeHash().addU64( value_ ).value();
}

std::string valueToStrep( UniqueId id ) {
   return std::to_string( id.value() );
}

UniqueId parseStrep( std::string_view text, Pylon::ValueType<UniqueId> ) {
   auto value = Pylon::parseUnsigned( text );
   if ( !value ) {
      throw Vesper::ParseException( "'" + std::string( text ) + "' is not a rule unique id" );
   }
   return UniqueId( *value );
}

std::ostream& operator<<( std::ostream& os, UniqueId id ) {
   return os << valueToStrep( id );
}

}  // namespace Acl
