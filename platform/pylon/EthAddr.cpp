#include "platform/pylon/EthAddr.h"

#include <charconv>
#include <vector>

#include "platform/pylon/ValueHash.h"

namespace Pylon {

U32 EthAddr::hash() const {
   return OneAtATimeHash().addBytes( bytes_.data(), size ).value();
}

std::string valueToStrep( const EthAddr& addr ) {
   static constexpr char digits[] = "0123456789abcdef";
   std::string text;
   for ( std::size_t i = 0; i < EthAddr::size; ++i ) {
      if ( i ) {
         text += ':';
      }
      text += digits[addr.byte( i ) >> 4];
      text += digits[addr.byte( i ) & 0xf];
   }
   return text;
}

namespace {

std::vector<std::string_view> split( std::string_view text, char sep ) {
   std::vector<std::string_view> parts;
   std::size_t start = 0;
   for ( std::size_t pos; ( pos = text.find( sep, start ) ) != std::string_view::npos;
         start = pos + 1 ) {
      parts.push_back( text.substr( start, pos - start ) );
   }
   parts.push_back( text.substr( start ) );
   return parts;
}

// A group of 1 to maxDigits hexadecimal digits, nothing else.
std::optional<U32> hexGroup( std::string_view group, std::size_t maxDigits ) {
   if ( group.empty() || group.size() > maxDigits ) {
      return std::nullopt;
   }
   U32 value = 0;
   auto [ptr, ec] = std::from_chars( group.data(), group.data() + group.size(), value, 16 );
   if ( ec != std::errc() || ptr != group.data() + group.size() ) {
      return std::nullopt;
   }
   return value;
}

std::optional<EthAddr> parseColonForm( std::string_view text ) {
   auto groups = split( text, ':' );
   if ( groups.size() != EthAddr::size ) {
      return std::nullopt;
   }
   EthAddr addr;
   for ( std::size_t i = 0; i < EthAddr::size; ++i ) {
      auto value = hexGroup( groups[i], 2 );
      if ( !value ) {
         return std::nullopt;
      }
      addr.byteIs( i, static_cast<U8>( *value ) );
   }
   return addr;
}

std::optional<EthAddr> parseDottedForm( std::string_view text ) {
   auto groups = split( text, '.' );
   if ( groups.size() != 3 ) {
      return std::nullopt;
   }
   EthAddr addr;
   for ( std::size_t i = 0; i < 3; ++i ) {
      auto value = hexGroup( groups[i], 4 );
      if ( !value ) {
         return std::nullopt;
      }
      addr.byteIs( 2 * i, static_cast<U8>( *value >> 8 ) );
      addr.byteIs( 2 * i + 1, static_cast<U8>( *value ) );
   }
   return addr;
}

}  // namespace

EthAddr parseStrep( std::string_view text, ValueType<EthAddr> ) {
   auto addr = text.find( ':' ) != std::string_view::npos ? parseColonForm( text )
                                                          : parseDottedForm( text );
   if ( !addr ) {
      throw Vesper::ParseException( "'" + std::string( text ) +
                                    "' is not an Ethernet address: expected "
                                    "xx:xx:xx:xx:xx:xx or xxxx.xxxx.xxxx" );
   }
   return *addr;
}

std::ostream& operator<<( std::ostream& os, const EthAddr& addr ) {
   return os << valueToStrep( addr );
}

}  // namespace Pylon
