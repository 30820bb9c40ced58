// The line loop of the configuration reader: sections (access lists, interfaces, hardware
// settings), sequence numbers, bindings, and the diagnostics.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <tuple>

#include "cli/config/ConfigText.h"
#include "cli/config/ConfigWords.h"
#include "cli/config/RuleReader.h"
#include "platform/vesper/Exception.h"

namespace HalyardCli {

namespace ConfigText {
namespace {

// A reader stops after this many findings: past it, the rest is noise from the first ones.
constexpr std::size_t kMaxDiagnostics = 50;
constexpr U64 kMaxSeqNo = 0xFFFFFFFF;
// A rule without a sequence number follows the highest one so far by this much.
constexpr U64 kSeqStep = 10;

constexpr std::string_view kSections = "ip|ipv6|mac access-list, interface or hardware access-list";

std::string typeWord( Acl::AclType type ) {
   return Vesper::stringValue( type );
}

// "an ip access-list", "a mac access-list".
std::string aList( Acl::AclType type ) {
   return ( type == Acl::AclType::mac ? "a " : "an " ) + typeWord( type ) + " access-list";
}

struct ListState {
   Acl::AclConfig::Ptr list;
   U32 line = 0;
   std::map<U32, U32> seqLines;  // sequence number -> line
};

struct Binding {
   Acl::AclType type;
   Acl::AclDirection direction;
   Pylon::IntfId intf;
   std::string name;
   U32 line;
};

class Reader {
 public:
   Reader( std::string_view fileName, const ConfigOptions& options )
       : file_( fileName ), options_( options ) {
      setup_.config = Acl::configFactory();
      setup_.intfConfig = Acl::intfConfigFactory();
      setup_.paramConfig = Acl::paramConfigFactory();
   }

   void readText( std::string_view text );
   AclSetup finish();

 private:
   enum class Section { none, list, intf, broken };

   void readLine( std::string_view line );
   void readSectionLine( WordCursor& words, std::string_view first );
   void readList( WordCursor& words, Acl::AclType type );
   void readRule( WordCursor& words, std::string_view line );
   void readInterface( WordCursor& words );
   void readAccessGroup( WordCursor& words, Acl::AclType type );
   void readHardware( WordCursor& words );
   void noteHardware( const std::string& setting );
   void diagnose( U32 line, std::string message );

