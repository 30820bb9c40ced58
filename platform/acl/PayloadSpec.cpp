#include "platform/acl/PayloadSpec.h"

#include <algorithm>
#include <cstdio>

#include "platform/vesper/Exception.h"

namespace Acl {

PayloadSpec::PayloadSpec( PayloadStart start, std::vector<PayloadValue> values )
    : start_( start ), values_( std::move( values ) ) {
   if ( values_.size() > maxValues ) {
      throw Vesper::RangeException( "PayloadSpec::values > 8 not allowed" );
   }
}

unsigned long payloadSpecToValue( PayloadValue* out, unsigned long capacity,
                                  const PayloadSpec& spec ) {
   unsigned long n = std::min<unsigned long>( capacity, spec.values().size() );
   std::copy_n( spec.values().begin(), n, out );
   return n;
}

std::string valueToStrep( const PayloadSpec& spec ) {
   std::string text = Vesper::stringValue( spec.start() );
   char buf[64];
   for ( const PayloadValue& v : spec.values() ) {
      std::snprintf( buf, sizeof( buf ), " %u/0x%x/0x%x", v.offset, v.pattern, v.mask );
      text += buf;
   }
   return text;
}

std::ostream& operator<<( std::ostream& os, const PayloadSpec& spec ) {
   return os << valueToStrep( spec );
}

}  // namespace Acl
