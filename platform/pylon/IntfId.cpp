#include "platform/pylon/IntfId.h"

#include "platform/pylon/ValueHash.h"

namespace Pylon {

namespace {

constexpr std::string_view ethernetPrefix = "Ethernet";
constexpr std::string_view portChannelPrefix = "Port-Channel";
constexpr std::string_view vlanPrefix = "Vlan";

void checkNumber( U32 n, const char* what ) {
   if ( n < 1 || n > IntfId::maxNumber ) {
      throw Vesper::RangeException( std::string( "IntfId::" ) + what +
                                    " < 1 or > 65535 not allowed" );
   }
}

}  // namespace

IntfId IntfId::make( Kind kind, U32 number, U32 lane, U32 subId ) {
   return IntfId( U64( kind ) << 48 | U64( number ) << 32 | U64( lane ) << 16 | subId );
}

IntfId IntfId::ethernet( U32 port, U32 lane ) {
   checkNumber( port, "port" );
   if ( lane != 0 ) {
      checkNumber( lane, "lane" );
   }
   return make( Kind::ethernet, port, lane, 0 );
}

IntfId IntfId::portChannel( U32 number ) {
   checkNumber( number, "portChannel" );
   return make( Kind::portChannel, number, 0, 0 );
}

IntfId IntfId::vlan( VlanId vlan ) {
   return make( Kind::vlan, vlan.value(), 0, 0 );
}

IntfId IntfId::subIntf( U32 subId ) const {
   if ( !isEthernet() && !isPortChannel() ) {
      throw Vesper::RangeException( "IntfId::subIntf of " + valueToStrep( *this ) +
                                    " not allowed" );
   }
   checkNumber( subId, "subIntf" );
   return IntfId( value_ | subId );
}

U32 IntfId::hash() const {
   return OneAtATimeHash().addU64( value_ ).value();
}

std::string valueToStrep( IntfId intf ) {
   std::string text;
   switch ( intf.kind() ) {
      case IntfId::Kind::null:
         return text;
      case IntfId::Kind::ethernet:
         text = std::string( ethernetPrefix ) + std::to_string( intf.number() );
         if ( intf.lane() ) {
            text += "/" + std::to_string( intf.lane() );
         }
         break;
      case IntfId::Kind::portChannel:
         text = std::string( portChannelPrefix ) + std::to_string( intf.number() );
         break;
      case IntfId::Kind::vlan:
         text = std::string( vlanPrefix ) + std::to_string( intf.number() );
         break;
   }
   if ( intf.isSubIntf() ) {
      text += "." + std::to_string( intf.subIntfId() );
   }
   return text;
}

namespace {

[[noreturn]] void badName( std::string_view text ) {
   throw Vesper::ParseException(
       "'" + std::string( text ) +
       "' is not an interface name: expected EthernetN, EthernetN/M, Port-ChannelN, VlanN, "
       "or a sub-interface EthernetN.S, EthernetN/M.S, Port-ChannelN.S" );
}

// Takes a leading run of decimal digits, 1 to 65535, without leading zeros.
std::optional<U32> takeNumber( std::string_view& rest ) {
   std::size_t n = 0;
   while ( n < rest.size() && n < 6 && rest[n] >= '0' && rest[n] <= '9' ) {
      ++n;
   }
   if ( n == 0 || rest[0] == '0' ) {
      return std::nullopt;
   }
   auto value = parseUnsigned( rest.substr( 0, n ) );
   if ( !value || *value > IntfId::maxNumber ) {
      return std::nullopt;
   }
   rest.remove_prefix( n );
   return static_cast<U32>( *value );
}

// "<sep><number>" if rest starts with sep; 0 if it doesn't.
std::optional<U32> takeOptionalPart( std::string_view& rest, char sep ) {
   if ( rest.empty() || rest[0] != sep ) {
      return 0;
   }
   rest.remove_prefix( 1 );
   return takeNumber( rest );
}

}  // namespace

IntfId parseStrep( std::string_view text, ValueType<IntfId> ) {
   if ( text.empty() ) {
      return IntfId();
   }
   std::string_view rest = text;
   std::optional<U32> number, lane = 0, sub = 0;
   IntfId intf;
   if ( rest.starts_with( ethernetPrefix ) ) {
      rest.remove_prefix( ethernetPrefix.size() );
      number = takeNumber( rest );
      lane = takeOptionalPart( rest, '/' );
      sub = takeOptionalPart( rest, '.' );
      if ( number && lane && sub && rest.empty() ) {
         intf = IntfId::ethernet( *number, *lane );
      }
   } else if ( rest.starts_with( portChannelPrefix ) ) {
      rest.remove_prefix( portChannelPrefix.size() );
      number = takeNumber( rest );
      sub = takeOptionalPart( rest, '.' );
      if ( number && sub && rest.empty() ) {
         intf = IntfId::portChannel( *number );
      }
   } else if ( rest.starts_with( vlanPrefix ) ) {
      rest.remove_prefix( vlanPrefix.size() );
      number = takeNumber( rest );
      if ( number && rest.empty() && *number <= VlanId::max ) {
         intf = IntfId::vlan( VlanId( *number ) );
      }
   }
   if ( intf.isNull() ) {
      badName( text );
   }
   return *sub ? intf.subIntf( *sub ) : intf;
}

std::ostream& operator<<( std::ostream& os, IntfId intf ) {
   return os << valueToStrep( intf );
}

}  // namespace Pylon