   std::string file_;
   const ConfigOptions& options_;
   AclSetup setup_;
   std::vector<ConfigDiagnostic> diagnostics_;
   U32 lineNo_ = 0;
   Section section_ = Section::none;
   ListState* list_ = nullptr;
   Pylon::IntfId intf_;
   std::map<std::pair<Acl::AclType, std::string>, ListState> lists_;
   std::vector<Binding> bindings_;
   std::map<std::tuple<Acl::AclType, Acl::AclDirection, Pylon::IntfId>, U32> bindingLines_;
   std::map<std::string, U32> hardwareLines_;
};

void Reader::diagnose( U32 line, std::string message ) {
   if ( diagnostics_.size() < kMaxDiagnostics ) {
      diagnostics_.push_back( { file_, line, std::move( message ) } );
   }
}

void Reader::readText( std::string_view text ) {
   std::size_t start = 0;
   while ( start < text.size() && diagnostics_.size() < kMaxDiagnostics ) {
      std::size_t end = text.find( '\n', start );
      if ( end == std::string_view::npos ) {
         end = text.size();
      }
      ++lineNo_;
      try {
         readLine( text.substr( start, end - start ) );
      } catch ( const LineError& e ) {
         diagnose( lineNo_, e.message );
      } catch ( const Vesper::Exception& e ) {
         diagnose( lineNo_, e.what() );
      }
      start = end + 1;
   }
}

void Reader::readLine( std::string_view line ) {
   WordCursor words( splitWords( line ) );
   if ( words.atEnd() || words.peek().front() == '!' ) {
      return;
   }
   const std::string_view first = words.peek();
   const bool sectionWord = first == "interface" || first == "hardware" ||
                            ( ( first == "ip" || first == "ipv6" || first == "mac" ) &&
                              words.peekAfter() == "access-list" );
   if ( sectionWord ) {
      // A failed section line leaves its section broken, so that its body is not read as
      // lines outside any section.
      section_ = Section::broken;
      readSectionLine( words, words.take( "", "" ) );
      return;
   }
   if ( section_ == Section::broken ) {
      return;
   }
   if ( section_ == Section::list ) {
      readRule( words, line );
      return;
   }
   if ( section_ == Section::intf ) {
      const std::string_view type = words.take( "", "" );
      if ( words.takeIf( "access-group" ) && ( type == "ip" || type == "ipv6" || type == "mac" ) ) {
         readAccessGroup( words, Vesper::sequenceToValue<Acl::AclType>( type ) );
         return;
      }
      fail( "unknown keyword " + quoted( type ) +
            " in an interface: expected ip|ipv6|mac access-group NAME in|out, or " +
            std::string( kSections ) );
   }
   fail( "unknown keyword " + quoted( first ) + ": expected " + std::string( kSections ) );
}

void Reader::readSectionLine( WordCursor& words, std::string_view first ) {
   if ( first == "interface" ) {
      readInterface( words );
   } else if ( first == "hardware" ) {
      readHardware( words );
   } else {
      words.take( "", "" );  // access-list
      readList( words, Vesper::sequenceToValue<Acl::AclType>( first ) );
   }
}

void Reader::readList( WordCursor& words, Acl::AclType type ) {
   const std::string form = typeWord( type ) + " access-list NAME";
   bool standard = false;
   if ( words.peek() == "standard" && !words.peekAfter().empty() ) {
      words.take( "", "" );
      if ( type == Acl::AclType::mac ) {
         fail( "mac access-lists have no standard form: expected " + form );
      }
      standard = true;
   }
   const std::string name( words.take( "access-list name", form ) );
   words.expectEnd( "the end of the line after the list name" );
   auto [it, created] = lists_.try_emplace( { type, name } );
   if ( !created ) {
      fail( typeWord( type ) + " access-list " + name +
            " is defined twice: expected one "
            "definition (first at line " +
            std::to_string( it->second.line ) + ")" );
   }
   it->second.line = lineNo_;
   it->second.list = setup_.config->aclConfigIs( type, Vesper::Name( name ) );
   it->second.list->standardIs( standard );
   list_ = &it->second;
   section_ = Section::list;
}

void Reader::readRule( WordCursor& words, std::string_view line ) {
   Acl::AclConfig& list = *list_->list;
   const std::string listText = typeWord( list.type() ) + " access-list " + list.name().str();
   U64 seq;
   if ( isNumber( words.peek() ) ||
        words.peek().find_first_not_of( "0123456789" ) == std::string_view::npos ) {
      seq = numberIn( words.take( "", "" ), 1, kMaxSeqNo, "sequence number" );
   } else {
      seq = ( list_->seqLines.empty() ? 0 : list_->seqLines.rbegin()->first ) + kSeqStep;
      if ( seq > kMaxSeqNo ) {
         fail( "no sequence number follows " + std::to_string( seq - kSeqStep ) +
               ": expected an explicit sequence number" );
      }
   }
   const std::string_view action =
       words.take( "action", "permit, deny or remark after the sequence number" );
   if ( action != "permit" && action != "deny" && action != "remark" ) {
      fail( "unknown keyword " + quoted( action ) + " in " + listText +
            ": expected a sequence number, permit, deny or remark, or " +
            std::string( kSections ) );
   }
   const U32 seqNo = static_cast<U32>( seq );
   if ( const auto used = list_->seqLines.find( seqNo ); used != list_->seqLines.end() ) {
      fail( "sequence number " + std::to_string( seqNo ) + " is used twice in " + listText +
            ": expected a new number (first at line " + std::to_string( used->second ) + ")" );
   }
   Acl::RuleConfig rule;
   if ( action == "remark" ) {
      const std::string_view text = words.rest( line );
      if ( text.empty() ) {
         fail( "missing remark text: expected remark TEXT" );
      }
      rule = list.type() == Acl::AclType::ip
                 ? Acl::RuleConfig( Acl::IpRuleConfig() )
                 : ( list.type() == Acl::AclType::ipv6 ? Acl::RuleConfig( Acl::Ip6RuleConfig() )
                                                       : Acl::RuleConfig( Acl::MacRuleConfig() ) );
      rule.remarkIs( std::string( text ) );
   } else {
      rule = list.type() == Acl::AclType::mac ? readMacRule( words )
                                              : readIpRule( words, list.type(), list.standard() );
      rule.actionIs( action == "permit" ? Acl::Action::permit : Acl::Action::deny );
   }
   rule.uniqueIdIs( ruleUniqueId( list.type(), list.name().view(), seqNo ) );
   list.ruleIs( seqNo, rule );
   list_->seqLines[seqNo] = lineNo_;
}

void Reader::readInterface( WordCursor& words ) {
   constexpr std::string_view forms =
       "EthernetN, EthernetN/M, Port-ChannelN, VlanN or a sub-interface such as Ethernet5.300";
   const std::string_view name = words.take( "interface name", forms );
   words.expectEnd( "the end of the line after the interface name" );
   Pylon::IntfId intf;
   try {
      intf = Pylon::strepToValue<Pylon::IntfId>( name );
   } catch ( const Vesper::Exception& ) {
      fail( quoted( name ) + " is not an interface name: expected " + std::string( forms ) );
   }
   if ( intf.isNull() ) {
      fail( "missing interface name: expected " + std::string( forms ) );
   }
   if ( options_.interfaceExists && !options_.interfaceExists( intf ) ) {
      fail( "unknown interface " + std::string( name ) + ": expected an interface of the switch" );
   }
   intf_ = intf;
   section_ = Section::intf;
}

void Reader::readAccessGroup( WordCursor& words, Acl::AclType type ) {
   const std::string form = typeWord( type ) + " access-group NAME in|out";
   const std::string name( words.take( "access-list name", form ) );
   const std::string_view direction = words.take( "direction", "in or out" );
   if ( direction != "in" && direction != "out" ) {
      fail( "unknown direction " + quoted( direction ) + ": expected in or out" );
   }
   words.expectEnd( "the end of the line after the direction" );
   const Acl::AclDirection dir = direction == "in" ? Acl::AclDirection::in : Acl::AclDirection::out;
   const auto [first, added] = bindingLines_.try_emplace( { type, dir, intf_ }, lineNo_ );
   if ( !added ) {
      fail( "interface " + Pylon::valueToStrep( intf_ ) + " has " +
            ( type == Acl::AclType::mac ? "a " : "an " ) + typeWord( type ) + " access-group " +
            std::string( direction ) +
            " already: expected one per type and direction (first at line " +
            std::to_string( first->second ) + ")" );
   }
   bindings_.push_back( { type, dir, intf_, name, lineNo_ } );
}

void Reader::noteHardware( const std::string& setting ) {
   const auto [it, created] = hardwareLines_.try_emplace( setting, lineNo_ );
   if ( !created ) {
      fail( "hardware access-list " + setting +
            " given twice: expected each setting once (first "
            "at line " +
            std::to_string( it->second ) + ")" );
   }
}

void Reader::readHardware( WordCursor& words ) {
   constexpr std::string_view settings =
       "resource sharing vlan in, mirroring key-width, ipv6 key-width, ipv6 permit icmpv6 or "
       "update default-result";
   if ( !words.takeIf( "access-list" ) ) {
      fail( "unknown keyword " + quoted( words.peek() ) + " after hardware: expected access-list" );
   }
   Acl::ParamConfig& param = *setup_.paramConfig;
   auto keyWidth = [&]( std::string_view word ) {
      if ( word == "narrow" ) {
         return Acl::AclKeyWidthMode::narrow;
      }
      if ( word != "default" ) {
         fail( "unknown key width " + quoted( word ) + ": expected narrow or default" );
      }
      return Acl::AclKeyWidthMode::platformDefault;
   };
   const std::string_view what = words.take( "setting", settings );
   if ( what == "resource" && words.takeIf( "sharing" ) && words.takeIf( "vlan" ) &&
        words.takeIf( "in" ) ) {
      noteHardware( "resource sharing vlan in" );
      param.ingressRaclSharingIs( true );
   } else if ( what == "mirroring" && words.takeIf( "key-width" ) ) {
      noteHardware( "mirroring key-width" );
      param.ingressMirrorAclKeyWidthModeIs(
          keyWidth( words.take( "key width", "narrow or default" ) ) );
   } else if ( what == "ipv6" && words.takeIf( "key-width" ) ) {
      noteHardware( "ipv6 key-width" );
      param.ingressIpv6SecurityAclKeyWidthModeIs(
          keyWidth( words.take( "key width", "narrow or default" ) ) );
   } else if ( what == "ipv6" && words.takeIf( "permit" ) && words.takeIf( "icmpv6" ) ) {
      noteHardware( "ipv6 permit icmpv6" );
      const std::string_view v =
          words.take( "ICMPv6 setting", "none, default or neighbor-discovery" );
      if ( v == "none" ) {
         param.permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::none );
      } else if ( v == "default" ) {
         param.permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::defaultTypes );
      } else if ( v == "neighbor-discovery" ) {
         param.permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::neighborDiscovery );
      } else {
         fail( "unknown ICMPv6 setting " + quoted( v ) +
               ": expected none, default or neighbor-discovery" );
      }
   } else if ( what == "update" && words.takeIf( "default-result" ) ) {
      noteHardware( "update default-result" );
      const std::string_view v = words.take( "update result", "permit, deny or default" );
      if ( v == "permit" ) {
         param.permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::permit );
      } else if ( v == "deny" ) {
         param.permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::deny );
      } else if ( v == "default" ) {
         param.permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::platformDefault );
      } else {
         fail( "unknown update result " + quoted( v ) + ": expected permit, deny or default" );
      }
   } else {
      fail( "unknown hardware access-list setting " + quoted( what ) + ": expected " +
            std::string( settings ) );
   }
   words.expectEnd( "the end of the line after the setting" );
   section_ = Section::none;
}

