// Ethernet frames decoded into packets, and the canonical form shared by every reader.
#include "cli/packets/PacketInput.h"

namespace HalyardCli {

namespace {

constexpr U16 kEtherTypeIpv4 = 0x0800;
constexpr U16 kEtherTypeIpv6 = 0x86DD;
constexpr U16 kTpidDot1q = 0x8100;
constexpr U16 kTpidQinQ = 0x88A8;
constexpr U8 kProtoIcmp = 1;
constexpr U8 kProtoTcp = 6;
constexpr U8 kProtoUdp = 17;
constexpr U8 kProtoIcmp6 = 58;
constexpr U8 kIp6Fragment = 44;
// The TCP flags a packet keeps: the six of the classic header (ECE and CWR have no field).
constexpr U8 kTcpFlagMask = 0x3F;

[[noreturn]] void bad( const std::string& message ) {
   throw PacketError( message );
}

// Reads big-endian fields of a frame; every read past the end is an error naming the header.
class FrameReader {
 public:
   explicit FrameReader( std::span<const U8> frame ) : frame_( frame ) {}

   std::size_t at() const { return at_; }
   std::size_t size() const { return frame_.size(); }
   void need( std::size_t bytes, std::string_view header ) const {
      if ( at_ + bytes > end_() ) {
         bad( "truncated " + std::string( header ) + " header: expected " +
              std::to_string( bytes ) + " bytes, found " +
              std::to_string( end_() - std::min( at_, end_() ) ) );
      }
   }
   U8 u8( std::size_t offset ) const { return frame_[at_ + offset]; }
   U16 u16( std::size_t offset ) const {
      return static_cast<U16>( u8( offset ) << 8 | u8( offset + 1 ) );
   }
   U32 u32( std::size_t offset ) const { return U32( u16( offset ) ) << 16 | u16( offset + 2 ); }
   template <std::size_t N>
   std::array<U8, N> bytes( std::size_t offset ) const {
      std::array<U8, N> out;
      std::copy_n( frame_.begin() + static_cast<std::ptrdiff_t>( at_ + offset ), N, out.begin() );
      return out;
   }
   void skip( std::size_t bytes ) { at_ += bytes; }
   // Ends the readable part at `end` (an IP length shorter than the frame: the rest is padding).
   void limit( std::size_t end ) { limit_ = std::min( end, frame_.size() ); }
   std::vector<U8> rest() const {
      return at_ >= end_()
                 ? std::vector<U8>()
                 : std::vector<U8>( frame_.begin() + static_cast<std::ptrdiff_t>( at_ ),
                                    frame_.begin() + static_cast<std::ptrdiff_t>( end_() ) );
   }

 private:
   std::size_t end_() const { return std::min( limit_, frame_.size() ); }

