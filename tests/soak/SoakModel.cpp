#include "tests/soak/SoakModel.h"

#include <cstdio>
#include <sstream>

namespace Soak {

namespace {

std::string macText( U64 value ) {
   char text[18];
   std::snprintf( text, sizeof( text ), "%02x:%02x:%02x:%02x:%02x:%02x",
                  unsigned( value >> 40 & 0xFF ), unsigned( value >> 32 & 0xFF ),
                  unsigned( value >> 24 & 0xFF ), unsigned( value >> 16 & 0xFF ),
                  unsigned( value >> 8 & 0xFF ), unsigned( value & 0xFF ) );
   return text;
}

std::string macTerm( U64 value, U64 mask ) {
   if ( mask == 0 ) {
      return "any";
   }
   if ( mask == 0xFFFFFFFFFFFFull ) {
      return "host " + macText( value );
   }
   return macText( value ) + " " + macText( mask );
}

std::string addressText( Family family, const std::array<U8, 16>& b ) {
   std::ostringstream out;
   if ( family == Family::ip4 ) {
      out << int( b[0] ) << "." << int( b[1] ) << "." << int( b[2] ) << "." << int( b[3] );
   } else {
      out << std::hex;
      for ( int i = 0; i < 8; ++i ) {
         out << ( i ? ":" : "" ) << ( b[2 * i] << 8 | b[2 * i + 1] );
      }
   }
   return out.str();
}

std::string prefixText( Family family, const Prefix& p ) {
   if ( p.len == 0 ) {
      return "any";
   }
   if ( p.len == addressBytes( family ) * 8 ) {
      return "host " + addressText( family, p.bytes );
   }
   return addressText( family, p.bytes ) + "/" + std::to_string( p.len );
}

std::string portText( const PortTerm& t ) {
   static const char* const words[] = { "", "eq", "neq", "gt", "lt", "range" };
   if ( t.op == PortTerm::Op::none ) {
      return "";
   }
   std::string s = std::string( " " ) + words[static_cast<int>( t.op )];
   for ( U16 p : t.ports ) {
      s += " " + std::to_string( p );
   }
   return s;
}

std::string payloadText( const std::optional<Payload>& p ) {
   if ( !p ) {
      return "";
   }
   char text[64];
   std::snprintf( text, sizeof( text ), " payload %s%u/0x%x/0x%x",
                  p->headerStart ? "header-start " : "", unsigned( p->word ), p->pattern, p->mask );
   return text;
}

const char* protoWord( Family family, U8 proto ) {
   switch ( proto ) {
      case 0:
         return family == Family::ip6 ? "ipv6" : "ip";
      case 6:
         return "tcp";
      case 17:
         return "udp";
      case 1:
         return "icmp";
      case 58:
         return "icmpv6";
      default:
         return nullptr;
   }
}

}  // namespace

const char* familyWord( Family f ) {
   return f == Family::mac ? "mac" : ( f == Family::ip4 ? "ip" : "ipv6" );
}

U32 addressBytes( Family f ) {
   return f == Family::ip6 ? 16 : 4;
}

std::string ruleText( Family family, U32 seq, const Rule& r ) {
   std::string s = " " + std::to_string( seq ) + ( r.permit ? " permit " : " deny " );
   if ( family == Family::mac ) {
      s += macTerm( r.macSrc, r.macSrcMask ) + " " + macTerm( r.macDst, r.macDstMask );
      if ( r.etherType ) {
         char type[8];
         std::snprintf( type, sizeof( type ), "0x%04x", unsigned( *r.etherType ) );
         s += std::string( " " ) + type;
      }
      return s + payloadText( r.payload ) + "\n";
   }
   const char* proto = protoWord( family, r.proto );
   s += proto ? std::string( proto ) : std::to_string( r.proto );
   s += " " + prefixText( family, r.src ) + portText( r.sport );
   s += " " + prefixText( family, r.dst ) + portText( r.dport );
   if ( r.icmpType ) {
      s += " " + std::to_string( *r.icmpType );
   }
   if ( r.fragments ) {
      s += " fragments";
   }
   return s + payloadText( r.payload ) + "\n";
}

std::string Model::text() const {
   // Updates let traffic pass while a list is rewritten, so that no interface needs blocking.
   std::string s = "hardware access-list update default-result permit\n";
   for ( const auto& [name, list] : lists ) {
      s += std::string( familyWord( list.family ) ) + " access-list " + name + "\n";
      for ( const auto& [seq, rule] : list.rules ) {
         s += ruleText( list.family, seq, rule );
      }
   }
   std::string intf;
   for ( const auto& [key, list] : bindings ) {
      const auto& [name, family, direction] = key;
      if ( name != intf ) {
         s += "interface " + name + "\n";
         intf = name;
      }
      s += std::string( " " ) + familyWord( family ) + " access-group " + list +
           ( direction == Acl::AclDirection::in ? " in\n" : " out\n" );
   }
   return s;
}

}  // namespace Soak