AclSetup Reader::finish() {
   for ( const Binding& b : bindings_ ) {
      if ( lists_.contains( { b.type, b.name } ) ) {
         setup_.intfConfig->intfAclIs( b.type, b.direction, b.intf, Vesper::Name( b.name ) );
         continue;
      }
      std::string message = "unknown " + typeWord( b.type ) + " access-list " + b.name +
                            ": expected " + aList( b.type ) + " defined in this configuration";
      for ( const Acl::AclType other :
            { Acl::AclType::ip, Acl::AclType::ipv6, Acl::AclType::mac } ) {
         if ( lists_.contains( { other, b.name } ) ) {
            message += " (" + b.name + " is " + aList( other ) + ")";
         }
      }
      diagnose( b.line, message );
   }
   if ( !diagnostics_.empty() ) {
      throw ConfigError( std::move( diagnostics_ ) );
   }
   return setup_;
}

}  // namespace
}  // namespace ConfigText

std::string ConfigDiagnostic::text() const {
   return line == 0 ? file + ": " + message : file + ":" + std::to_string( line ) + ": " + message;
}

namespace {

std::string joinDiagnostics( const std::vector<ConfigDiagnostic>& diagnostics ) {
   std::string text;
   for ( const ConfigDiagnostic& d : diagnostics ) {
      text += ( text.empty() ? "" : "\n" ) + d.text();
   }
   return text;
}

}  // namespace

