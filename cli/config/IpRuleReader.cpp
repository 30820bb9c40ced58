// IPv4 and IPv6 rules: PROTO SRC [PORTS] DST [PORTS] [TYPE [CODE]] [OPTIONS], and the source-only
// rules of standard lists.
#include <algorithm>

#include "cli/config/ConfigNames.h"
#include "cli/config/RuleReader.h"
#include "platform/acl/IpFilter.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "platform/vesper/Exception.h"

namespace HalyardCli::ConfigText {

namespace {

constexpr std::string_view kAddressForms = "any, host ADDR or ADDR/LEN";

template <typename T>
T parseValue( std::string_view word, std::string_view expected ) {
   try {
      return Pylon::strepToValue<T>( word );
   } catch ( const Vesper::Exception& ) {
      fail( quoted( word ) + " is not " + std::string( expected ) );
   }
}

// The words of one address term.
struct AddressWords {
   bool any = false;
   std::string_view address;
   std::optional<std::string_view> mask;  // nullopt: a host
};

AddressWords takeAddressWords( WordCursor& words, const std::string& what ) {
   const std::string_view word = words.take( what, kAddressForms );
   if ( word == "any" ) {
      return { true, {}, std::nullopt };
   }
   if ( word == "host" ) {
      return { false, words.take( what + " address", "an address after host" ), std::nullopt };
   }
   const std::size_t slash = word.find( '/' );
   if ( slash == std::string_view::npos ) {
      if ( word.find_first_of( ".:" ) != std::string_view::npos ) {
         fail( std::string( word ) + " has no prefix length: expected 'host " +
               std::string( word ) + "' or '" + std::string( word ) + "/LEN'" );
      }
      fail( "unexpected " + quoted( word ) + ": expected the " + what + ", " +
            std::string( kAddressForms ) );
   }
   return { false, word.substr( 0, slash ), word.substr( slash + 1 ) };
}

void checkFamily( std::string_view address, bool v6 ) {
   const bool colon = address.find( ':' ) != std::string_view::npos;
   if ( v6 && !colon && address.find( '.' ) != std::string_view::npos ) {
      fail( "IPv4 address " + std::string( address ) +
            " in an ipv6 access-list: expected an IPv6 address" );
   }
   if ( !v6 && colon ) {
      fail( "IPv6 address " + std::string( address ) +
            " in an ip access-list: expected an IPv4 address" );
   }
}

bool isPrefixLength( std::string_view mask ) {
   return mask.find_first_of( ".:" ) == std::string_view::npos;
}

Pylon::IpAddrWithFullMask readIp4Address( WordCursor& words, const std::string& what ) {
   const AddressWords a = takeAddressWords( words, what );
   if ( a.any ) {
      return {};
   }
   checkFamily( a.address, false );
   const Pylon::IpAddr address = parseValue<Pylon::IpAddr>( a.address, "an IPv4 address" );
   U32 mask = ~U32( 0 );
   if ( a.mask && isPrefixLength( *a.mask ) ) {
      mask = Pylon::ipPrefixMask( static_cast<U8>( numberIn( *a.mask, 0, 32, "prefix length" ) ) );
   } else if ( a.mask ) {
      checkFamily( *a.mask, false );
      mask = parseValue<Pylon::IpAddr>( *a.mask, "an IPv4 mask: expected a prefix length 0 to 32" )
                 .value();
   }
   return Pylon::IpAddrWithFullMask( Pylon::IpAddr( address.value() & mask ), mask );
}

Pylon::Ip6AddrWithFullMask readIp6Address( WordCursor& words, const std::string& what ) {
   const AddressWords a = takeAddressWords( words, what );
   if ( a.any ) {
      return {};
   }
   checkFamily( a.address, true );
   Pylon::Ip6Addr address = parseValue<Pylon::Ip6Addr>( a.address, "an IPv6 address" );
   Pylon::Ip6Addr mask = Pylon::ip6PrefixMask( Pylon::Ip6PrefixLen( 128 ) );
   if ( a.mask && isPrefixLength( *a.mask ) ) {
      mask = Pylon::ip6PrefixMask(
          Pylon::Ip6PrefixLen( static_cast<S64>( numberIn( *a.mask, 0, 128, "prefix length" ) ) ) );
   } else if ( a.mask ) {
      checkFamily( *a.mask, true );
      mask =
          parseValue<Pylon::Ip6Addr>( *a.mask, "an IPv6 mask: expected a prefix length 0 to 128" );
   }
   for ( std::size_t i = 0; i < Pylon::Ip6Addr::size; ++i ) {
      address.byteIs( i, address.byte( i ) & mask.byte( i ) );
   }
   return Pylon::Ip6AddrWithFullMask( address, mask );
}

std::string protocolForms( bool v6 ) {
   return v6 ? "ipv6, tcp, udp, icmpv6, a protocol name or a number 0 to 255"
             : "ip, tcp, udp, icmp, a protocol name or a number 0 to 255";
}

U8 readProtocol( WordCursor& words, bool v6 ) {
   const std::string_view word = words.take( "protocol", protocolForms( v6 ) );
   if ( word == "ip" || ( v6 && word == "ipv6" ) ) {
      return kProtoAny;
   }
   if ( word == "icmp" || ( v6 && word == "icmpv6" ) ) {
      return v6 ? kProtoIcmp6 : kProtoIcmp;
   }
   if ( word == "ipv6" || word == "icmpv6" ) {
      fail( quoted( word ) + " in an ip access-list: expected " + protocolForms( false ) );
   }
   if ( const auto proto = ipProtocolNamed( word ) ) {
      return *proto;
   }
   if ( isNumber( word ) || word.find_first_not_of( "0123456789" ) == std::string_view::npos ) {
      return static_cast<U8>( numberIn( word, 0, 255, "protocol" ) );
   }
   fail( "unknown protocol " + quoted( word ) + ": expected " + protocolForms( v6 ) );
}

std::string_view protocolWord( U8 proto ) {
   return proto == kProtoTcp ? "tcp" : "udp";
}

bool isPortWord( std::string_view word, U8 proto ) {
   return isNumber( word ) || portNamed( word, proto ).has_value();
}

U16 readPort( WordCursor& words, U8 proto ) {
   const std::string expected = std::string( "a number 0 to 65535 or a " ) +
                                std::string( protocolWord( proto ) ) + " port name such as " +
                                std::string( portNameExamples( proto ) );
   const std::string_view word = words.take( "port", expected );
   if ( const auto port = portNamed( word, proto ) ) {
      return *port;
   }
   if ( isNumber( word ) || word.find_first_not_of( "0123456789" ) == std::string_view::npos ) {
      return static_cast<U16>( numberIn( word, 0, 0xFFFF, "port" ) );
   }
   fail( quoted( word ) + " is not a " + std::string( protocolWord( proto ) ) + " port: expected " +
         expected );
}

bool isTermOperator( std::string_view word ) {
   return word == "eq" || word == "neq" || word == "gt" || word == "lt" || word == "range";
}

// eq V [V...] | neq V [V...] | gt V | lt V | range LOW HIGH, for ports of `proto` or, with
// proto 0, for the IP length. `readValue` takes one value.
template <typename ReadValue, typename IsValue>
Acl::FieldTerm readTerm( WordCursor& words, std::string_view what, ReadValue readValue,
                         IsValue isValue ) {
   const std::string_view op =
       words.take( std::string( what ) + " operator", "eq, neq, gt, lt or range" );
   if ( op == "eq" || op == "neq" ) {
      std::vector<U16> values{ readValue() };
      while ( !words.atEnd() && isValue( words.peek() ) ) {
         values.push_back( readValue() );
      }
      return op == "eq" ? Acl::FieldTerm::eq( values ) : Acl::FieldTerm::neq( values );
   }
   if ( op == "gt" || op == "lt" ) {
      const U16 v = readValue();
      if ( ( op == "gt" && v == 0xFFFF ) || ( op == "lt" && v == 0 ) ) {
         fail( std::string( op ) + " " + std::to_string( v ) + " matches no " +
               std::string( what ) + ": expected a value that leaves some" );
      }
      return op == "gt" ? Acl::FieldTerm::gt( v ) : Acl::FieldTerm::lt( v );
   }
   if ( op == "range" ) {
      const U16 low = readValue();
      const U16 high = readValue();
      if ( low > high ) {
         fail( "range " + std::to_string( low ) + " " + std::to_string( high ) +
               " is reversed: expected the low end first" );
      }
      return Acl::FieldTerm::range( low, high );
   }
   fail( "unknown " + std::string( what ) + " operator " + quoted( op ) +
         ": expected eq, neq, gt, lt or range" );
}

Acl::FieldTerm readPortTerm( WordCursor& words, U8 proto ) {
   return readTerm(
       words, "port", [&] { return readPort( words, proto ); },
       [&]( std::string_view w ) { return isPortWord( w, proto ); } );
}

Acl::FieldTerm readLengthTerm( WordCursor& words ) {
   return readTerm(
       words, "IP length",
       [&] {
          return static_cast<U16>( numberIn( words.take( "IP length", "a number 0 to 65535" ), 0,
                                             0xFFFF, "IP length" ) );
       },
       []( std::string_view w ) { return isNumber( w ); } );
}

// What one IP rule has read so far.
class IpRule {
 public:
   explicit IpRule( bool v6 ) : v6_( v6 ) {}

