#include "platform/pylon/IpAddr.h"

#include "platform/pylon/ValueHash.h"

namespace Pylon {

IpAddrWithMask::IpAddrWithMask( IpAddr address, S64 len ) : address_( address ) {
   if ( len < 0 || len > maxLen ) {
      throw Vesper::RangeException( "IpAddrWithMask::len > 32 not allowed" );
   }
   len_ = static_cast<U8>( len );
}

U32 IpAddr::hash() const {
   return OneAtATimeHash().addU32( value_ ).value();
}

U32 IpAddrWithMask::hash() const {
   return OneAtATimeHash().addU32( address_.value() ).addByte( len_ ).value();
}

U32 IpAddrWithFullMask::hash() const {
   return OneAtATimeHash().addU32( address_.value() ).addU32( mask_ ).value();
}

std::string valueToStrep( IpAddr addr ) {
   auto b = addr.bytes();
   return std::to_string( b[0] ) + "." + std::to_string( b[1] ) + "." + std::to_string( b[2] ) +
          "." + std::to_string( b[3] );
}

std::string valueToStrep( const IpAddrWithMask& addr ) {
   return valueToStrep( addr.address() ) + "/" + std::to_string( addr.len() );
}

std::string valueToStrep( const IpAddrWithFullMask& addr ) {
   return valueToStrep( addr.address() ) + "/" + valueToStrep( IpAddr( addr.mask() ) );
}

namespace {

[[noreturn]] void badText( std::string_view text, std::string_view what ) {
   throw Vesper::ParseException( "'" + std::string( text ) + "' is not " + std::string( what ) );
}

// Four decimal octets of 1 to 3 digits each, 0 to 255.
std::optional<IpAddr> parseDottedQuad( std::string_view text ) {
   U32 value = 0;
   for ( int octet = 0; octet < 4; ++octet ) {
      std::size_t dot = octet < 3 ? text.find( '.' ) : text.size();
      if ( dot == std::string_view::npos || dot == 0 || dot > 3 ) {
         return std::nullopt;
      }
      std::string_view digits = text.substr( 0, dot );
      if ( digits.find_first_not_of( "0123456789" ) != std::string_view::npos ) {
         return std::nullopt;
      }
      auto n = parseUnsigned( digits );
      if ( !n || *n > 255 ) {
         return std::nullopt;
      }
      value = value << 8 | static_cast<U32>( *n );
      text.remove_prefix( octet < 3 ? dot + 1 : dot );
   }
   return IpAddr( value );
}

std::pair<std::string_view, std::string_view> splitAtSlash( std::string_view text,
                                                            std::string_view what ) {
   std::size_t slash = text.find( '/' );
   if ( slash == std::string_view::npos ) {
      badText( text, what );
   }
   return { text.substr( 0, slash ), text.substr( slash + 1 ) };
}

std::optional<S64> decimalLength( std::string_view text ) {
   if ( text.empty() || text.find_first_not_of( "0123456789" ) != std::string_view::npos ) {
      return std::nullopt;
   }
   return parseSigned( text );
}

}  // namespace

IpAddr parseStrep( std::string_view text, ValueType<IpAddr> ) {
   auto addr = parseDottedQuad( text );
   if ( !addr ) {
      badText( text, "an IPv4 address" );
   }
   return *addr;
}

IpAddrWithMask parseStrep( std::string_view text, ValueType<IpAddrWithMask> ) {
   constexpr std::string_view what = "an IPv4 prefix (a.b.c.d/len)";
   auto [addrText, lenText] = splitAtSlash( text, what );
   auto addr = parseDottedQuad( addrText );
   auto len = decimalLength( lenText );
   if ( !addr || !len ) {
      badText( text, what );
   }
   return IpAddrWithMask( *addr, *len );
}

IpAddrWithFullMask parseStrep( std::string_view text, ValueType<IpAddrWithFullMask> ) {
   constexpr std::string_view what = "an IPv4 address and mask (a.b.c.d/m.m.m.m or a.b.c.d/len)";
   auto [addrText, maskText] = splitAtSlash( text, what );
   auto addr = parseDottedQuad( addrText );
   if ( !addr ) {
      badText( text, what );
   }
   if ( auto mask = parseDottedQuad( maskText ) ) {
      return IpAddrWithFullMask( *addr, mask->value() );
   }
   auto len = decimalLength( maskText );
   if ( !len || *len > IpAddrWithMask::maxLen ) {
      badText( text, what );
   }
   return IpAddrWithFullMask( IpAddrWithMask( *addr, *len ) );
}

std::ostream& operator<<( std::ostream& os, IpAddr addr ) {
   return os << valueToStrep( addr );
}
std::ostream& operator<<( std::ostream& os, const IpAddrWithMask& addr ) {
   return os << valueToStrep( addr );
}
std::ostream& operator<<( std::ostream& os, const IpAddrWithFullMask& addr ) {
   return os << valueToStrep( addr );
}

}  // namespace Pylon
