#include "platform/shim/FpCmd.h"

#include <cstdio>

namespace Shim {

void appendFpPart( std::string& line, std::string_view text ) {
   line += text;
}

void appendFpPart( std::string& line, FpHex hex ) {
   char digits[32];
   std::snprintf( digits, sizeof digits, "%0*llx", hex.width,
                  static_cast<unsigned long long>( hex.value ) );
   line += digits;
}

void appendFpPart( std::string& line, FpHexBytes hex ) {
   static constexpr char digits[] = "0123456789abcdef";
   for ( std::size_t i = 0; i < hex.count; ++i ) {
      line += digits[hex.bytes[i] >> 4];
      line += digits[hex.bytes[i] & 0xf];
   }
}

}  // namespace Shim
