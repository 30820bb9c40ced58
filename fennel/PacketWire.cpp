#include "fennel/PacketWire.h"

#include <algorithm>

namespace Fennel {

namespace {

constexpr U16 etherTypeDot1q = 0x8100;
constexpr U8 ip6FragmentHeader = 44;

class Writer {
 public:
   explicit Writer( std::vector<U8>& out ) : out_( out ) {}
   void u8( U8 v ) { out_.push_back( v ); }
   void u16( U16 v ) {
      u8( static_cast<U8>( v >> 8 ) );
      u8( static_cast<U8>( v ) );
   }
   void u32( U32 v ) {
      u16( static_cast<U16>( v >> 16 ) );
      u16( static_cast<U16>( v ) );
   }
   void zeros( std::size_t n ) { out_.insert( out_.end(), n, U8{ 0 } ); }
   template <typename Bytes>
   void bytes( const Bytes& b ) {
      out_.insert( out_.end(), b.begin(), b.end() );
   }
   std::size_t size() const { return out_.size(); }

 private:
   std::vector<U8>& out_;
};

std::size_t l4HeaderSize( const Packet& p ) {
   if ( p.tcp ) {
      return 20;
   }
   return p.udp || p.icmp ? 8 : 0;
}

U8 trafficClass( U8 dscp, U8 ecn ) {
   return static_cast<U8>( ( dscp << 2 ) | ( ecn & 3 ) );
}

U16 fragmentField( Frag frag ) {
   switch ( frag ) {
      case Frag::none:
         return 0;
      case Frag::first:
         return 1;  // more-fragments, offset 0
      case Frag::later:
         return static_cast<U16>( laterFragmentOffset << 3 );
   }
   return 0;
}

void writeIpv4( const Packet& p, Writer& w ) {
   const PacketIpv4& ip = *p.ipv4;
   w.u8( 0x45 );
   w.u8( trafficClass( ip.dscp, ip.ecn ) );
   w.u16( ipLength( p ) );
   w.u16( 0 );  // identification
   // The IPv4 field holds the flags above a 13-bit offset; the IPv6 fragment header holds the
   // offset above the more-fragments bit. Same facts, two layouts.
   const U16 frag = fragmentField( ip.frag );
   w.u16( static_cast<U16>( ( ( frag & 1 ) << 13 ) | ( frag >> 3 ) ) );
   w.u8( ip.ttl );
   w.u8( ip.proto );
   w.u16( 0 );  // checksum
   w.u32( ip.src.value() );
   w.u32( ip.dst.value() );
}

void writeIpv6( const Packet& p, Writer& w ) {
   const PacketIpv6& ip = *p.ipv6;
   const bool fragmented = ip.frag != Frag::none;
   w.u32( 0x60000000u | ( U32{ trafficClass( ip.dscp, ip.ecn ) } << 20 ) );
   w.u16( ipLength( p ) );
   w.u8( fragmented ? ip6FragmentHeader : ip.next );
   w.u8( ip.hlim );
   w.bytes( ip.src.bytes() );
   w.bytes( ip.dst.bytes() );
   if ( fragmented ) {
      w.u8( ip.next );
      w.u8( 0 );
      w.u16( fragmentField( ip.frag ) );
      w.u32( 0 );  // identification
   }
}

void writeL4( const Packet& p, Writer& w ) {
   if ( p.tcp ) {
      w.u16( p.tcp->sport );
      w.u16( p.tcp->dport );
      w.zeros( 8 );  // sequence and acknowledgement numbers
      w.u8( 0x50 );  // data offset: five words, no options
      w.u8( p.tcp->flags );
      w.u16( 0xFFFF );  // window
      w.zeros( 4 );     // checksum, urgent pointer
   } else if ( p.udp ) {
      w.u16( p.udp->sport );
      w.u16( p.udp->dport );
      w.u16( static_cast<U16>( 8 + p.payload.size() ) );
      w.u16( 0 );
   } else if ( p.icmp ) {
      w.u8( p.icmp->type );
      w.u8( p.icmp->code );
      w.zeros( 6 );
   }
}

}  // namespace

U16 ipLength( const Packet& p ) {
   const std::size_t rest = l4HeaderSize( p ) + p.payload.size();
   std::size_t len = 0;
   if ( p.ipv4 ) {
      if ( p.ipv4->len ) {
         return *p.ipv4->len;
      }
      len = 20 + rest;
   } else if ( p.ipv6 ) {
      if ( p.ipv6->len ) {
         return static_cast<U16>( *p.ipv6->len >= 40 ? *p.ipv6->len - 40 : 0 );
      }
      len = ( p.ipv6->frag != Frag::none ? 8 : 0 ) + rest;
   }
   return static_cast<U16>( std::min<std::size_t>( len, 0xFFFF ) );
}

WireImage wireImage( const Packet& p ) {
   WireImage image;
   Writer w( image.bytes );
   w.bytes( p.eth.dst.bytes() );
   w.bytes( p.eth.src.bytes() );
   if ( p.vlan ) {
      w.u16( etherTypeDot1q );
      w.u16( static_cast<U16>( *p.vlan & 0xFFF ) );
   }
   w.u16( p.eth.type );
   image.l3 = w.size();
   if ( p.ipv4 ) {
      writeIpv4( p, w );
   } else if ( p.ipv6 ) {
      writeIpv6( p, w );
   }
   if ( p.isIp() && p.frag() != Frag::later ) {
      image.l4 = w.size();
      if ( l4HeaderSize( p ) != 0 ) {
         writeL4( p, w );
         image.data = w.size();
      }
   }
   w.bytes( p.payload );
   return image;
}

}  // namespace Fennel
