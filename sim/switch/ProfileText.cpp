#include "sim/switch/ProfileText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

#include "platform/pylon/ValueText.h"

namespace Sim {

namespace {

using Pylon::IntfId;
using Tokens = std::vector<std::string_view>;

struct FlagName {
   std::string_view name;
   bool SwitchFlags::*member;
};

constexpr std::array<FlagName, 4> kFlags = { {
    { "fabric", &SwitchFlags::fabric },
    { "vlan-blocking", &SwitchFlags::vlanBlocking },
    { "vlan-block-bypass", &SwitchFlags::vlanBlockBypass },
    { "egress-filter-per-port", &SwitchFlags::egressFilterPerPort },
} };

std::string quoted( std::string_view text ) {
   return "'" + std::string( text ) + "'";
}

// The words of a line, up to a '#' that starts a comment.
Tokens tokensOf( std::string_view line ) {
   line = line.substr( 0, line.find( '#' ) );
   Tokens tokens;
   std::size_t at = 0;
   while ( ( at = line.find_first_not_of( " \t\r", at ) ) != std::string_view::npos ) {
      const std::size_t end = line.find_first_of( " \t\r", at );
      tokens.push_back( line.substr( at, end - at ) );
      at = end == std::string_view::npos ? line.size() : end;
   }
   return tokens;
}

U32 numberOf( std::string_view token, std::string_view what ) {
   const auto value = Pylon::parseUnsigned( token );
   if ( !value || *value > 0xFFFFFFFFu ) {
      throw ProfileError( "expected " + std::string( what ) + ", found " + quoted( token ) );
   }
   return static_cast<U32>( *value );
}

IntfId intfOf( std::string_view token ) {
   try {
      return Pylon::strepToValue<IntfId>( token );
   } catch ( const Vesper::ParseException& e ) {
      throw ProfileError( e.what() );
   }
}

// "first" or "first-last".
std::pair<U32, U32> rangeOf( std::string_view token ) {
   const std::size_t dash = token.find( '-' );
   const U32 first = numberOf( token.substr( 0, dash ), "a port number or range" );
   const U32 last = dash == std::string_view::npos
                        ? first
                        : numberOf( token.substr( dash + 1 ), "a port number or range" );
   if ( last < first ) {
      throw ProfileError( "the range " + quoted( token ) + " runs backwards" );
   }
   return { first, last };
}

// The `key value` pairs of tokens[from..], each key one of `keys`, none twice.
std::map<std::string_view, std::string_view> pairsOf(
    const Tokens& tokens, std::size_t from, std::initializer_list<std::string_view> keys ) {
   std::map<std::string_view, std::string_view> pairs;
   for ( std::size_t i = from; i < tokens.size(); i += 2 ) {
      const std::string_view key = tokens[i];
      if ( std::find( keys.begin(), keys.end(), key ) == keys.end() ) {
         std::string expected;
         for ( std::string_view k : keys ) {
            expected += ( expected.empty() ? "" : ", " ) + std::string( k );
         }
         throw ProfileError( "unknown key " + quoted( key ) + " in " + quoted( tokens[0] ) +
                             "; expected " + expected );
      }
      if ( i + 1 == tokens.size() ) {
         throw ProfileError( quoted( key ) + " has no value" );
      }
      if ( !pairs.emplace( key, tokens[i + 1] ).second ) {
         throw ProfileError( quoted( key ) + " is given twice" );
      }
   }
   return pairs;
}

std::string_view required( const std::map<std::string_view, std::string_view>& pairs,
                           std::string_view key, std::string_view directive ) {
   auto it = pairs.find( key );
   if ( it == pairs.end() ) {
      throw ProfileError( quoted( directive ) + " is missing " + quoted( key ) );
   }
   return it->second;
}

void expectCount( const Tokens& tokens, std::size_t count, std::string_view form ) {
   if ( tokens.size() != count ) {
      throw ProfileError( "expected " + quoted( form ) );
   }
}

// tokens[from] must be `keyword`, followed by at least one interface name.
std::vector<IntfId> membersOf( const Tokens& tokens, std::size_t from, std::string_view form ) {
   if ( tokens.size() <= from + 1 || tokens[from] != "members" ) {
      throw ProfileError( "expected " + quoted( form ) );
   }
   std::vector<IntfId> members;
   for ( std::size_t i = from + 1; i < tokens.size(); ++i ) {
      members.push_back( intfOf( tokens[i] ) );
   }
   return members;
}

// A stage as the text form names it: "vfp", "ifp", "efp".
std::string stageWord( std::size_t s ) {
   std::string name( stageName( static_cast<Stage>( s ) ) );
   for ( char& c : name ) {
      c = static_cast<char>( c - 'A' + 'a' );
   }
   return name;
}

// "ifp:4" or "vfp:2,ifp:6,efp:2": slices per stage.
void slicesOf( std::string_view value, UnitDef& def ) {
   while ( !value.empty() ) {
      const std::size_t comma = value.find( ',' );
      const std::string_view item = value.substr( 0, comma );
      const std::size_t colon = item.find( ':' );
      const std::string_view stage = item.substr( 0, colon );
      std::optional<std::size_t> index;
      for ( std::size_t s = 0; s < kStageCount; ++s ) {
         if ( stage == stageWord( s ) ) {
            index = s;
         }
      }
      if ( colon == std::string_view::npos || !index ) {
         throw ProfileError(
             "expected slices as STAGE:COUNT[,STAGE:COUNT...] with STAGE vfp, "
             "ifp or efp, not " +
             quoted( item ) );
      }
      if ( def.slices[*index] ) {
         throw ProfileError( "the slices of " + quoted( stage ) + " are given twice" );
      }
      def.slices[*index] = numberOf( item.substr( colon + 1 ), "a slice count" );
      value = comma == std::string_view::npos ? std::string_view() : value.substr( comma + 1 );
   }
}

void unitLine( SwitchProfile& p, const Tokens& t ) {
   if ( t.size() < 2 ) {
      throw ProfileError(
          "expected 'unit N kind KIND module M [ports COUNT] [name NAME] [slices STAGE:COUNT,...] "
          "[range-checkers COUNT] [udf-chunks COUNT]'" );
   }
   const U32 unit = numberOf( t[1], "a unit number" );
   const auto pairs = pairsOf(
       t, 2, { "kind", "module", "ports", "name", "slices", "range-checkers", "udf-chunks" } );
   UnitDef def;
   def.unit = unit;
   def.kind = std::string( required( pairs, "kind", "unit" ) );
   const U32 module = numberOf( required( pairs, "module", "unit" ), "a module id" );
   if ( module > 0xFFFF ) {
      throw ProfileError( "module " + std::to_string( module ) + " is out of range: 0 to 254" );
   }
   def.module = static_cast<U16>( module );
   if ( auto it = pairs.find( "ports" ); it != pairs.end() ) {
      def.portCount = numberOf( it->second, "a port count" );
      if ( def.portCount == 0 ) {
         throw ProfileError( "unit " + std::to_string( unit ) + " has no port" );
      }
   }
   if ( auto it = pairs.find( "name" ); it != pairs.end() ) {
      def.chipName = std::string( it->second );
   }
   if ( auto it = pairs.find( "slices" ); it != pairs.end() ) {
      slicesOf( it->second, def );
   }
   if ( auto it = pairs.find( "range-checkers" ); it != pairs.end() ) {
      def.rangeCheckers = numberOf( it->second, "a range checker count" );
   }
   if ( auto it = pairs.find( "udf-chunks" ); it != pairs.end() ) {
      def.udfChunks = numberOf( it->second, "a UDF chunk count" );
   }
   p.unitIs( std::move( def ) );
}

void ethernetLine( SwitchProfile& p, const Tokens& t ) {
   if ( t.size() < 2 ) {
      throw ProfileError( "expected 'ethernet FIRST[-LAST] unit U port P'" );
   }
   const auto [first, last] = rangeOf( t[1] );
   const auto pairs = pairsOf( t, 2, { "unit", "port" } );
   const U32 unit = numberOf( required( pairs, "unit", "ethernet" ), "a unit number" );
   const U32 port = numberOf( required( pairs, "port", "ethernet" ), "a port number" );
   for ( U32 n = first; n <= last; ++n ) {
      p.ethernetIs( n, unit, port + ( n - first ) );
   }
}

void portChannelLine( SwitchProfile& p, const Tokens& t ) {
   const std::string_view form = "port-channel N members INTF...";
   if ( t.size() < 2 ) {
      throw ProfileError( "expected " + quoted( form ) );
   }
   p.portChannelIs( numberOf( t[1], "a port-channel number" ), membersOf( t, 2, form ) );
}

void vlanLine( SwitchProfile& p, const Tokens& t ) {
   const std::string_view form = "vlan V members INTF...";
   if ( t.size() < 2 ) {
      throw ProfileError( "expected " + quoted( form ) );
   }
   p.vlanIntfIs( numberOf( t[1], "a VLAN number" ), membersOf( t, 2, form ) );
}

void subIntfLine( SwitchProfile& p, const Tokens& t ) {
   expectCount( t, 4, "sub-interface NAME vlan V" );
   if ( t[2] != "vlan" ) {
      throw ProfileError( "expected 'sub-interface NAME vlan V'" );
   }
   p.subIntfIs( intfOf( t[1] ), numberOf( t[3], "a VLAN number" ) );
}

void flagLine( SwitchProfile& p, const Tokens& t ) {
   expectCount( t, 2, "flag NAME" );
   for ( const FlagName& f : kFlags ) {
      if ( f.name == t[1] ) {
         SwitchFlags flags = p.flags();
         flags.*f.member = true;
         p.flagsIs( flags );
         return;
      }
   }
   std::string known;
   for ( const FlagName& f : kFlags ) {
      known += ( known.empty() ? "" : ", " ) + std::string( f.name );
   }
   throw ProfileError( "unknown flag " + quoted( t[1] ) + "; known flags: " + known );
}

void nameLine( SwitchProfile& p, const Tokens& t ) {
   expectCount( t, 2, "name NAME" );
   p.nameIs( std::string( t[1] ) );
}

void linecardLine( SwitchProfile& p, const Tokens& t ) {
   expectCount( t, 2, "linecard NAME" );
   p.linecardNameIs( std::string( t[1] ) );
}

void epochLine( SwitchProfile& p, const Tokens& t ) {
   expectCount( t, 2, "epoch NAME" );
   p.epochNameIs( std::string( t[1] ) );
}

struct Directive {
   std::string_view name;
   void ( *read )( SwitchProfile&, const Tokens& );
};

constexpr std::array<Directive, 9> kDirectives = { {
    { "name", nameLine },
    { "linecard", linecardLine },
    { "epoch", epochLine },
    { "flag", flagLine },
    { "unit", unitLine },
    { "ethernet", ethernetLine },
    { "port-channel", portChannelLine },
    { "vlan", vlanLine },
    { "sub-interface", subIntfLine },
} };

void readLine( SwitchProfile& p, const Tokens& t ) {
   for ( const Directive& d : kDirectives ) {
      if ( d.name == t[0] ) {
         d.read( p, t );
         return;
      }
   }
   std::string known;
   for ( const Directive& d : kDirectives ) {
      known += ( known.empty() ? "" : ", " ) + std::string( d.name );
   }
   throw ProfileError( "unknown directive " + quoted( t[0] ) + "; expected one of: " + known );
}

std::string membersText( const std::vector<IntfId>& members ) {
   std::string text = " members";
   for ( IntfId m : members ) {
      text += " " + Pylon::valueToStrep( m );
   }
   return text;
}

// Front-panel ports in runs: consecutive numbers on consecutive ports of one unit.
void writeEthernet( std::ostream& out, const SwitchProfile& p ) {
   const auto& ports = p.ethernet();
   for ( auto it = ports.begin(); it != ports.end(); ) {
      auto last = it;
      for ( auto next = std::next( it ); next != ports.end(); ++next ) {
         const bool runs = next->first == last->first + 1 &&
                           next->second.unit() == it->second.unit() &&
                           next->second.port() == last->second.port() + 1;
         if ( !runs ) {
            break;
         }
         last = next;
      }
      out << "ethernet " << it->first;
      if ( last != it ) {
         out << "-" << last->first;
      }
      out << " unit " << it->second.unit() << " port " << it->second.port() << "\n";
      it = std::next( last );
   }
}

}  // namespace

SwitchProfile parseProfile( std::string_view text, const std::string& fileName ) {
   SwitchProfile profile;
   U32 lineNumber = 0;
   std::size_t at = 0;
   while ( at < text.size() ) {
      const std::size_t end = std::min( text.find( '\n', at ), text.size() );
      ++lineNumber;
      const Tokens tokens = tokensOf( text.substr( at, end - at ) );
      at = end + 1;
      if ( tokens.empty() ) {
         continue;
      }
      try {
         readLine( profile, tokens );
      } catch ( const ProfileError& e ) {
         throw ProfileError( e.message(), fileName, lineNumber );
      } catch ( const Vesper::Exception& e ) {
         throw ProfileError( e.what(), fileName, lineNumber );
      }
   }
   try {
      profile.checkComplete();
   } catch ( const ProfileError& e ) {
      throw ProfileError( e.message(), fileName, std::max<U32>( lineNumber, 1 ) );
   }
   return profile;
}

SwitchProfile readProfileFile( const std::string& path ) {
   std::ifstream in( path, std::ios::binary );
   if ( !in ) {
      throw ProfileError( std::string( "cannot read the profile: " ) + std::strerror( errno ), path,
                          0 );
   }
   std::ostringstream text;
   text << in.rdbuf();
   return parseProfile( text.str(), path );
}

namespace {

std::string shrinkText( const UnitDef& def ) {
   std::string slices;
   for ( std::size_t s = 0; s < kStageCount; ++s ) {
      if ( def.slices[s] ) {
         slices += ( slices.empty() ? "" : "," ) + stageWord( s ) + ":" +
                   std::to_string( *def.slices[s] );
      }
   }
   std::string text = slices.empty() ? "" : " slices " + slices;
   if ( def.rangeCheckers ) {
      text += " range-checkers " + std::to_string( *def.rangeCheckers );
   }
   if ( def.udfChunks ) {
      text += " udf-chunks " + std::to_string( *def.udfChunks );
   }
   return text;
}

}  // namespace

std::string profileText( const SwitchProfile& p ) {
   std::ostringstream out;
   if ( !p.name().empty() ) {
      out << "name " << p.name() << "\n";
   }
   out << "linecard " << p.linecardName() << "\n";
   out << "epoch " << p.epochName() << "\n";
   for ( const FlagName& f : kFlags ) {
      if ( p.flags().*f.member ) {
         out << "flag " << f.name << "\n";
      }
   }
   for ( const auto& [unit, def] : p.units() ) {
      out << "unit " << unit << " kind " << def.kind << " module " << def.module << " ports "
          << def.portCount << " name " << def.chipName << shrinkText( def ) << "\n";
   }
   writeEthernet( out, p );
   for ( const auto& [number, members] : p.portChannels() ) {
      out << "port-channel " << number << membersText( members ) << "\n";
   }
   for ( const auto& [vlan, members] : p.vlans() ) {
      out << "vlan " << vlan << membersText( members ) << "\n";
   }
   for ( const auto& [intf, vlan] : p.subIntfs() ) {
      out << "sub-interface " << Pylon::valueToStrep( intf ) << " vlan " << vlan << "\n";
   }
   return out.str();
}

}  // namespace Sim
