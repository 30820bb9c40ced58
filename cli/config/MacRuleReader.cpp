// MAC rules: SRC DST [ETHERTYPE] [OPTIONS], with SRC and DST any | host MAC | MAC MASK.
#include "cli/config/ConfigNames.h"
#include "cli/config/RuleReader.h"
#include "platform/acl/MacFilter.h"
#include "platform/pylon/EthAddr.h"
#include "platform/vesper/Exception.h"

namespace HalyardCli::ConfigText {

namespace {

constexpr std::string_view kMacForms = "any, host MAC or MAC MASK";
constexpr std::string_view kMacOptions =
    "vlan, inner-vlan, mpls-label, mpls-inner-label, payload or log";

std::optional<Pylon::EthAddr> macOf( std::string_view word ) {
   try {
      return Pylon::strepToValue<Pylon::EthAddr>( word );
   } catch ( const Vesper::Exception& ) {
      return std::nullopt;
   }
}

struct MacTerm {
   Pylon::EthAddr address;
   Pylon::EthAddr mask;
};

MacTerm readMacTerm( WordCursor& words, const std::string& what ) {
   const std::string_view word = words.take( what, kMacForms );
   if ( word == "any" ) {
      return {};
   }
   Pylon::EthAddr mask( 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF );
   std::optional<Pylon::EthAddr> address;
   if ( word == "host" ) {
      const std::string_view host = words.take( what + " address", "a MAC address after host" );
      address = macOf( host );
      if ( !address ) {
         fail( quoted( host ) +
               " is not a MAC address: expected aa:bb:cc:dd:ee:ff or aabb.ccdd.eeff" );
      }
   } else {
      address = macOf( word );
      if ( !address ) {
         fail( "unexpected " + quoted( word ) + ": expected the " + what + ", " +
               std::string( kMacForms ) );
      }
      const auto given = macOf( words.peek() );
      if ( !given ) {
         fail( "MAC address " + std::string( word ) + " without mask: expected 'host " +
               std::string( word ) + "' or '" + std::string( word ) + " MASK'" );
      }
      words.take( "", "" );
      mask = *given;
   }
   for ( std::size_t i = 0; i < Pylon::EthAddr::size; ++i ) {
      address->byteIs( i, address->byte( i ) & mask.byte( i ) );
   }
   return { *address, mask };
}

void readMacOption( WordCursor& words, std::string_view option, Acl::MacFilter& filter,
                    bool& log ) {
   if ( option == "log" ) {
      log = true;
   } else if ( option == "vlan" || option == "inner-vlan" ) {
      U16 vlan = 0;
      U16 mask = 0;
      readVlan( words, option, vlan, mask );
      option == "vlan" ? filter.vlanIs( vlan, mask ) : filter.innerVlanIs( vlan, mask );
   } else if ( option == "mpls-label" || option == "mpls-inner-label" ) {
      const S64 label =
          static_cast<S64>( numberIn( words.take( "MPLS label", "a number 0 to 1048575" ), 0,
                                      Acl::MacFilter::maxMplsLabel, "MPLS label" ) );
      option == "mpls-label" ? filter.mplsLabelIs( label ) : filter.mplsInnerLabelIs( label );
   } else if ( option == "payload" ) {
      filter.payloadIs( readPayload( words ) );
   } else if ( filter.proto() == Acl::MacFilter::protoAny ) {
      fail( "unknown EtherType or option " + quoted( option ) +
            ": expected a number, ipv4, arp, ipv6, mpls, lldp, ... or " +
            std::string( kMacOptions ) );
   } else {
      fail( "unknown option " + quoted( option ) + ": expected " + std::string( kMacOptions ) );
   }
}

}  // namespace

Acl::RuleConfig readMacRule( WordCursor& words ) {
   Acl::MacFilter filter;
   const MacTerm source = readMacTerm( words, "source" );
   filter.sourceIs( source.address, source.mask );
   const MacTerm destination = readMacTerm( words, "destination" );
   filter.destinationIs( destination.address, destination.mask );
   if ( isNumber( words.peek() ) ) {
      filter.protoIs(
          static_cast<S32>( numberIn( words.take( "", "" ), 0, 0xFFFF, "EtherType" ) ) );
   } else if ( const auto named = etherTypeNamed( words.peek() ) ) {
      words.take( "", "" );
      filter.protoIs( *named );
   }
   bool log = false;
   OptionSet options;
   while ( !words.atEnd() ) {
      const std::string_view option = words.take( "", "" );
      options.note( option );
      readMacOption( words, option, filter, log );
   }
   Acl::RuleConfig rule( ( Acl::MacRuleConfig( filter ) ) );
   rule.logIs( log );
   return rule;
}

}  // namespace HalyardCli::ConfigText
