#include "platform/vesper/Enum.h"

#include "platform/vesper/Exception.h"

namespace Vesper {

void throwEnumParseError( std::string_view typeName, std::string_view text ) {
   throw ParseException( "'" + std::string( text ) + "' is not a value of " +
                         std::string( typeName ) );
}

}  // namespace Vesper
