// Compiling an entry's software face into the image the lookup matches.
#include <algorithm>
#include <bit>

#include "sim/chip/EntryRecord.h"

namespace Sim {

namespace {

// Accumulates the entry's constraints word by word over the key layout.
class TermBuilder {
 public:
   void add( KeyField f, U64 data, U64 mask ) {
      const KeySlot& s = KeyLayout::slot( f );
      // A mask bit beyond the field compares a key bit that is always zero.
      if ( ( data & mask & ~s.fieldMask() ) != 0 ) {
         never_ = true;
      }
      mask &= s.fieldMask();
      const U64 m = mask << s.shift;
      const U64 v = ( data & mask ) << s.shift;
      if ( ( ( value_[s.word] ^ v ) & mask_[s.word] & m ) != 0 ) {
         never_ = true;  // two qualifiers on one key field disagree
      }
      mask_[s.word] |= m;
      value_[s.word] |= v;
   }
   bool never() const { return never_; }
   std::vector<MatchTerm> terms() const {
      std::vector<MatchTerm> t;
      for ( std::size_t w = 0; w < KeyLayout::kWords; ++w ) {
         if ( mask_[w] ) {
            t.push_back( MatchTerm{ static_cast<U8>( w ), mask_[w], value_[w] } );
         }
      }
      std::stable_sort( t.begin(), t.end(), []( const MatchTerm& a, const MatchTerm& b ) {
         return std::popcount( a.mask ) > std::popcount( b.mask );
      } );
      return t;
   }

