// One packet object of the JSON-lines form, read and written.
#include <algorithm>
#include <cstdio>

#include "cli/packets/PacketInput.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/Exception.h"

namespace HalyardCli {

namespace {

using Json = nlohmann::json;

constexpr U8 kProtoIcmp = 1;
constexpr U8 kProtoTcp = 6;
constexpr U8 kProtoUdp = 17;
constexpr U8 kProtoIcmp6 = 58;
constexpr U16 kEtherTypeIpv4 = 0x0800;
constexpr U16 kEtherTypeIpv6 = 0x86DD;
constexpr U16 kTpidDot1q = 0x8100;

[[noreturn]] void bad( const std::string& message ) {
   throw PacketError( message );
}

constexpr std::pair<std::string_view, U8> kTcpFlags[] = {
    { "fin", Fennel::tcpFin }, { "syn", Fennel::tcpSyn }, { "rst", Fennel::tcpRst },
    { "psh", Fennel::tcpPsh }, { "ack", Fennel::tcpAck }, { "urg", Fennel::tcpUrg } };

constexpr std::pair<std::string_view, Fennel::Frag> kFrags[] = { { "none", Fennel::Frag::none },
                                                                 { "first", Fennel::Frag::first },
                                                                 { "later", Fennel::Frag::later } };

// An object's fields, checked against the names it may have.
class Fields {
 public:
   Fields( const Json& object, std::string path, std::initializer_list<std::string_view> allowed )
       : object_( object ), path_( std::move( path ) ) {
      if ( !object.is_object() ) {
         bad( ( path_.empty() ? std::string( "the line" ) : where( "" ) ) +
              " is not an object: expected {...}" );
      }
      for ( const auto& [key, value] : object.items() ) {
         if ( std::ranges::find( allowed, key ) == allowed.end() ) {
            std::string names;
            for ( std::string_view a : allowed ) {
               names += ( names.empty() ? "" : ", " ) + std::string( a );
            }
            bad( "unknown field " + where( key ) + ": expected " + names );
         }
      }
   }

   const Json* find( std::string_view key ) const {
      const auto it = object_.find( key );
      return it == object_.end() ? nullptr : &*it;
   }
   std::optional<U64> number( std::string_view key, U64 min, U64 max ) const {
      const Json* v = find( key );
      if ( !v ) {
         return std::nullopt;
      }
      if ( !v->is_number_unsigned() || v->get<U64>() < min || v->get<U64>() > max ) {
         bad( where( key ) + " is " + v->dump() + ": expected a number " + std::to_string( min ) +
              " to " + std::to_string( max ) );
      }
      return v->get<U64>();
   }
   std::optional<std::string> text( std::string_view key ) const {
      const Json* v = find( key );
      if ( !v ) {
         return std::nullopt;
      }
      if ( !v->is_string() ) {
         bad( where( key ) + " is " + v->dump() + ": expected a string" );
      }
      return v->get<std::string>();
   }
   // An interface name, which must be one of the switch's when the defaults can tell.
   std::optional<Pylon::IntfId> intf( std::string_view key, const PacketDefaults& defaults ) const {
      const auto id = value<Pylon::IntfId>( key, "an interface name such as Ethernet1" );
      if ( id && defaults.interfaceExists && !defaults.interfaceExists( *id ) ) {
         bad( where( key ) + " is \"" + Pylon::valueToStrep( *id ) +
              "\": expected an interface of the switch" );
      }
      if ( id && id->isNull() ) {
         bad( where( key ) + " is empty: expected an interface name such as Ethernet1" );
      }
      return id;
   }
   template <typename T>
   std::optional<T> value( std::string_view key, std::string_view expected ) const {
      const auto t = text( key );
      if ( !t ) {
         return std::nullopt;
      }
      try {
         return Pylon::strepToValue<T>( *t );
      } catch ( const Vesper::Exception& ) {
         bad( where( key ) + " is \"" + *t + "\": expected " + std::string( expected ) );
      }
   }
   std::string where( std::string_view key ) const {
      return "\"" + path_ + ( path_.empty() || key.empty() ? "" : "." ) + std::string( key ) + "\"";
   }