   std::span<const U8> frame_;
   std::size_t at_ = 0;
   std::size_t limit_ = SIZE_MAX;
};

void decodeLayer4( FrameReader& r, U8 proto, bool v6, Fennel::Packet& p ) {
   if ( proto == kProtoTcp ) {
      r.need( 20, "TCP" );
      const std::size_t headerLen = ( r.u8( 12 ) >> 4 ) * 4u;
      if ( headerLen < 20 ) {
         bad( "TCP data offset " + std::to_string( headerLen / 4 ) + ": expected at least 5" );
      }
      r.need( headerLen, "TCP" );
      p.tcp = Fennel::PacketL4Ports{ r.u16( 0 ), r.u16( 2 ),
                                     static_cast<U8>( r.u8( 13 ) & kTcpFlagMask ) };
      r.skip( headerLen );
   } else if ( proto == kProtoUdp ) {
      r.need( 8, "UDP" );
      p.udp = Fennel::PacketL4Ports{ r.u16( 0 ), r.u16( 2 ), 0 };
      r.skip( 8 );
   } else if ( proto == ( v6 ? kProtoIcmp6 : kProtoIcmp ) ) {
      r.need( 8, v6 ? "ICMPv6" : "ICMP" );
      p.icmp = Fennel::PacketIcmp{ r.u8( 0 ), r.u8( 1 ) };
      r.skip( 8 );
   }
}

void decodeIpv4( FrameReader& r, Fennel::Packet& p ) {
   r.need( 20, "IPv4" );
   if ( r.u8( 0 ) >> 4 != 4 ) {
      bad( "IP version " + std::to_string( r.u8( 0 ) >> 4 ) +
           " under EtherType 0x0800: expected 4" );
   }
   const std::size_t headerLen = ( r.u8( 0 ) & 0xF ) * 4u;
   const U16 totalLen = r.u16( 2 );
   if ( headerLen < 20 || totalLen < headerLen ) {
      bad( "IPv4 header length " + std::to_string( headerLen ) + ", total length " +
           std::to_string( totalLen ) + ": expected 20 <= header length <= total length" );
   }
   r.need( headerLen, "IPv4" );
   Fennel::PacketIpv4 ip;
   ip.dscp = r.u8( 1 ) >> 2;
   ip.ecn = r.u8( 1 ) & 3;
   ip.len = totalLen;
   const U16 frag = r.u16( 6 );
   ip.frag = ( frag & 0x1FFF ) ? Fennel::Frag::later
                               : ( ( frag & 0x2000 ) ? Fennel::Frag::first : Fennel::Frag::none );
   ip.ttl = r.u8( 8 );
   ip.proto = r.u8( 9 );
   ip.src = Pylon::IpAddr( r.u32( 12 ) );
   ip.dst = Pylon::IpAddr( r.u32( 16 ) );
   p.ipv4 = ip;
   r.limit( r.at() + totalLen );
   r.skip( headerLen );
   if ( ip.frag != Fennel::Frag::later ) {
      decodeLayer4( r, ip.proto, false, p );
   }
}

void decodeIpv6( FrameReader& r, Fennel::Packet& p ) {
   r.need( 40, "IPv6" );
   if ( r.u8( 0 ) >> 4 != 6 ) {
      bad( "IP version " + std::to_string( r.u8( 0 ) >> 4 ) +
           " under EtherType 0x86dd: expected 6" );
   }
   Fennel::PacketIpv6 ip;
   const U8 trafficClass = static_cast<U8>( r.u32( 0 ) >> 20 );
   ip.dscp = trafficClass >> 2;
   ip.ecn = trafficClass & 3;
   ip.len = static_cast<U16>( std::min<U32>( 40u + r.u16( 4 ), 0xFFFF ) );
   U8 next = r.u8( 6 );
   ip.hlim = r.u8( 7 );
   ip.src = Pylon::Ip6Addr( r.bytes<16>( 8 ) );
   ip.dst = Pylon::Ip6Addr( r.bytes<16>( 24 ) );
   r.limit( r.at() + 40u + r.u16( 4 ) );
   r.skip( 40 );
   // Extension headers the ACLs look through; the fragment header says where the packet
   // stands, the others are skipped. Each is at least 8 bytes, so the walk ends.
   while ( isIp6ExtensionHeader( next ) ) {
      r.need( 8, "IPv6 extension" );
      const U8 following = r.u8( 0 );
      if ( next == kIp6Fragment ) {
         const U16 field = r.u16( 2 );
         ip.frag = ( field >> 3 ) ? Fennel::Frag::later
                                  : ( ( field & 1 ) ? Fennel::Frag::first : Fennel::Frag::none );
         r.skip( 8 );
      } else {
         const std::size_t len = ( r.u8( 1 ) + 1u ) * 8u;
         r.need( len, "IPv6 extension" );
         r.skip( len );
      }
      next = following;
   }
   ip.next = next;
   p.ipv6 = ip;
   if ( ip.frag != Fennel::Frag::later ) {
      decodeLayer4( r, next, true, p );
   }
}

}  // namespace

U32 computedIpLength( const Fennel::Packet& p ) {
   U32 len = 0;
   if ( p.ipv4 ) {
      len = 20;
   } else if ( p.ipv6 ) {
      len = 40 + ( p.ipv6->frag == Fennel::Frag::none ? 0 : 8 );
   } else {
      return 0;
   }
   len += p.tcp ? 20 : ( p.udp || p.icmp ? 8 : 0 );
   return len + static_cast<U32>( p.payload.size() );
}

void canonicalise( Fennel::Packet& p ) {
   if ( !p.isIp() ) {
      return;
   }
   const U8 proto = p.ipv4 ? p.ipv4->proto : p.ipv6->next;
   const bool later = p.frag() == Fennel::Frag::later;
   if ( !later && !p.tcp && !p.udp && !p.icmp ) {
      if ( proto == kProtoTcp ) {
         p.tcp = Fennel::PacketL4Ports{};
      } else if ( proto == kProtoUdp ) {
         p.udp = Fennel::PacketL4Ports{};
      } else if ( proto == ( p.ipv6 ? kProtoIcmp6 : kProtoIcmp ) ) {
         p.icmp = Fennel::PacketIcmp{};
      }
   }
   std::optional<U16>& len = p.ipv4 ? p.ipv4->len : p.ipv6->len;
   if ( len && *len == computedIpLength( p ) ) {
      len.reset();
   }
}

Fennel::Packet decodeFrame( std::span<const U8> frame, const PacketDefaults& defaults ) {
   if ( !defaults.in ) {
      bad( "no ingress interface: expected --in INTERFACE for a capture" );
   }
   Fennel::Packet p;
   p.in = *defaults.in;
   p.out = defaults.out;
   FrameReader r( frame );
   r.need( 14, "Ethernet" );
   p.eth.dst = Pylon::EthAddr( r.bytes<6>( 0 ) );
   p.eth.src = Pylon::EthAddr( r.bytes<6>( 6 ) );
   U16 type = r.u16( 12 );
   r.skip( 14 );
   if ( type == kTpidDot1q ) {
      r.need( 4, "802.1Q" );
      const U16 vid = r.u16( 0 ) & 0xFFF;
      type = r.u16( 2 );
      if ( vid == 0 || vid == 0xFFF ) {
         bad( "VLAN tag with id " + std::to_string( vid ) + ": expected a VLAN 1 to 4094" );
      }
      if ( type == kTpidDot1q || type == kTpidQinQ ) {
         bad( "a second VLAN tag: expected one tag at most" );
      }
      p.vlan = vid;
      r.skip( 4 );
   }
   p.eth.type = type;
   if ( type == kEtherTypeIpv4 ) {
      decodeIpv4( r, p );
   } else if ( type == kEtherTypeIpv6 ) {
      decodeIpv6( r, p );
   }
   p.payload = r.rest();
   canonicalise( p );
   return p;
}

}  // namespace HalyardCli