 private:
   std::array<U64, KeyLayout::kWords> mask_{};
   std::array<U64, KeyLayout::kWords> value_{};
   bool never_ = false;
};

U64 bytesU64( const std::array<U8, 16>& b, std::size_t from, std::size_t n ) {
   U64 v = 0;
   for ( std::size_t i = from; i < from + n; ++i ) {
      v = ( v << 8 ) | b[i];
   }
   return v;
}

void addIp6( TermBuilder& tb, KeyField hi, KeyField lo, const QualValue& v, bool highOnly ) {
   tb.add( hi, bytesU64( v.data, 0, 8 ), bytesU64( v.mask, 0, 8 ) );
   if ( !highOnly ) {
      tb.add( lo, bytesU64( v.data, 8, 8 ), bytesU64( v.mask, 8, 8 ) );
   }
}

void addIpFrag( TermBuilder& tb, IpFrag f ) {
   using namespace FragBits;
   switch ( f ) {
      case IpFrag::Non:
         tb.add( KeyField::FragInfo, 0, kFragment );
         break;
      case IpFrag::First:
         tb.add( KeyField::FragInfo, kFirst, kFirst );
         break;
      case IpFrag::NonOrFirst:
         tb.add( KeyField::FragInfo, 0, kNotFirst );
         break;
      case IpFrag::NotFirst:
         tb.add( KeyField::FragInfo, kNotFirst, kNotFirst );
         break;
      case IpFrag::Any:
         tb.add( KeyField::FragInfo, kFragment, kFragment );
         break;
   }
}

void addIpType( TermBuilder& tb, IpType t ) {
   using namespace IpTypeBits;
   switch ( t ) {
      case IpType::Any:
         break;
      case IpType::NonIp:
         tb.add( KeyField::IpTypeFlags, 0, kIp );
         break;
      case IpType::Ip:
         tb.add( KeyField::IpTypeFlags, kIp, kIp );
         break;
      case IpType::Ipv4Any:
         tb.add( KeyField::IpTypeFlags, kIpv4, kIpv4 );
         break;
      case IpType::Ipv6:
         tb.add( KeyField::IpTypeFlags, kIpv6, kIpv6 );
         break;
      case IpType::Ipv6NoExtHdr:
         tb.add( KeyField::IpTypeFlags, kIpv6, kIpv6 | kIp6ExtHdr );
         break;
      case IpType::Ipv6OneExtHdr:
         tb.add( KeyField::IpTypeFlags, kIpv6 | kIp6ExtHdr, kIpv6 | kIp6ExtHdr );
         break;
      case IpType::Arp:
         tb.add( KeyField::IpTypeFlags, kArp, kArp );
         break;
   }
}

// The key field a qualifier of up to 64 bits reads.
KeyField plainField( QualId q ) {
   switch ( q ) {
      case QualId::SrcIp:
         return KeyField::SrcIp;
      case QualId::DstIp:
         return KeyField::DstIp;
      case QualId::SrcMac:
         return KeyField::SrcMac;
      case QualId::DstMac:
         return KeyField::DstMac;
      case QualId::EtherType:
         return KeyField::EtherType;
      case QualId::IpProtocol:
         return KeyField::IpProtocol;
      case QualId::ExtensionHeaderType:
         return KeyField::ExtensionHeaderType;
      case QualId::L4SrcPort:
         return KeyField::L4SrcPort;
      case QualId::L4DstPort:
         return KeyField::L4DstPort;
      case QualId::Dscp:
      case QualId::Ip6TrafficClass:
         return KeyField::Tos;
      case QualId::Ttl:
      case QualId::Ip6HopLimit:
         return KeyField::Ttl;
      case QualId::TcpControl:
         return KeyField::TcpControl;
      case QualId::OuterVlanId:
         return KeyField::OuterVlan;
      case QualId::ForwardingVlanId:
         return KeyField::ForwardingVlan;
      case QualId::EgressClassL3Interface:
         return KeyField::EgressL3Class;
      case QualId::VxlanNetworkId:
         return KeyField::Vni;
      case QualId::HiGig:
         return KeyField::HiGig;
      case QualId::L3Routable:
         return KeyField::L3Routable;
      case QualId::MyStationHit:
         return KeyField::MyStationHit;
      case QualId::IngressStpState:
         return KeyField::StpState;
      case QualId::OutPort:
         return KeyField::OutPort;
      case QualId::InterfaceClassPort:
         return KeyField::PortClass;
      case QualId::InterfaceClassL2:
         return KeyField::L2Class;
      case QualId::InterfaceClassL3:
         return KeyField::L3Class;
      case QualId::SrcClassField:
         return KeyField::SrcClass;
      case QualId::DstClassField:
         return KeyField::DstClass;
      case QualId::DstClassL2:
         return KeyField::DstClassL2;
      case QualId::EtherTypeClass:
         return KeyField::EtherTypeClass;
      case QualId::IpProtocolClass:
         return KeyField::IpProtocolClass;
      case QualId::L4SrcPortClass:
         return KeyField::L4SrcPortClass;
      case QualId::L4DstPortClass:
         return KeyField::L4DstPortClass;
      case QualId::DstIpClassMsbNibble:
         return KeyField::DstIpClassNibble;
      case QualId::DstIp6ClassMsbNibble:
         return KeyField::DstIp6ClassNibble;
      case QualId::SrcIp6:
      case QualId::DstIp6:
      case QualId::SrcIp6High:
      case QualId::DstIp6High:
      case QualId::IpFrag:
      case QualId::IpType:
         break;
   }
   return KeyField::IpTypeFlags;  // unreachable: the callers route the others
}

void addQualifier( TermBuilder& tb, QualId q, const QualValue& v ) {
   switch ( q ) {
      case QualId::SrcIp6:
         return addIp6( tb, KeyField::SrcIp6Hi, KeyField::SrcIp6Lo, v, false );
      case QualId::DstIp6:
         return addIp6( tb, KeyField::DstIp6Hi, KeyField::DstIp6Lo, v, false );
      case QualId::SrcIp6High:
         return addIp6( tb, KeyField::SrcIp6Hi, KeyField::SrcIp6Lo, v, true );
      case QualId::DstIp6High:
         return addIp6( tb, KeyField::DstIp6Hi, KeyField::DstIp6Lo, v, true );
      case QualId::IpFrag:
         return addIpFrag( tb, static_cast<IpFrag>( v.dataU64() ) );
      case QualId::IpType:
         return addIpType( tb, static_cast<IpType>( v.dataU64() ) );
      default:
         return tb.add( plainField( q ), v.dataU64(), v.maskU64() );
   }
}

ActionImage compileActions( const std::map<ActionId, ActionValue>& actions ) {
   ActionImage a;
   for ( const auto& [id, v] : actions ) {
      switch ( id ) {
         case ActionId::Drop:
            a.drop = true;
            break;
         case ActionId::CopyToCpu:
            a.cpu = ActionImage::Cpu::Copy;
            if ( v.params.param1 != 0 ) {
               a.cpuMatchId = v.params.param2;
            }
            break;
         case ActionId::SwitchToCpuCancel:
            a.cpu = ActionImage::Cpu::Cancel;
            break;
         case ActionId::CosQCpuNew:
            a.cpuQueue = v.params.param1;
            break;
         case ActionId::PrioIntNew:
            a.internalPriority = v.params.param1;
            break;
         case ActionId::EgressMask:
            a.egressMask = v.ports;
            break;
         case ActionId::MirrorIngressIndex:
            a.mirror = v.params.param1;
            break;
         case ActionId::ClassSourceSet:
            a.sourceClass = v.params.param1;
            break;
         case ActionId::HgTrunkResolveCancel:
         case ActionId::TrunkLoadBalanceCancel:
            break;
      }
   }
   return a;
}

}  // namespace

EntryImage compileEntry( const EntryRecord& e, const UdfChunks& chunks ) {
   EntryImage img;
   TermBuilder tb;
   for ( const auto& [q, v] : e.quals ) {
      addQualifier( tb, q, v );
   }
   img.terms = tb.terms();
   img.neverMatches = tb.never();

   if ( e.inPorts ) {
      PortBitmap refused = e.inPorts->mask;
      refused.remove( e.inPorts->data );
      if ( refused.any() ) {
         img.refusedPorts = refused;
      }
   }
   for ( const auto& r : e.ranges ) {
      const U64 bit = U64{ 1 } << ( r.id - 1 );
      img.rangeRequired |= bit;
      if ( r.invert ) {
         img.rangeInvert |= bit;
      }
   }
   for ( const auto& [id, value] : e.udf ) {
      img.udf.push_back( UdfTerm{ *chunks.get( id ), value } );
   }
   img.actions = compileActions( e.actions );
   return img;
}

}  // namespace Sim
