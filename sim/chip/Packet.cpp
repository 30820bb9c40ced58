#include "sim/chip/Packet.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "platform/vesper/Exception.h"

namespace Sim {

namespace {

[[noreturn]] void badText( std::string_view what, std::string_view text ) {
   throw Vesper::ParseException( "not " + std::string( what ) + ": \"" + std::string( text ) +
                                 "\"" );
}

// Parses one number of `text` in `base`, the whole text, at most `max`.
bool parseNumber( std::string_view text, int base, U32 max, U32& out ) {
   if ( text.empty() ) {
      return false;
   }
   const char* end = text.data() + text.size();
   auto [ptr, ec] = std::from_chars( text.data(), end, out, base );
   return ec == std::errc() && ptr == end && out <= max;
}

std::vector<std::string_view> split( std::string_view text, char sep ) {
   std::vector<std::string_view> parts;
   std::size_t start = 0;
   for ( std::size_t i = 0; i <= text.size(); ++i ) {
      if ( i == text.size() || text[i] == sep ) {
         parts.push_back( text.substr( start, i - start ) );
         start = i + 1;
      }
   }
   return parts;
}

// Parses colon-separated hex groups into 16-bit words; false on any malformed group.
bool parseGroups( std::string_view text, std::vector<U16>& words ) {
   if ( text.empty() ) {
      return true;
   }
   for ( auto g : split( text, ':' ) ) {
      U32 v = 0;
      if ( g.size() > 4 || !parseNumber( g, 16, 0xFFFF, v ) ) {
         return false;
      }
      words.push_back( static_cast<U16>( v ) );
   }
   return true;
}

void putU16( std::span<U8> out, std::size_t at, U16 v ) {
   if ( at + 1 < out.size() ) {
      out[at] = static_cast<U8>( v >> 8 );
      out[at + 1] = static_cast<U8>( v );
   }
}

void putU32( std::span<U8> out, std::size_t at, U32 v ) {
   putU16( out, at, static_cast<U16>( v >> 16 ) );
   putU16( out, at + 2, static_cast<U16>( v ) );
}

void putByte( std::span<U8> out, std::size_t at, U8 v ) {
   if ( at < out.size() ) {
      out[at] = v;
   }
}

template <std::size_t N>
void putBytes( std::span<U8> out, std::size_t at, const std::array<U8, N>& bytes ) {
   for ( std::size_t i = 0; i < N; ++i ) {
      putByte( out, at + i, bytes[i] );
   }
}

}  // namespace

U32 ip4( std::string_view dotted ) {
   auto parts = split( dotted, '.' );
   if ( parts.size() != 4 ) {
      badText( "an IPv4 address", dotted );
   }
   U32 addr = 0;
   for ( auto p : parts ) {
      U32 v = 0;
      if ( !parseNumber( p, 10, 255, v ) ) {
         badText( "an IPv4 address", dotted );
      }
      addr = ( addr << 8 ) | v;
   }
   return addr;
}

Ip6Addr ip6( std::string_view text ) {
   std::vector<U16> head;
   std::vector<U16> tail;
   const auto gap = text.find( "::" );
   bool ok = true;
   if ( gap == std::string_view::npos ) {
      ok = parseGroups( text, head ) && head.size() == 8;
   } else {
      ok = parseGroups( text.substr( 0, gap ), head ) &&
           parseGroups( text.substr( gap + 2 ), tail ) && head.size() + tail.size() < 8;
   }
   if ( !ok ) {
      badText( "an IPv6 address", text );
   }
   std::vector<U16> words = head;
   words.resize( 8 - tail.size(), 0 );
   words.insert( words.end(), tail.begin(), tail.end() );
   Ip6Addr addr{};
   for ( std::size_t i = 0; i < 8; ++i ) {
      addr[2 * i] = static_cast<U8>( words[i] >> 8 );
      addr[2 * i + 1] = static_cast<U8>( words[i] );
   }
   return addr;
}

MacAddr mac( std::string_view colonHex ) {
   auto parts = split( colonHex, ':' );
   if ( parts.size() != 6 ) {
      badText( "a MAC address", colonHex );
   }
   MacAddr m{};
   for ( std::size_t i = 0; i < 6; ++i ) {
      U32 v = 0;
      if ( parts[i].size() != 2 || !parseNumber( parts[i], 16, 0xFF, v ) ) {
         badText( "a MAC address", colonHex );
      }
      m[i] = static_cast<U8>( v );
   }
   return m;
}

Packet Packet::ethernet( U16 type ) {
   Packet p;
   p.etherType = type;
   return p;
}

Packet Packet::ipv4( U32 src, U32 dst, U8 protocol ) {
   Packet p = ethernet( kEtherTypeIpv4 );
   p.l3 = L3Kind::Ipv4;
   p.srcIp4 = src;
   p.dstIp4 = dst;
   p.ipProtocol = protocol;
   return p;
}

Packet Packet::tcp4( U32 src, U32 dst, U16 srcPort, U16 dstPort, U8 flags ) {
   Packet p = ipv4( src, dst, kProtoTcp );
   p.l4SrcPort = srcPort;
   p.l4DstPort = dstPort;
   p.tcpFlags = flags;
   return p;
}

Packet Packet::udp4( U32 src, U32 dst, U16 srcPort, U16 dstPort ) {
   Packet p = ipv4( src, dst, kProtoUdp );
   p.l4SrcPort = srcPort;
   p.l4DstPort = dstPort;
   return p;
}

Packet Packet::icmp4( U32 src, U32 dst, U8 type, U8 code ) {
   Packet p = ipv4( src, dst, kProtoIcmp );
   p.icmpType = type;
   p.icmpCode = code;
   return p;
}

Packet Packet::ipv6( const Ip6Addr& src, const Ip6Addr& dst, U8 nextHeader ) {
   Packet p = ethernet( kEtherTypeIpv6 );
   p.l3 = L3Kind::Ipv6;
   p.srcIp6 = src;
   p.dstIp6 = dst;
   p.ipProtocol = nextHeader;
   return p;
}

Packet Packet::tcp6( const Ip6Addr& src, const Ip6Addr& dst, U16 srcPort, U16 dstPort, U8 flags ) {
   Packet p = ipv6( src, dst, kProtoTcp );
   p.l4SrcPort = srcPort;
   p.l4DstPort = dstPort;
   p.tcpFlags = flags;
   return p;
}

Packet Packet::udp6( const Ip6Addr& src, const Ip6Addr& dst, U16 srcPort, U16 dstPort ) {
   Packet p = ipv6( src, dst, kProtoUdp );
   p.l4SrcPort = srcPort;
   p.l4DstPort = dstPort;
   return p;
}

Packet Packet::icmp6( const Ip6Addr& src, const Ip6Addr& dst, U8 type, U8 code ) {
   Packet p = ipv6( src, dst, kProtoIcmp6 );
   p.icmpType = type;
   p.icmpCode = code;
   return p;
}

Packet& Packet::ingressPortIs( U32 port ) {
   ingressPort = port;
   return *this;
}

Packet& Packet::egressPortIs( U32 port ) {
   egressPorts.clearAll();
   egressPorts.set( port );
   return *this;
}

Packet& Packet::egressPortsIs( const PortBitmap& ports ) {
   egressPorts = ports;
   return *this;
}

Packet& Packet::vlanIs( U16 v ) {
   vlan = v;
   return *this;
}

Packet& Packet::taggedIs( U16 vid, U8 pcp ) {
   outerTag = VlanTag{ vid, pcp, false };
   vlan = vid;
   return *this;
}

Packet& Packet::routedIs( bool r ) {
   routed = r;
   return *this;
}

Packet& Packet::egressVlanIs( U16 v ) {
   egressVlan = v;
   return *this;
}

Packet& Packet::tosIs( U8 t ) {
   tos = t;
   return *this;
}

Packet& Packet::ttlIs( U8 t ) {
   ttl = t;
   return *this;
}

Packet& Packet::srcMacIs( const MacAddr& m ) {
   srcMac = m;
   return *this;
}

Packet& Packet::dstMacIs( const MacAddr& m ) {
   dstMac = m;
   return *this;
}

Packet& Packet::fragmentIs( bool more, U16 offset ) {
   moreFragments = more;
   fragmentOffset = offset;
   if ( l3 == L3Kind::Ipv6 ) {
      if ( more || offset != 0 ) {
         ip6ExtensionHeader = kIp6ExtFragment;
      } else if ( ip6ExtensionHeader == kIp6ExtFragment ) {
         ip6ExtensionHeader.reset();
      }
   }
   return *this;
}

Packet& Packet::ip6ExtensionHeaderIs( U8 type ) {
   ip6ExtensionHeader = type;
   return *this;
}

Packet& Packet::payloadIs( std::vector<U8> bytes ) {
   payload = std::move( bytes );
   return *this;
}

Packet& Packet::ipTotalLengthIs( U16 len ) {
   ipTotalLength = len;
   return *this;
}

Packet& Packet::dstL2ClassIs( U32 c ) {
   dstL2Class = c;
   return *this;
}

Packet& Packet::dstL3ClassIs( U32 c ) {
   dstL3Class = c;
   return *this;
}

Packet& Packet::myStationHitIs( bool h ) {
   myStationHit = h;
   return *this;
}

Packet& Packet::higigIs( bool h ) {
   higig = h;
   return *this;
}

Packet& Packet::toCpuIs( bool c ) {
   toCpu = c;
   return *this;
}

Packet& Packet::vniIs( U32 v ) {
   vni = v;
   return *this;
}

bool Packet::hasL4Header() const {
   if ( !isIp() || isLaterFragment() ) {
      return false;
   }
   return ipProtocol == kProtoTcp || ipProtocol == kProtoUdp || ipProtocol == kProtoIcmp ||
          ipProtocol == kProtoIcmp6;
}

U8 Packet::l4HeaderSize() const {
   if ( !hasL4Header() ) {
      return 0;
   }
   return ipProtocol == kProtoTcp ? 20 : 8;
}

U8 Packet::l3HeaderSize() const {
   switch ( l3 ) {
      case L3Kind::Ipv4:
         return 20;
      case L3Kind::Ipv6:
         return ip6ExtensionHeader ? 48 : 40;
      case L3Kind::None:
         break;
   }
   return 0;
}

U16 Packet::ipLength() const {
   if ( ipTotalLength ) {
      return *ipTotalLength;
   }
   if ( !isIp() ) {
      return 0;
   }
   const std::size_t len = l3HeaderSize() + l4HeaderSize() + payload.size();
   return static_cast<U16>( std::min<std::size_t>( len, 0xFFFF ) );
}

namespace {

std::size_t writeIpv4( const Packet& p, std::span<U8> out, std::size_t at ) {
   putByte( out, at, 0x45 );
   putByte( out, at + 1, p.tos );
   putU16( out, at + 2, p.ipLength() );
   const U16 frag =
       static_cast<U16>( ( p.moreFragments ? 0x2000 : 0 ) | ( p.fragmentOffset & 0x1FFF ) );
   putU16( out, at + 6, frag );
   putByte( out, at + 8, p.ttl );
   putByte( out, at + 9, p.ipProtocol );
   putU32( out, at + 12, p.srcIp4 );
   putU32( out, at + 16, p.dstIp4 );
   return at + 20;
}

std::size_t writeIpv6( const Packet& p, std::span<U8> out, std::size_t at ) {
   putU32( out, at, 0x60000000u | ( U32{ p.tos } << 20 ) );
   putU16( out, at + 4, static_cast<U16>( p.ipLength() - 40 ) );
   putByte( out, at + 6, p.ip6ExtensionHeader.value_or( p.ipProtocol ) );
   putByte( out, at + 7, p.ttl );
   putBytes( out, at + 8, p.srcIp6 );
   putBytes( out, at + 24, p.dstIp6 );
   at += 40;
   if ( p.ip6ExtensionHeader ) {
      putByte( out, at, p.ipProtocol );  // next header; length 0 means 8 bytes
      if ( *p.ip6ExtensionHeader == kIp6ExtFragment ) {
         const U16 frag = static_cast<U16>( ( p.fragmentOffset << 3 ) | p.moreFragments );
         putU16( out, at + 2, frag );
      }
      at += 8;
   }
   return at;
}

std::size_t writeL4( const Packet& p, std::span<U8> out, std::size_t at ) {
   if ( p.ipProtocol == kProtoIcmp || p.ipProtocol == kProtoIcmp6 ) {
      putByte( out, at, p.icmpType );
      putByte( out, at + 1, p.icmpCode );
      return at + 8;
   }
   putU16( out, at, p.l4SrcPort );
   putU16( out, at + 2, p.l4DstPort );
   if ( p.ipProtocol == kProtoTcp ) {
      putByte( out, at + 12, 0x50 );  // data offset: five words, no options
      putByte( out, at + 13, p.tcpFlags );
      putU16( out, at + 14, 0xFFFF );  // window
      return at + 20;
   }
   putU16( out, at + 4, static_cast<U16>( 8 + p.payload.size() ) );
   return at + 8;
}

}  // namespace

std::size_t Packet::wireImage( std::span<U8> out, HeaderOffsets& offsets ) const {
   std::fill( out.begin(), out.end(), U8{ 0 } );
   offsets = HeaderOffsets{};
   putBytes( out, 0, dstMac );
   putBytes( out, 6, srcMac );
   std::size_t at = 12;
   if ( outerTag ) {
      putU16( out, at, kTpidDot1q );
      const U16 tci = static_cast<U16>( ( outerTag->pcp << 13 ) | ( outerTag->dei << 12 ) |
                                        ( outerTag->vid & 0xFFF ) );
      putU16( out, at + 2, tci );
      at += 4;
   }
   putU16( out, at, etherType );
   at += 2;
   offsets.l3 = at;
   if ( l3 == L3Kind::Ipv4 ) {
      at = writeIpv4( *this, out, at );
   } else if ( l3 == L3Kind::Ipv6 ) {
      at = writeIpv6( *this, out, at );
   }
   if ( isIp() && !isLaterFragment() ) {
      offsets.l4 = at;
   }
   if ( hasL4Header() ) {
      at = writeL4( *this, out, at );
      offsets.l4Payload = at;
   }
   for ( U8 b : payload ) {
      putByte( out, at++, b );
   }
   return std::min( at, out.size() );
}

}  // namespace Sim
