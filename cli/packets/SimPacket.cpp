#include "cli/packets/SimPacket.h"

#include "platform/vesper/Assert.h"

namespace HalyardCli {

namespace {

void fragmentIs( Sim::Packet& s, Fennel::Frag frag ) {
   if ( frag == Fennel::Frag::first ) {
      s.fragmentIs( true, 0 );
   } else if ( frag == Fennel::Frag::later ) {
      s.fragmentIs( false, Fennel::laterFragmentOffset );
   }
}

}  // namespace

Sim::Packet toSimPacket( const Fennel::Packet& p ) {
   Sim::Packet s = Sim::Packet::ethernet( p.eth.type );
   s.srcMac = p.eth.src.bytes();
   s.dstMac = p.eth.dst.bytes();
   if ( p.vlan ) {
      s.taggedIs( *p.vlan );
   }
   if ( p.ipv4 ) {
      s.l3 = Sim::L3Kind::Ipv4;
      s.srcIp4 = p.ipv4->src.value();
      s.dstIp4 = p.ipv4->dst.value();
      s.ipProtocol = p.ipv4->proto;
      s.tos = static_cast<U8>( p.ipv4->dscp << 2 | ( p.ipv4->ecn & 3 ) );
      s.ttl = p.ipv4->ttl;
      s.ipTotalLength = p.ipv4->len;
      fragmentIs( s, p.ipv4->frag );
   } else if ( p.ipv6 ) {
      s.l3 = Sim::L3Kind::Ipv6;
      s.srcIp6 = p.ipv6->src.bytes();
      s.dstIp6 = p.ipv6->dst.bytes();
      s.ipProtocol = p.ipv6->next;
      s.tos = static_cast<U8>( p.ipv6->dscp << 2 | ( p.ipv6->ecn & 3 ) );
      s.ttl = p.ipv6->hlim;
      s.ipTotalLength = p.ipv6->len;
      fragmentIs( s, p.ipv6->frag );
   }
   if ( const auto& ports = p.tcp ? p.tcp : p.udp ) {
      s.l4SrcPort = ports->sport;
      s.l4DstPort = ports->dport;
      s.tcpFlags = ports->flags;
   }
   if ( p.icmp ) {
      s.icmpType = p.icmp->type;
      s.icmpCode = p.icmp->code;
   }
   s.payload = p.payload;
   s.routed = p.routed;
   return s;
}

SimInjection toSimInjection( const Fennel::Packet& p ) {
   VESPER_ASSERT( !p.in.isNull() );
   return { Pylon::valueToStrep( p.in ), toSimPacket( p ),
            p.out ? Pylon::valueToStrep( *p.out ) : std::string() };
}

Sim::SwitchVerdict inject( Sim::SimSwitch& simSwitch, const Fennel::Packet& packet ) {
   SimInjection i = toSimInjection( packet );
   return simSwitch.inject( i.ingress, std::move( i.packet ), i.egress );
}

std::vector<U8> frameBytes( const Fennel::Packet& packet ) {
   const Sim::Packet s = toSimPacket( packet );
   // Ethernet with a tag, the longest IP header with its extension, TCP, then the payload.
   std::vector<U8> bytes( 18 + 48 + 20 + s.payload.size() );
   Sim::HeaderOffsets offsets;
   bytes.resize( s.wireImage( bytes, offsets ) );
   return bytes;
}

}  // namespace HalyardCli
