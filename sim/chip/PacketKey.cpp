#include "sim/chip/PacketKey.h"

namespace Sim {

namespace {

U64 macU64( const MacAddr& m ) {
   U64 v = 0;
   for ( U8 b : m ) {
      v = ( v << 8 ) | b;
   }
   return v;
}

U64 ip6Word( const Ip6Addr& a, std::size_t from ) {
   U64 v = 0;
   for ( std::size_t i = from; i < from + 8; ++i ) {
      v = ( v << 8 ) | a[i];
   }
   return v;
}

bool isIcmp( const Packet& p ) {
   return p.ipProtocol == kProtoIcmp || p.ipProtocol == kProtoIcmp6;
}

// The layer 4 port fields as the chip keys them: TCP and UDP ports, ICMP type and code in
// the source port field, zero where the packet has no such header.
U16 l4SrcValue( const Packet& p ) {
   if ( !p.hasL4Header() ) {
      return 0;
   }
   return isIcmp( p ) ? static_cast<U16>( ( p.icmpType << 8 ) | p.icmpCode ) : p.l4SrcPort;
}

U16 l4DstValue( const Packet& p ) {
   return p.hasL4Header() && !isIcmp( p ) ? p.l4DstPort : 0;
}

U64 fragBits( const Packet& p ) {
   if ( !p.isIp() ) {
      return 0;
   }
   U64 bits = 0;
   if ( p.fragmentOffset != 0 ) {
      bits |= FragBits::kNotFirst;
   } else if ( p.moreFragments ) {
      bits |= FragBits::kFirst;
   }
   if ( p.isFragment() ) {
      bits |= FragBits::kFragment;
   }
   return bits;
}

U64 ipTypeBits( const Packet& p ) {
   switch ( p.l3 ) {
      case L3Kind::Ipv4:
         return IpTypeBits::kIpv4 | IpTypeBits::kIp;
      case L3Kind::Ipv6:
         return IpTypeBits::kIpv6 | IpTypeBits::kIp |
                ( p.ip6ExtensionHeader ? IpTypeBits::kIp6ExtHdr : 0 );
      case L3Kind::None:
         break;
   }
   return p.etherType == kEtherTypeArp ? IpTypeBits::kArp : 0;
}

void putL3( const Packet& p, const ChipView& chip, Key& key ) {
   if ( p.l3 == L3Kind::Ipv4 ) {
      key.put( KeyField::SrcIp, p.srcIp4 );
      key.put( KeyField::DstIp, p.dstIp4 );
      key.put( KeyField::ExtensionHeaderType, p.ipProtocol );
      key.put( KeyField::DstIpClassNibble,
               ClassTables::msbNibble( chip.classes.matchDstIp4( p.dstIp4 ) ) );
   } else if ( p.l3 == L3Kind::Ipv6 ) {
      key.put( KeyField::SrcIp6Hi, ip6Word( p.srcIp6, 0 ) );
      key.put( KeyField::SrcIp6Lo, ip6Word( p.srcIp6, 8 ) );
      key.put( KeyField::DstIp6Hi, ip6Word( p.dstIp6, 0 ) );
      key.put( KeyField::DstIp6Lo, ip6Word( p.dstIp6, 8 ) );
      // The next header of the fixed header: the extension header's type when there is one.
      key.put( KeyField::ExtensionHeaderType, p.ip6ExtensionHeader.value_or( p.ipProtocol ) );
      key.put( KeyField::DstIp6ClassNibble,
               ClassTables::msbNibble( chip.classes.matchDstIp6( p.dstIp6 ) ) );
   }
   if ( p.isIp() ) {
      key.put( KeyField::IpProtocol, p.ipProtocol );
      key.put( KeyField::IpProtocolClass,
               chip.classes.classOf( ExactClassTable::IpProtocol, p.ipProtocol ) );
      key.put( KeyField::Tos, p.tos );
      key.put( KeyField::Ttl, p.ttl );
   }
   key.put( KeyField::FragInfo, fragBits( p ) );
   key.put( KeyField::IpTypeFlags, ipTypeBits( p ) );
}

void putL4( const Packet& p, const ChipView& chip, Key& key ) {
   if ( !p.hasL4Header() ) {
      return;
   }
   const U16 src = l4SrcValue( p );
   const U16 dst = l4DstValue( p );
   key.put( KeyField::L4SrcPort, src );
   key.put( KeyField::L4DstPort, dst );
   key.put( KeyField::L4SrcPortClass, chip.classes.classOf( ExactClassTable::L4SrcPort, src ) );
   key.put( KeyField::L4DstPortClass, chip.classes.classOf( ExactClassTable::L4DstPort, dst ) );
   if ( p.ipProtocol == kProtoTcp ) {
      key.put( KeyField::TcpControl, p.tcpFlags & 0x3F );  // the six classic flags are keyed
   }
}

}  // namespace

void buildIngressKey( const Packet& p, const ChipView& chip, Key& key ) {
   key = Key{};
   key.put( KeyField::SrcMac, macU64( p.srcMac ) );
   key.put( KeyField::DstMac, macU64( p.dstMac ) );
   key.put( KeyField::EtherType, p.etherType );
   key.put( KeyField::EtherTypeClass,
            chip.classes.classOf( ExactClassTable::EtherType, p.etherType ) );
   putL3( p, chip, key );
   putL4( p, chip, key );

   key.put( KeyField::OuterVlan, p.outerTag ? p.outerTag->vid : p.vlan );
   key.put( KeyField::ForwardingVlan, p.vlan );
   key.put( KeyField::EgressL3Class,
            chip.vlans.egressL3Class( p.effectiveEgressVlan() ).value_or( 0 ) );
   key.put( KeyField::L2Class, chip.vlans.l2Class( p.vlan ).value_or( 0 ) );
   key.put( KeyField::L3Class, chip.vlans.l3Class( p.vlan ).value_or( 0 ) );
   key.put( KeyField::Vni, p.vni.value_or( 0 ) );
   key.put( KeyField::HiGig, p.higig );
   key.put( KeyField::L3Routable, p.routed );
   key.put( KeyField::MyStationHit, p.myStationHit );
   key.put( KeyField::StpState, static_cast<U64>( *chip.ports.stpState( p.ingressPort ) ) );
   key.put( KeyField::PortClass,
            *chip.ports.portClass( p.ingressPort, PortClassKind::FieldIngress ) );
   key.put( KeyField::SrcClass, p.srcClass );
   key.put( KeyField::DstClass, p.dstL3Class );
   key.put( KeyField::DstClassL2, p.dstL2Class );
}

void egressKeyIs( Key& key, const Packet& p, const ChipView& chip, U32 egressPort ) {
   key.put( KeyField::PortClass, *chip.ports.portClass( egressPort, PortClassKind::FieldEgress ) );
   key.put( KeyField::OutPort, egressPort );
   key.put( KeyField::OuterVlan, p.effectiveEgressVlan() );
   key.put( KeyField::ForwardingVlan, p.effectiveEgressVlan() );
}

U64 rangeHolds( const Packet& p, const Key& key, const RangeCheckers& checkers ) {
   return checkers.holds( { key.get( KeyField::L4SrcPort ), key.get( KeyField::L4DstPort ),
                            p.isIp() ? p.ipLength() : U64{ 0 } } );
}

void UdfReader::build() {
   length_ = packet_.wireImage( frame_, offsets_ );
   built_ = true;
}

U32 UdfReader::byteAt( UdfBase base, U32 offset ) {
   if ( !built_ ) {
      build();
   }
   std::optional<std::size_t> start;
   switch ( base ) {
      case UdfBase::L2Header:
         start = 0;
         break;
      case UdfBase::L3Header:
         start = offsets_.l3;
         break;
      case UdfBase::L4Header:
         start = offsets_.l4;
         break;
      case UdfBase::L4Payload:
         start = offsets_.l4Payload;
         break;
   }
   if ( !start ) {
      return kNoByte;
   }
   const std::size_t at = *start + offset;
   return at < length_ ? frame_[at] : 0;
}

// A chunk whose base header the packet lacks extracts nothing, and any masked byte of it
// fails; bytes beyond the packet's end are zero.
bool UdfReader::matches( const UdfTerm& t ) {
   for ( U8 i = 0; i < t.value.length; ++i ) {
      const U8 m = t.value.mask[i];
      if ( !m ) {
         continue;
      }
      const U32 byte = byteAt( t.chunk.base, U32( t.chunk.offset ) + i );
      if ( byte == kNoByte || ( byte & m ) != ( t.value.data[i] & m ) ) {
         return false;
      }
   }
   return true;
}

}  // namespace Sim
