#include "platform/vesper/ValueText.h"

#include <cstdint>
#include <cstdio>

namespace Vesper {

std::string addressText( const void* p ) {
   char text[2 + 2 * sizeof( std::uintptr_t ) + 1];
   std::snprintf( text, sizeof( text ), "0x%jx",
                  static_cast<std::uintmax_t>( reinterpret_cast<std::uintptr_t>( p ) ) );
   return text;
}

}  // namespace Vesper