   Acl::IpFilterBase& base() {
      return v6_ ? static_cast<Acl::IpFilterBase&>( f6_ ) : static_cast<Acl::IpFilterBase&>( f4_ );
   }
   void readSource( WordCursor& words ) { readAddress( words, "source", true ); }
   void readDestination( WordCursor& words ) { readAddress( words, "destination", false ); }
   void readPorts( WordCursor& words, bool source );
   void readIcmp( WordCursor& words );
   void readOption( WordCursor& words, std::string_view option );
   void finish() const;
   Acl::RuleConfig rule() const;

   bool isIcmp() const { return proto() == ( v6_ ? kProtoIcmp6 : kProtoIcmp ); }
   bool log = false;

 private:
   U8 proto() const { return v6_ ? f6_.proto() : f4_.proto(); }
   void readAddress( WordCursor& words, const std::string& what, bool source );
   void readDscp( WordCursor& words );
   void readTtl( WordCursor& words );
   void readNetworkId( WordCursor& words, std::string_view option );
   void readTcpFlag( std::string_view flag );

   bool v6_;
   Acl::IpFilter f4_;
   Acl::Ip6Filter f6_;
   OptionSet options_;
   bool layer4Terms_ = false;
};

void IpRule::readAddress( WordCursor& words, const std::string& what, bool source ) {
   if ( v6_ ) {
      const auto a = readIp6Address( words, what );
      source ? f6_.sourceIs( a ) : f6_.destinationIs( a );
   } else {
      const auto a = readIp4Address( words, what );
      source ? f4_.sourceIs( a ) : f4_.destinationIs( a );
   }
}

void IpRule::readPorts( WordCursor& words, bool source ) {
   if ( !isTermOperator( words.peek() ) ) {
      return;
   }
   const U8 ruleProto = proto();
   if ( ruleProto != kProtoTcp && ruleProto != kProtoUdp ) {
      fail( "port term " + quoted( words.peek() ) + " on a rule for protocol " +
            std::to_string( ruleProto ) + ": expected tcp or udp for port terms" );
   }
   const Acl::FieldTerm term = readPortTerm( words, ruleProto );
   source ? base().srcPortIs( term ) : base().dstPortIs( term );
   layer4Terms_ = true;
}

void IpRule::readIcmp( WordCursor& words ) {
   const std::string_view word = words.peek();
   std::optional<U8> code;
   if ( const IcmpName* name = icmpNamed( word, v6_ ) ) {
      words.take( "", "" );
      base().icmpTypeIs( name->type );
      code = name->code;
   } else if ( isNumber( word ) ) {
      base().icmpTypeIs(
          static_cast<U16>( numberIn( words.take( "", "" ), 0, 255, "ICMP type" ) ) );
   } else {
      return;
   }
   layer4Terms_ = true;
   if ( !code && isNumber( words.peek() ) ) {
      code = static_cast<U8>( numberIn( words.take( "", "" ), 0, 255, "ICMP code" ) );
   }
   if ( code ) {
      base().icmpCodeIs( *code );
   }
}

void IpRule::readDscp( WordCursor& words ) {
   const std::string_view word =
       words.take( "DSCP value", "a number 0 to 63 or a name (af11, ef, cs1, ...)" );
   const auto named = dscpNamed( word );
   const U8 dscp = named ? *named : static_cast<U8>( numberIn( word, 0, 63, "DSCP" ) );
   if ( v6_ ) {
      f6_.trafficClassIs( static_cast<U8>( dscp << 2 ), 0xFC );
   } else {
      f4_.dscpIs( dscp );
   }
}

void IpRule::readTtl( WordCursor& words ) {
   const std::string_view op = words.take( "TTL operator", "eq, gt, lt or neq" );
   Acl::TtlOp ttlOp;
   if ( op == "eq" ) {
      ttlOp = Acl::TtlOp::eq;
   } else if ( op == "gt" ) {
      ttlOp = Acl::TtlOp::gt;
   } else if ( op == "lt" ) {
      ttlOp = Acl::TtlOp::lt;
   } else if ( op == "neq" ) {
      ttlOp = Acl::TtlOp::neq;
   } else {
      fail( "unknown TTL operator " + quoted( op ) + ": expected eq, gt, lt or neq" );
   }
   const U8 ttl =
       static_cast<U8>( numberIn( words.take( "TTL value", "a number 0 to 255" ), 0, 255, "TTL" ) );
   base().ttlIs( Acl::TtlSpec( ttlOp, ttl ) );
}

void IpRule::readNetworkId( WordCursor& words, std::string_view option ) {
   constexpr U64 maxId = Acl::IpFilterBase::maxVni;
   const std::string what = option == "vni" ? "VNI" : "TNI";
   const U64 id = numberIn( words.take( what, "a number 0 to 16777215" ), 0, maxId, what );
   U64 mask = maxId;
   if ( isNumber( words.peek() ) ) {
      mask = numberIn( words.take( "", "" ), 0, maxId, what + " mask" );
   }
   if ( option == "vni" ) {
      base().vniIs( static_cast<S64>( id ), static_cast<U32>( mask ) );
   } else {
      base().tniIs( static_cast<S64>( id ), static_cast<U32>( mask ) );
   }
}

void IpRule::readTcpFlag( std::string_view flag ) {
   if ( proto() != kProtoTcp ) {
      fail( "tcp flag " + quoted( flag ) + " on a rule that is not for tcp: expected tcp" );
   }
   constexpr std::pair<std::string_view, U8> flags[] = {
       { "fin", Acl::tcpFlagFin }, { "syn", Acl::tcpFlagSyn }, { "rst", Acl::tcpFlagRst },
       { "psh", Acl::tcpFlagPsh }, { "ack", Acl::tcpFlagAck }, { "urg", Acl::tcpFlagUrg } };
   for ( const auto& [name, bit] : flags ) {
      if ( name == flag ) {
         base().tcpFlagsIs( static_cast<U8>( base().tcpFlags() | bit ) );
      }
   }
   layer4Terms_ = true;
}

constexpr std::string_view kIpOptions =
    "fragments, dscp, ecn, ttl, vlan, length, vni, tni, syn, ack, fin, rst, psh, urg, payload "
    "or log";

void IpRule::readOption( WordCursor& words, std::string_view option ) {
   options_.note( option );
   if ( option == "log" ) {
      log = true;
   } else if ( option == "fragments" ) {
      if ( v6_ ) {
         fail( "'fragments' in an ipv6 access-list: expected it in ip access-lists only" );
      }
      f4_.fragmentsIs( 1 );
   } else if ( option == "dscp" ) {
      readDscp( words );
   } else if ( option == "ecn" ) {
      const std::string_view word =
          words.take( "ECN value", "a number 0 to 3 or non-ect, ect0, ect1, ce" );
      const auto named = ecnNamed( word );
      base().ecnIs( named ? *named : static_cast<U8>( numberIn( word, 0, 3, "ECN" ) ), 3 );
   } else if ( option == "ttl" ) {
      readTtl( words );
   } else if ( option == "vlan" ) {
      U16 vlan = 0;
      U16 mask = 0;
      readVlan( words, "vlan", vlan, mask );
      base().vlanIs( vlan, mask );
   } else if ( option == "length" ) {
      base().ipLengthIs( readLengthTerm( words ) );
   } else if ( option == "vni" || option == "tni" ) {
      readNetworkId( words, option );
   } else if ( option == "payload" ) {
      base().payloadIs( readPayload( words ) );
   } else if ( option == "syn" || option == "ack" || option == "fin" || option == "rst" ||
               option == "psh" || option == "urg" ) {
      readTcpFlag( option );
   } else {
      fail( "unknown option " + quoted( option ) + ": expected " + std::string( kIpOptions ) );
   }
}

void IpRule::finish() const {
   if ( !v6_ && f4_.fragments() && layer4Terms_ ) {
      fail(
          "'fragments' with port terms, tcp flags or an ICMP type: expected one or the other, "
          "since later fragments carry no layer 4 header" );
   }
}

Acl::RuleConfig IpRule::rule() const {
   if ( v6_ ) {
      return Acl::RuleConfig( Acl::Ip6RuleConfig( f6_ ) );
   }
   return Acl::RuleConfig( Acl::IpRuleConfig( f4_ ) );
}

}  // namespace

Acl::RuleConfig readIpRule( WordCursor& words, Acl::AclType type, bool standard ) {
   const bool v6 = type == Acl::AclType::ipv6;
   IpRule r( v6 );
   if ( standard ) {
      r.readSource( words );
      r.log = words.takeIf( "log" );
      words.expectEnd(
          "log or the end of the line: a standard list's rules match the source only" );
   } else {
      r.base().protoIs( readProtocol( words, v6 ) );
      r.readSource( words );
      r.readPorts( words, true );
      r.readDestination( words );
      r.readPorts( words, false );
      if ( r.isIcmp() ) {
         r.readIcmp( words );
      }
      while ( !words.atEnd() ) {
         const std::string_view option = words.take( "", "" );
         r.readOption( words, option );
      }
      r.finish();
   }
   Acl::RuleConfig rule = r.rule();
   rule.logIs( r.log );
   return rule;
}

}  // namespace HalyardCli::ConfigText
