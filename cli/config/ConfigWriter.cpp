// The configuration written back as text, and the comparison of two configurations.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <sstream>

#include "cli/config/ConfigNames.h"
#include "cli/config/ConfigText.h"
#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"

namespace HalyardCli {

namespace {

using namespace ConfigText;

constexpr std::string_view kIndent = "   ";

std::string hex( U64 value, int width = 0 ) {
   char buf[24];
   std::snprintf( buf, sizeof buf, "0x%0*llx", width, static_cast<unsigned long long>( value ) );
   return buf;
}

std::string address( const Pylon::IpAddrWithFullMask& a ) {
   if ( a.mask() == 0 ) {
      return "any";
   }
   if ( a.mask() == ~U32( 0 ) ) {
      return "host " + Pylon::valueToStrep( a.address() );
   }
   const int len = std::countl_one( a.mask() );
   if ( Pylon::ipPrefixMask( static_cast<U8>( len ) ) == a.mask() ) {
      return Pylon::valueToStrep( a.address() ) + "/" + std::to_string( len );
   }
   return Pylon::valueToStrep( a.address() ) + "/" +
          Pylon::valueToStrep( Pylon::IpAddr( a.mask() ) );
}

std::string address( const Pylon::Ip6AddrWithFullMask& a ) {
   if ( a.mask().isZero() ) {
      return "any";
   }
   const Pylon::Ip6PrefixLen len = a.prefixLen();
   if ( len.value() == 128 ) {
      return "host " + Pylon::valueToStrep( a.address() );
   }
   return Pylon::valueToStrep( a.address() ) + "/" +
          ( len.isInvalid() ? Pylon::valueToStrep( a.mask() ) : std::to_string( len.value() ) );
}

std::string term( const Acl::FieldTerm& t ) {
   return " " + Acl::valueToStrep( t );
}

std::string protocol( U8 proto, bool v6 ) {
   switch ( proto ) {
      case kProtoAny:
         return v6 ? "ipv6" : "ip";
      case kProtoTcp:
         return "tcp";
      case kProtoUdp:
         return "udp";
      case kProtoIcmp:
         return v6 ? "1" : "icmp";
      case kProtoIcmp6:
         return v6 ? "icmpv6" : "58";
      default:
         return std::to_string( proto );
   }
}

std::string payload( const Acl::PayloadSpec& spec ) {
   if ( spec == Acl::PayloadSpec() ) {
      return "";
   }
   std::string text = " payload";
   if ( spec.start() == Acl::PayloadStart::headerStart ) {
      text += " header-start";
   }
   for ( const Acl::PayloadValue& v : spec.values() ) {
      text += " " + std::to_string( v.offset ) + "/" + hex( v.pattern ) + "/" + hex( v.mask );
   }
   return text;
}

// The options both IP families share, in a fixed order.
std::string ipOptions( const Acl::IpFilterBase& f ) {
   std::string text;
   if ( f.ecnMask() ) {
      text += " ecn " + std::to_string( f.ecn() );
   }
   if ( f.ttl().op() != Acl::TtlOp::any ) {
      text += " ttl " + Acl::valueToStrep( f.ttl() );
   }
   if ( f.vlanMask() ) {
      text += " vlan " + std::to_string( f.vlan() ) + " " + hex( f.vlanMask() );
   }
   if ( !f.ipLength().isAny() ) {
      text += " length" + term( f.ipLength() );
   }
   if ( f.matchVni() ) {
      text += " vni " + std::to_string( f.vni() ) + " " + std::to_string( f.vniMask() );
   }
   if ( f.matchTni() ) {
      text += " tni " + std::to_string( f.tni() ) + " " + std::to_string( f.tniMask() );
   }
   constexpr std::pair<U8, std::string_view> flags[] = {
       { Acl::tcpFlagSyn, "syn" }, { Acl::tcpFlagAck, "ack" }, { Acl::tcpFlagFin, "fin" },
       { Acl::tcpFlagRst, "rst" }, { Acl::tcpFlagPsh, "psh" }, { Acl::tcpFlagUrg, "urg" } };
   for ( const auto& [bit, name] : flags ) {
      if ( f.tcpFlags() & bit ) {
         text += " " + std::string( name );
      }
   }
   return text + payload( f.payload() );
}

// The full-mask forms of the addresses, under one name for both families.
const Pylon::IpAddrWithFullMask& sourceOf( const Acl::IpFilter& f ) {
   return f.source();
}
const Pylon::Ip6AddrWithFullMask& sourceOf( const Acl::Ip6Filter& f ) {
   return f.sourceFullMask();
}
const Pylon::IpAddrWithFullMask& destinationOf( const Acl::IpFilter& f ) {
   return f.destination();
}
const Pylon::Ip6AddrWithFullMask& destinationOf( const Acl::Ip6Filter& f ) {
   return f.destinationFullMask();
}

template <typename Filter>
std::string ipMatch( const Filter& f, bool v6, bool standard ) {
   if ( standard ) {
      return " " + address( sourceOf( f ) );
   }
   std::string text = " " + protocol( f.proto(), v6 ) + " " + address( sourceOf( f ) );
   if ( !f.srcPort().isAny() ) {
      text += term( f.srcPort() );
   }
   text += " " + address( destinationOf( f ) );
   if ( !f.dstPort().isAny() ) {
      text += term( f.dstPort() );
   }
   if ( f.icmpType() != Acl::icmpAny ) {
      text += " " + std::to_string( f.icmpType() );
      if ( f.icmpCode() != Acl::icmpAny ) {
         text += " " + std::to_string( f.icmpCode() );
      }
   }
   return text;
}

std::string ipRule( const Acl::IpFilter& f, bool standard ) {
   std::string text = ipMatch( f, false, standard );
   if ( standard ) {
      return text;
   }
   if ( f.fragments() ) {
      text += " fragments";
   }
   if ( f.matchDscp() ) {
      text += " dscp " + std::to_string( f.dscp() );
   }
   return text + ipOptions( f );
}

std::string ip6Rule( const Acl::Ip6Filter& f, bool standard ) {
   std::string text = ipMatch( f, true, standard );
   if ( standard ) {
      return text;
   }
   // The language sets the traffic class only through dscp, whose mask is the six high bits.
   if ( f.trafficClassMask() ) {
      text += " dscp " + std::to_string( f.trafficClass() >> 2 );
   }
   return text + ipOptions( f );
}

std::string macAddress( const Pylon::EthAddr& a, const Pylon::EthAddr& mask ) {
   if ( mask.isZero() ) {
      return "any";
   }
   if ( mask == Pylon::EthAddr( 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF ) ) {
      return "host " + Pylon::valueToStrep( a );
   }
   return Pylon::valueToStrep( a ) + " " + Pylon::valueToStrep( mask );
}

std::string macRule( const Acl::MacFilter& f ) {
   std::string text = " " + macAddress( f.source(), f.sourceMask() ) + " " +
                      macAddress( f.destination(), f.destinationMask() );
   if ( f.proto() != Acl::MacFilter::protoAny ) {
      text += " " + hex( static_cast<U64>( f.proto() ), 4 );
   }
   if ( f.vlanMask() ) {
      text += " vlan " + std::to_string( f.vlan() ) + " " + hex( f.vlanMask() );
   }
   if ( f.innerVlanMask() ) {
      text += " inner-vlan " + std::to_string( f.innerVlan() ) + " " + hex( f.innerVlanMask() );
   }
   if ( f.matchMplsLabel() ) {
      text += " mpls-label " + std::to_string( f.mplsLabel() );
   }
   if ( f.matchMplsInnerLabel() ) {
      text += " mpls-inner-label " + std::to_string( f.mplsInnerLabel() );
   }
   return text + payload( f.payload() );
}

std::string ruleLine( const Acl::AclConfig& list, U32 seqNo, const Acl::RuleConfig& rule ) {
   std::string text = std::string( kIndent ) + std::to_string( seqNo );
   if ( rule.isRemark() ) {
      return text + " remark " + rule.remark();
   }
   text += " " + Vesper::stringValue( rule.action() );
   switch ( rule.aclType() ) {
      case Acl::AclType::ip:
         text += ipRule( rule.ipFilter(), list.standard() );
         break;
      case Acl::AclType::ipv6:
         text += ip6Rule( rule.ip6Filter(), list.standard() );
         break;
      case Acl::AclType::mac:
         text += macRule( rule.macFilter() );
         break;
   }
   return text + ( rule.log() ? " log" : "" );
}

constexpr Acl::AclType kTypes[] = { Acl::AclType::ip, Acl::AclType::ipv6, Acl::AclType::mac };
constexpr Acl::AclDirection kDirections[] = { Acl::AclDirection::in, Acl::AclDirection::out };

std::vector<Acl::AclConfig::Ptr> listsByName( const Acl::Config& config, Acl::AclType type ) {
   std::vector<Acl::AclConfig::Ptr> lists;
   for ( const auto& node : config.aclConfig( type ) ) {
      lists.push_back( node.value() );
   }
   std::ranges::sort( lists, {}, []( const Acl::AclConfig::Ptr& l ) { return l->name().str(); } );
   return lists;
}

void writeHardware( const Acl::ParamConfig& p, std::ostream& out ) {
   auto width = []( Acl::AclKeyWidthMode m ) {
      return m == Acl::AclKeyWidthMode::narrow ? "narrow" : "default";
   };
   if ( p.ingressRaclSharing() ) {
      out << "hardware access-list resource sharing vlan in\n";
   }
   if ( p.ingressMirrorAclKeyWidthMode() != Acl::AclKeyWidthMode::platformDefault ) {
      out << "hardware access-list mirroring key-width "
          << width( p.ingressMirrorAclKeyWidthMode() ) << "\n";
   }
   if ( p.ingressIpv6SecurityAclKeyWidthMode() != Acl::AclKeyWidthMode::platformDefault ) {
      out << "hardware access-list ipv6 key-width "
          << width( p.ingressIpv6SecurityAclKeyWidthMode() ) << "\n";
   }
   switch ( p.permitIcmp6TypesConfig() ) {
      case Acl::PermitIcmp6TypesConfig::none:
         out << "hardware access-list ipv6 permit icmpv6 none\n";
         break;
      case Acl::PermitIcmp6TypesConfig::neighborDiscovery:
         out << "hardware access-list ipv6 permit icmpv6 neighbor-discovery\n";
         break;
      case Acl::PermitIcmp6TypesConfig::defaultTypes:
         break;
   }
   switch ( p.permitDuringAclUpdateConfig() ) {
      case Acl::PermitDuringAclUpdateConfig::permit:
         out << "hardware access-list update default-result permit\n";
         break;
      case Acl::PermitDuringAclUpdateConfig::deny:
         out << "hardware access-list update default-result deny\n";
         break;
      case Acl::PermitDuringAclUpdateConfig::platformDefault:
         break;
   }
}

// Every binding as (interface, type, direction, name), in interface order.
struct BindingRow {
   Pylon::IntfId intf;
   Acl::AclType type;
   Acl::AclDirection direction;
   std::string name;
   friend auto operator<=>( const BindingRow&, const BindingRow& ) = default;
};

std::vector<BindingRow> bindings( const Acl::IntfConfig& intfConfig ) {
   std::vector<BindingRow> rows;
   for ( const Acl::AclType type : kTypes ) {
      for ( const Acl::AclDirection dir : kDirections ) {
         for ( const auto& node : intfConfig.intfAcl( type, dir ) ) {
            rows.push_back( { node.key(), type, dir, node.value().str() } );
         }
      }
   }
   std::ranges::sort( rows );
   return rows;
}

bool sameParams( const Acl::ParamConfig& a, const Acl::ParamConfig& b ) {
   return a.ingressRaclSharing() == b.ingressRaclSharing() &&
          a.ingressMirrorAclKeyWidthMode() == b.ingressMirrorAclKeyWidthMode() &&
          a.ingressIpv6SecurityAclKeyWidthMode() == b.ingressIpv6SecurityAclKeyWidthMode() &&
          a.permitIcmp6TypesConfig() == b.permitIcmp6TypesConfig() &&
          a.permitDuringAclUpdateConfig() == b.permitDuringAclUpdateConfig();
}

bool sameLists( const Acl::Config& a, const Acl::Config& b ) {
   for ( const Acl::AclType type : kTypes ) {
      const auto la = listsByName( a, type );
      const auto lb = listsByName( b, type );
      if ( la.size() != lb.size() ) {
         return false;
      }
      for ( std::size_t i = 0; i < la.size(); ++i ) {
         if ( la[i]->name() != lb[i]->name() || la[i]->standard() != lb[i]->standard() ||
              la[i]->rule() != lb[i]->rule() ) {
            return false;
         }
      }
   }
   return true;
}

}  // namespace

std::string writeConfig( const AclSetup& setup ) {
   std::ostringstream out;
   writeHardware( *setup.paramConfig, out );
   for ( const Acl::AclType type : kTypes ) {
      for ( const Acl::AclConfig::Ptr& list : listsByName( *setup.config, type ) ) {
         out << "!\n"
             << Vesper::stringValue( type ) << " access-list "
             << ( list->standard() ? "standard " : "" ) << list->name() << "\n";
         for ( const auto& [seqNo, rule] : list->rule() ) {
            out << ruleLine( *list, seqNo, rule ) << "\n";
         }
      }
   }
   std::optional<Pylon::IntfId> intf;
   for ( const BindingRow& row : bindings( *setup.intfConfig ) ) {
      if ( row.intf != intf ) {
         out << "!\ninterface " << Pylon::valueToStrep( row.intf ) << "\n";
         intf = row.intf;
      }
      out << kIndent << Vesper::stringValue( row.type ) << " access-group " << row.name << " "
          << Vesper::stringValue( row.direction ) << "\n";
   }
   return out.str();
}

bool sameConfig( const AclSetup& a, const AclSetup& b ) {
   return sameLists( *a.config, *b.config ) &&
          bindings( *a.intfConfig ) == bindings( *b.intfConfig ) &&
          sameParams( *a.paramConfig, *b.paramConfig );
}

}  // namespace HalyardCli
