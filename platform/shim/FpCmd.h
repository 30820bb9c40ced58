// The field-processor command lines on the trace handle Halyard::bcmFpCmd.
//
// Each call that programs a qualifier or an action also writes one line at
// level 0 on Halyard::bcmFpCmd, in the shape of an SDK shell's command, so
// that the lines read together are the commands given, in order:
//
//    fpQual( entry, " IpProtocol ", proto, " 0xFF" )   "fp qual 12 IpProtocol 6 0xFF"
//    fpActionAdd( entry, " Drop" )                     "fp action add 12 Drop"
//    fpQual( entry, " TcpControl 0x", FpHex{ flags } ) "fp qual 12 TcpControl 0x12"
//
// The entry number is decimal. After it come the parts as given: text as it
// stands, integers in decimal (U8 included, never as a character), FpHex and
// FpHexBytes in lower-case hexadecimal for the short names that end in "0x".
// Nothing is formatted unless level 0 of the handle is on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/vesper/Trace.h"
#include "platform/vesper/Types.h"

namespace Shim {

// A number in hexadecimal, without "0x", zero-padded to `width` digits.
struct FpHex {
   U64 value;
   int width = 0;
};

// Bytes in hexadecimal, two digits each, first byte first (IPv6 addresses).
struct FpHexBytes {
   const U8* bytes;
   std::size_t count;
};

void appendFpPart( std::string& line, std::string_view text );
void appendFpPart( std::string& line, FpHex hex );
void appendFpPart( std::string& line, FpHexBytes hex );

template <typename Number>
requires( std::is_integral_v<Number> ||
          std::is_enum_v<Number> ) void appendFpPart( std::string& line, Number number ) {
   static_assert( !std::is_same_v<Number, bool> && !std::is_same_v<Number, char>,
                  "pass text as a string, flags as numbers" );
   if constexpr ( std::is_enum_v<Number> ) {
      line += std::to_string( static_cast<std::underlying_type_t<Number> >( number ) );
   } else if constexpr ( sizeof( Number ) < sizeof( int ) ) {
      line += std::to_string( static_cast<int>( number ) );
   } else {
      line += std::to_string( number );
   }
}

// Writes `verb` and `entry` followed by the parts, if the handle's level 0 is on.
template <typename... Parts>
void writeFpCmd( std::string_view verb, U64 entry, const Parts&... parts ) {
   if ( !Halyard::bcmFpCmd.enabled( 0 ) ) {
      return;
   }
   std::string line( verb );
   line += std::to_string( entry );
   ( appendFpPart( line, parts ), ... );
   Halyard::bcmFpCmd.write( 0, line );
}

template <typename... Parts>
void fpQual( U64 entry, const Parts&... parts ) {
   writeFpCmd( "fp qual ", entry, parts... );
}

template <typename... Parts>
void fpActionAdd( U64 entry, const Parts&... parts ) {
   writeFpCmd( "fp action add ", entry, parts... );
}

inline void fpEntryInstall( U64 entry ) {
   writeFpCmd( "fp entry install ", entry );
}

}  // namespace Shim