ConfigError::ConfigError( std::vector<ConfigDiagnostic> diagnostics )
    : std::runtime_error( joinDiagnostics( diagnostics ) ),
      diagnostics_( std::move( diagnostics ) ) {}

AclSetup parseConfig( std::string_view text, std::string_view fileName,
                      const ConfigOptions& options ) {
   ConfigText::Reader reader( fileName, options );
   reader.readText( text );
   return reader.finish();
}

AclSetup readConfigFile( const std::string& path, const ConfigOptions& options ) {
   std::ifstream in( path, std::ios::binary );
   if ( !in ) {
      throw ConfigError( { { path, 0, std::string( "cannot read: " ) + std::strerror( errno ) } } );
   }
   std::ostringstream text;
   text << in.rdbuf();
   return parseConfig( text.str(), path, options );
}

Acl::UniqueId ruleUniqueId( Acl::AclType type, std::string_view aclName, U32 seqNo ) {
   // FNV-1a over the type, the name and the sequence number: stable across runs and builds.
   U64 h = 0xcbf29ce484222325ULL;
   auto add = [&h]( U8 byte ) {
      h ^= byte;
      h *= 0x100000001b3ULL;
   };
   add( static_cast<U8>( type ) );
   for ( char c : aclName ) {
      add( static_cast<U8>( c ) );
   }
   add( 0 );
   for ( int shift = 0; shift < 32; shift += 8 ) {
      add( static_cast<U8>( seqNo >> shift ) );
   }
   const U64 id = h & ~Acl::UniqueId::generatedBit;
   return Acl::UniqueId( id == 0 ? 1 : id );
}

}  // namespace HalyardCli
