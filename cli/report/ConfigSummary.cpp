#include "cli/report/ConfigSummary.h"

#include <algorithm>
#include <iomanip>
#include <map>

namespace HalyardCli {

namespace {

constexpr Acl::AclType kTypes[] = { Acl::AclType::ip, Acl::AclType::ipv6, Acl::AclType::mac };
constexpr Acl::AclDirection kDirections[] = { Acl::AclDirection::in, Acl::AclDirection::out };

// The interfaces bound to the list, by direction, in interface order.
std::string bindingsOf( const Acl::IntfConfig& intfConfig, Acl::AclType type,
                        const Vesper::Name& name ) {
   std::string text;
   for ( const Acl::AclDirection dir : kDirections ) {
      std::vector<Pylon::IntfId> intfs;
      for ( const auto& node : intfConfig.intfAcl( type, dir ) ) {
         if ( node.value() == name ) {
            intfs.push_back( node.key() );
         }
      }
      if ( intfs.empty() ) {
         continue;
      }
      std::ranges::sort( intfs );
      text += ( text.empty() ? "" : "  " ) + Vesper::stringValue( dir ) + ":";
      for ( const Pylon::IntfId intf : intfs ) {
         text += " " + Pylon::valueToStrep( intf );
      }
   }
   return text.empty() ? "not bound" : text;
}

}  // namespace

void writeConfigSummary( const AclSetup& setup, std::ostream& out ) {
   for ( const Acl::AclType type : kTypes ) {
      std::map<std::string, Acl::AclConfig::Ptr> lists;
      for ( const auto& node : setup.config->aclConfig( type ) ) {
         lists.emplace( node.key().str(), node.value() );
      }
      for ( const auto& [name, list] : lists ) {
         const auto rules = std::ranges::count_if(
             list->rule(), []( const auto& seqRule ) { return !seqRule.second.isRemark(); } );
         const std::string head = "  " + Vesper::stringValue( type ) + " access-list " + name;
         out << std::left << std::setw( 34 ) << head << " " << std::right << std::setw( 3 ) << rules
             << ( rules == 1 ? " rule   " : " rules  " )
             << bindingsOf( *setup.intfConfig, type, list->name() ) << "\n";
      }
   }
}

void writePacketSummary( const std::vector<Fennel::Packet>& packets, std::ostream& out ) {
   const auto v4 =
       std::ranges::count_if( packets, []( const auto& p ) { return p.ipv4.has_value(); } );
   const auto v6 =
       std::ranges::count_if( packets, []( const auto& p ) { return p.ipv6.has_value(); } );
   out << "  " << packets.size() << " packets: " << v4 << " IPv4, " << v6 << " IPv6, "
       << static_cast<long>( packets.size() ) - v4 - v6 << " other\n";
}

}  // namespace HalyardCli
