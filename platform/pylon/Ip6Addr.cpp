#include "platform/pylon/Ip6Addr.h"

#include <charconv>
#include <vector>

#include "platform/pylon/IpAddr.h"
#include "platform/pylon/ValueHash.h"

namespace Pylon {

U32 Ip6Addr::hash() const {
   return OneAtATimeHash().addBytes( bytes_.data(), size ).value();
}

Ip6PrefixLen::Ip6PrefixLen( S64 value ) {
   if ( value < min || value > invalid ) {
      throw Vesper::RangeException(
          "Ip6PrefixLen::value < Ip6PrefixLen::min or > Ip6PrefixLen::invalid not allowed" );
   }
   value_ = static_cast<U8>( value );
}

U32 Ip6PrefixLen::hash() const {
   return OneAtATimeHash().addByte( value_ ).value();
}

Ip6Addr ip6PrefixMask( Ip6PrefixLen len ) {
   unsigned bits = len.isInvalid() ? Ip6PrefixLen::max : len.value();
   Ip6Addr mask;
   for ( std::size_t i = 0; i < Ip6Addr::size && bits > 0; ++i ) {
      unsigned take = bits < 8 ? bits : 8;
      mask.byteIs( i, static_cast<U8>( 0xFF << ( 8 - take ) ) );
      bits -= take;
   }
   return mask;
}

U32 Ip6AddrWithMask::hash() const {
   return OneAtATimeHash()
       .addBytes( address_.bytes().data(), Ip6Addr::size )
       .addByte( len_.value() )
       .value();
}

Ip6PrefixLen Ip6AddrWithFullMask::prefixLen() const {
   unsigned ones = 0;
   while ( ones < Ip6PrefixLen::max && ( mask_.byte( ones / 8 ) & ( 0x80 >> ( ones % 8 ) ) ) ) {
      ++ones;
   }
   if ( ip6PrefixMask( Ip6PrefixLen( ones ) ) != mask_ ) {
      return Ip6PrefixLen( Ip6PrefixLen::invalid );
   }
   return Ip6PrefixLen( ones );
}

U32 Ip6AddrWithFullMask::hash() const {
   return OneAtATimeHash()
       .addBytes( address_.bytes().data(), Ip6Addr::size )
       .addBytes( mask_.bytes().data(), Ip6Addr::size )
       .value();
}

std::string valueToStrep( const Ip6Addr& addr ) {
   U16 groups[8];
   for ( int i = 0; i < 8; ++i ) {
      groups[i] = static_cast<U16>( addr.byte( 2 * i ) << 8 | addr.byte( 2 * i + 1 ) );
   }
   // The longest run of two or more zero groups, the first of equal runs.
   int bestStart = -1, bestLen = 1;
   for ( int i = 0; i < 8; ) {
      int j = i;
      while ( j < 8 && groups[j] == 0 ) {
         ++j;
      }
      if ( j - i > bestLen ) {
         bestStart = i;
         bestLen = j - i;
      }
      i = j == i ? i + 1 : j;
   }
   std::string text;
   char buf[8];
   for ( int i = 0; i < 8; ++i ) {
      if ( i == bestStart ) {
         text += "::";
         i += bestLen - 1;
         continue;
      }
      if ( !text.empty() && text.back() != ':' ) {
         text += ':';
      }
      auto [end, ec] = std::to_chars( buf, buf + sizeof( buf ), groups[i], 16 );
      text.append( buf, end );
   }
   return text;
}

std::string valueToStrep( Ip6PrefixLen len ) {
   return std::to_string( len.value() );
}

std::string valueToStrep( const Ip6AddrWithMask& addr ) {
   return valueToStrep( addr.address() ) + "/" + valueToStrep( addr.len() );
}

std::string valueToStrep( const Ip6AddrWithFullMask& addr ) {
   return valueToStrep( addr.address() ) + "/" + valueToStrep( addr.mask() );
}

namespace {

[[noreturn]] void badText( std::string_view text, std::string_view what ) {
   throw Vesper::ParseException( "'" + std::string( text ) + "' is not " + std::string( what ) );
}

// The 16-bit groups of one side of "::"; the last group of the address may
// be a dotted IPv4 address, which gives two groups.
bool parseGroups( std::string_view text, bool mayEndInIpv4, std::vector<U16>& out ) {
   if ( text.empty() ) {
      return true;
   }
   for ( ;; ) {
      std::size_t colon = text.find( ':' );
      std::string_view group = text.substr( 0, colon );
      if ( colon == std::string_view::npos && mayEndInIpv4 &&
           group.find( '.' ) != std::string_view::npos ) {
         try {
            U32 v4 = strepToValue<IpAddr>( group ).value();
            out.push_back( static_cast<U16>( v4 >> 16 ) );
            out.push_back( static_cast<U16>( v4 ) );
            return true;
         } catch ( const Vesper::ParseException& ) {
            return false;
         }
      }
      U16 value = 0;
      auto [ptr, ec] = std::from_chars( group.data(), group.data() + group.size(), value, 16 );
      if ( group.empty() || group.size() > 4 || ec != std::errc() ||
           ptr != group.data() + group.size() ) {
         return false;
      }
      out.push_back( value );
      if ( colon == std::string_view::npos ) {
         return true;
      }
      text.remove_prefix( colon + 1 );
   }
}

std::optional<Ip6Addr> parseIp6( std::string_view text ) {
   std::size_t gap = text.find( "::" );
   std::vector<U16> head, tail;
   if ( gap == std::string_view::npos ) {
      if ( !parseGroups( text, true, head ) || head.size() != 8 ) {
         return std::nullopt;
      }
   } else {
      std::string_view after = text.substr( gap + 2 );
      if ( after.find( "::" ) != std::string_view::npos ||
           !parseGroups( text.substr( 0, gap ), false, head ) ||
           !parseGroups( after, true, tail ) || head.size() + tail.size() > 7 ) {
         return std::nullopt;
      }
      head.resize( 8 - tail.size(), 0 );
      head.insert( head.end(), tail.begin(), tail.end() );
   }
   Ip6Addr addr;
   for ( int i = 0; i < 8; ++i ) {
      addr.byteIs( 2 * i, static_cast<U8>( head[i] >> 8 ) );
      addr.byteIs( 2 * i + 1, static_cast<U8>( head[i] ) );
   }
   return addr;
}

std::optional<S64> decimalLength( std::string_view text ) {
   if ( text.empty() || text.find_first_not_of( "0123456789" ) != std::string_view::npos ) {
      return std::nullopt;
   }
   return parseSigned( text );
}

}  // namespace

Ip6Addr parseStrep( std::string_view text, ValueType<Ip6Addr> ) {
   auto addr = parseIp6( text );
   if ( !addr ) {
      badText( text, "an IPv6 address" );
   }
   return *addr;
}

Ip6PrefixLen parseStrep( std::string_view text, ValueType<Ip6PrefixLen> ) {
   auto len = parseSigned( text );
   if ( !len ) {
      badText( text, "an IPv6 prefix length" );
   }
   return Ip6PrefixLen( *len );
}

Ip6AddrWithMask parseStrep( std::string_view text, ValueType<Ip6AddrWithMask> ) {
   constexpr std::string_view what = "an IPv6 prefix (address/len)";
   std::size_t slash = text.find( '/' );
   if ( slash == std::string_view::npos ) {
      badText( text, what );
   }
   auto addr = parseIp6( text.substr( 0, slash ) );
   auto len = decimalLength( text.substr( slash + 1 ) );
   if ( !addr || !len ) {
      badText( text, what );
   }
   return Ip6AddrWithMask( *addr, Ip6PrefixLen( *len ) );
}

Ip6AddrWithFullMask parseStrep( std::string_view text, ValueType<Ip6AddrWithFullMask> ) {
   constexpr std::string_view what = "an IPv6 address and mask (address/mask or address/len)";
   std::size_t slash = text.find( '/' );
   if ( slash == std::string_view::npos ) {
      badText( text, what );
   }
   auto addr = parseIp6( text.substr( 0, slash ) );
   if ( !addr ) {
      badText( text, what );
   }
   std::string_view maskText = text.substr( slash + 1 );
   if ( auto mask = parseIp6( maskText ) ) {
      return Ip6AddrWithFullMask( *addr, *mask );
   }
   auto len = decimalLength( maskText );
   if ( !len || *len > Ip6PrefixLen::max ) {
      badText( text, what );
   }
   return Ip6AddrWithFullMask( Ip6AddrWithMask( *addr, Ip6PrefixLen( *len ) ) );
}

std::ostream& operator<<( std::ostream& os, const Ip6Addr& addr ) {
   return os << valueToStrep( addr );
}
std::ostream& operator<<( std::ostream& os, Ip6PrefixLen len ) {
   return os << valueToStrep( len );
}
std::ostream& operator<<( std::ostream& os, const Ip6AddrWithMask& addr ) {
   return os << valueToStrep( addr );
}
std::ostream& operator<<( std::ostream& os, const Ip6AddrWithFullMask& addr ) {
   return os << valueToStrep( addr );
}

}  // namespace Pylon