 private:
   const Json& object_;
   std::string path_;
};

std::vector<U8> hexBytes( const Fields& f, std::string_view key ) {
   const auto t = f.text( key );
   std::vector<U8> bytes;
   if ( !t ) {
      return bytes;
   }
   auto nibble = []( char c ) -> int {
      if ( c >= '0' && c <= '9' ) {
         return c - '0';
      }
      if ( c >= 'a' && c <= 'f' ) {
         return c - 'a' + 10;
      }
      if ( c >= 'A' && c <= 'F' ) {
         return c - 'A' + 10;
      }
      return -1;
   };
   for ( std::size_t i = 0; i < t->size(); i += 2 ) {
      const int hi = nibble( ( *t )[i] );
      const int lo = i + 1 < t->size() ? nibble( ( *t )[i + 1] ) : -1;
      if ( hi < 0 || lo < 0 ) {
         bad( f.where( key ) + " is not hexadecimal bytes: expected an even number of hex digits" );
      }
      bytes.push_back( static_cast<U8>( hi << 4 | lo ) );
   }
   return bytes;
}

Fennel::Frag fragOf( const Fields& f ) {
   const auto t = f.text( "frag" );
   if ( !t ) {
      return Fennel::Frag::none;
   }
   for ( const auto& [name, frag] : kFrags ) {
      if ( name == *t ) {
         return frag;
      }
   }
   bad( f.where( "frag" ) + " is \"" + *t + "\": expected none, first or later" );
}

std::string_view fragName( Fennel::Frag frag ) {
   for ( const auto& [name, value] : kFrags ) {
      if ( value == frag ) {
         return name;
      }
   }
   return "none";
}

void readEth( const Json* j, Fennel::Packet& p ) {
   if ( !j ) {
      return;
   }
   const Fields f( *j, "eth", { "src", "dst", "type" } );
   constexpr std::string_view mac = "a MAC address such as 00:00:00:00:00:01";
   p.eth.src = f.value<Pylon::EthAddr>( "src", mac ).value_or( Pylon::EthAddr() );
   p.eth.dst = f.value<Pylon::EthAddr>( "dst", mac ).value_or( Pylon::EthAddr() );
   p.eth.type = static_cast<U16>( f.number( "type", 0, 0xFFFF ).value_or( 0 ) );
}

void readIpv4( const Json& j, Fennel::Packet& p ) {
   const Fields f( j, "ipv4", { "src", "dst", "proto", "dscp", "ecn", "ttl", "len", "frag" } );
   Fennel::PacketIpv4 ip;
   ip.src = f.value<Pylon::IpAddr>( "src", "an IPv4 address" ).value_or( Pylon::IpAddr() );
   ip.dst = f.value<Pylon::IpAddr>( "dst", "an IPv4 address" ).value_or( Pylon::IpAddr() );
   ip.proto = static_cast<U8>( f.number( "proto", 0, 255 ).value_or( 0 ) );
   ip.dscp = static_cast<U8>( f.number( "dscp", 0, 63 ).value_or( 0 ) );
   ip.ecn = static_cast<U8>( f.number( "ecn", 0, 3 ).value_or( 0 ) );
   ip.ttl = static_cast<U8>( f.number( "ttl", 0, 255 ).value_or( 64 ) );
   if ( const auto len = f.number( "len", 0, 0xFFFF ) ) {
      ip.len = static_cast<U16>( *len );
   }
   ip.frag = fragOf( f );
   p.ipv4 = ip;
}

void readIpv6( const Json& j, Fennel::Packet& p ) {
   const Fields f( j, "ipv6", { "src", "dst", "next", "dscp", "ecn", "hlim", "len", "frag" } );
   Fennel::PacketIpv6 ip;
   ip.src = f.value<Pylon::Ip6Addr>( "src", "an IPv6 address" ).value_or( Pylon::Ip6Addr() );
   ip.dst = f.value<Pylon::Ip6Addr>( "dst", "an IPv6 address" ).value_or( Pylon::Ip6Addr() );
   // `next` is the protocol after any extension headers; without one the packet carries none
   // (59, "no next header"), so that its frame reads back the same.
   ip.next = static_cast<U8>( f.number( "next", 0, 255 ).value_or( kIp6NoNextHeader ) );
   if ( isIp6ExtensionHeader( ip.next ) ) {
      bad( f.where( "next" ) + " is " + std::to_string( ip.next ) +
           ", an extension header: expected the protocol after the extension headers (a "
           "fragment header is \"frag\")" );
   }
   ip.dscp = static_cast<U8>( f.number( "dscp", 0, 63 ).value_or( 0 ) );
   ip.ecn = static_cast<U8>( f.number( "ecn", 0, 3 ).value_or( 0 ) );
   ip.hlim = static_cast<U8>( f.number( "hlim", 0, 255 ).value_or( 64 ) );
   if ( const auto len = f.number( "len", 0, 0xFFFF ) ) {
      ip.len = static_cast<U16>( *len );
   }
   ip.frag = fragOf( f );
   p.ipv6 = ip;
}

Fennel::PacketL4Ports readPorts( const Json& j, std::string_view name ) {
   const bool tcp = name == "tcp";
   const Fields f = tcp ? Fields( j, "tcp", { "sport", "dport", "flags" } )
                        : Fields( j, "udp", { "sport", "dport" } );
   Fennel::PacketL4Ports ports;
   ports.sport = static_cast<U16>( f.number( "sport", 0, 0xFFFF ).value_or( 0 ) );
   ports.dport = static_cast<U16>( f.number( "dport", 0, 0xFFFF ).value_or( 0 ) );
   const Json* flags = tcp ? f.find( "flags" ) : nullptr;
   if ( !flags ) {
      return ports;
   }
   const std::string expected = ": expected a list of syn, ack, fin, rst, psh, urg";
   if ( !flags->is_array() ) {
      bad( f.where( "flags" ) + " is " + flags->dump() + expected );
   }
   for ( const Json& flag : *flags ) {
      const auto it = std::ranges::find_if( kTcpFlags, [&]( const auto& named ) {
         return flag.is_string() && flag.get<std::string>() == named.first;
      } );
      if ( it == std::end( kTcpFlags ) ) {
         bad( f.where( "flags" ) + " holds " + flag.dump() + expected );
      }
      ports.flags = static_cast<U8>( ports.flags | it->second );
   }
   return ports;
}

Fennel::PacketIcmp readIcmp( const Json& j ) {
   const Fields f( j, "icmp", { "type", "code" } );
   return { static_cast<U8>( f.number( "type", 0, 255 ).value_or( 0 ) ),
            static_cast<U8>( f.number( "code", 0, 255 ).value_or( 0 ) ) };
}

// The protocol the layer 4 header stands for, in the packet's family.
std::optional<U8> layer4Protocol( const Fennel::Packet& p ) {
   if ( p.tcp ) {
      return kProtoTcp;
   }
   if ( p.udp ) {
      return kProtoUdp;
   }
   if ( p.icmp ) {
      return p.ipv6 ? kProtoIcmp6 : kProtoIcmp;
   }
   return std::nullopt;
}

// Headers that must agree: EtherType and IP family, protocol and layer 4 header, fragments
// and layer 4 headers, IP length and what it must hold.
void checkConsistent( const Fields& top, Fennel::Packet& p ) {
   const int layer4 = !!p.tcp + !!p.udp + !!p.icmp;
   if ( p.ipv4 && p.ipv6 ) {
      bad( "both \"ipv4\" and \"ipv6\": expected one IP header at most" );
   }
   if ( layer4 > 1 ) {
      bad( "more than one of \"tcp\", \"udp\", \"icmp\": expected one layer 4 header at most" );
   }
   if ( layer4 && !p.isIp() ) {
      bad( "a layer 4 header without \"ipv4\" or \"ipv6\": expected an IP header" );
   }
   const U16 ipType = p.ipv4 ? kEtherTypeIpv4 : ( p.ipv6 ? kEtherTypeIpv6 : 0 );
   const bool typeGiven = top.find( "eth" ) && top.find( "eth" )->contains( "type" );
   if ( !typeGiven ) {
      p.eth.type = ipType;
   } else if ( p.eth.type == kTpidDot1q ) {
      bad( "\"eth.type\" is 33024, a VLAN tag: expected \"vlan\" for a tagged packet" );
   } else if ( ipType && p.eth.type != ipType ) {
      bad( "\"eth.type\" " + std::to_string( p.eth.type ) +
           " does not match the IP header: expected 2048 with \"ipv4\", 34525 with \"ipv6\"" );
   } else if ( !ipType && ( p.eth.type == kEtherTypeIpv4 || p.eth.type == kEtherTypeIpv6 ) ) {
      bad( "\"eth.type\" " + std::to_string( p.eth.type ) + " without an IP header: expected " +
           ( p.eth.type == kEtherTypeIpv4 ? "\"ipv4\"" : "\"ipv6\"" ) + " with it" );
   }
   if ( const auto l4 = layer4Protocol( p ) ) {
      U8& proto = p.ipv4 ? p.ipv4->proto : p.ipv6->next;
      const char* field = p.ipv4 ? "ipv4.proto" : "ipv6.next";
      const bool given =
          p.ipv4 ? top.find( "ipv4" )->contains( "proto" ) : top.find( "ipv6" )->contains( "next" );
      if ( given && proto != *l4 ) {
         bad( std::string( "\"" ) + field + "\" " + std::to_string( proto ) +
              " does not match the layer 4 header: expected " + std::to_string( *l4 ) );
      }
      proto = *l4;
      if ( p.frag() == Fennel::Frag::later ) {
         bad( "a later fragment with a layer 4 header: expected none, since later fragments "
              "carry no layer 4 header" );
      }
   }
   canonicalise( p );
   const std::optional<U16> len = p.ipv4 ? p.ipv4->len : ( p.ipv6 ? p.ipv6->len : std::nullopt );
   if ( len && *len < computedIpLength( p ) ) {
      bad( std::string( p.ipv4 ? "\"ipv4.len\" " : "\"ipv6.len\" " ) + std::to_string( *len ) +
           " is shorter than the headers and payload: expected at least " +
           std::to_string( computedIpLength( p ) ) );
   }
}

std::string macText( const Pylon::EthAddr& a ) {
   return Pylon::valueToStrep( a );
}

Json::array_t flagNames( U8 flags ) {
   Json::array_t names;
   for ( const auto& [name, bit] : kTcpFlags ) {
      if ( flags & bit ) {
         names.emplace_back( std::string( name ) );
      }
   }
   return names;
}

std::string hexText( const std::vector<U8>& bytes ) {
   std::string text;
   char buf[3];
   for ( U8 b : bytes ) {
      std::snprintf( buf, sizeof buf, "%02x", b );
      text += buf;
   }
   return text;
}

}  // namespace

Fennel::Packet packetFromJson( const Json& object, const PacketDefaults& defaults ) {
   const Fields f(
       object, "",
       { "in", "vlan", "routed", "out", "eth", "ipv4", "ipv6", "tcp", "udp", "icmp", "payload" } );
   Fennel::Packet p;
   const auto in = f.intf( "in", defaults );
   if ( !in && !defaults.in ) {
      bad( "missing \"in\": expected the interface the packet arrives on (or --in)" );
   }
   p.in = in ? *in : *defaults.in;
   if ( const auto vlan = f.number( "vlan", 1, 4094 ) ) {
      p.vlan = static_cast<U16>( *vlan );
   }
   if ( const Json* routed = f.find( "routed" ) ) {
      if ( !routed->is_boolean() ) {
         bad( "\"routed\" is " + routed->dump() + ": expected true or false" );
      }
      p.routed = routed->get<bool>();
   }
   const auto out = f.intf( "out", defaults );
   p.out = out ? out : defaults.out;
   readEth( f.find( "eth" ), p );
   if ( const Json* j = f.find( "ipv4" ) ) {
      readIpv4( *j, p );
   }
   if ( const Json* j = f.find( "ipv6" ) ) {
      readIpv6( *j, p );
   }
   if ( const Json* j = f.find( "tcp" ) ) {
      p.tcp = readPorts( *j, "tcp" );
   }
   if ( const Json* j = f.find( "udp" ) ) {
      p.udp = readPorts( *j, "udp" );
   }
   if ( const Json* j = f.find( "icmp" ) ) {
      p.icmp = readIcmp( *j );
   }
   p.payload = hexBytes( f, "payload" );
   checkConsistent( f, p );
   return p;
}

nlohmann::ordered_json packetToJson( const Fennel::Packet& p ) {
   nlohmann::ordered_json j;
   if ( !p.in.isNull() ) {
      j["in"] = Pylon::valueToStrep( p.in );
   }
   if ( p.vlan ) {
      j["vlan"] = *p.vlan;
   }
   if ( p.routed ) {
      j["routed"] = true;
   }
   if ( p.out ) {
      j["out"] = Pylon::valueToStrep( *p.out );
   }
   j["eth"] = {
       { "src", macText( p.eth.src ) }, { "dst", macText( p.eth.dst ) }, { "type", p.eth.type } };
   if ( p.ipv4 ) {
      const auto& ip = *p.ipv4;
      auto& o = j["ipv4"] = { { "src", Pylon::valueToStrep( ip.src ) },
                              { "dst", Pylon::valueToStrep( ip.dst ) },
                              { "proto", ip.proto },
                              { "dscp", ip.dscp },
                              { "ecn", ip.ecn },
                              { "ttl", ip.ttl } };
      if ( ip.len ) {
         o["len"] = *ip.len;
      }
      o["frag"] = fragName( ip.frag );
   }
   if ( p.ipv6 ) {
      const auto& ip = *p.ipv6;
      auto& o = j["ipv6"] = { { "src", Pylon::valueToStrep( ip.src ) },
                              { "dst", Pylon::valueToStrep( ip.dst ) },
                              { "next", ip.next },
                              { "dscp", ip.dscp },
                              { "ecn", ip.ecn },
                              { "hlim", ip.hlim } };
      if ( ip.len ) {
         o["len"] = *ip.len;
      }
      o["frag"] = fragName( ip.frag );
   }
   if ( p.tcp ) {
      j["tcp"] = { { "sport", p.tcp->sport },
                   { "dport", p.tcp->dport },
                   { "flags", flagNames( p.tcp->flags ) } };
   }
   if ( p.udp ) {
      j["udp"] = { { "sport", p.udp->sport }, { "dport", p.udp->dport } };
   }
   if ( p.icmp ) {
      j["icmp"] = { { "type", p.icmp->type }, { "code", p.icmp->code } };
   }
   if ( !p.payload.empty() ) {
      j["payload"] = hexText( p.payload );
   }
   return j;
}

}  // namespace HalyardCli
