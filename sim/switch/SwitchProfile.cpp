#include "sim/switch/SwitchProfile.h"

#include <algorithm>
#include <set>
#include <utility>

#include "platform/pylon/ModId.h"
#include "platform/pylon/VlanId.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

namespace {

using Pylon::IntfId;

std::string intfText( IntfId intf ) {
   return Pylon::valueToStrep( intf );
}

std::string knownKinds() {
   std::string text;
   for ( const ChipKind& kind : chipCatalog() ) {
      text += ( text.empty() ? "" : ", " ) + kind.name;
   }
   return text;
}

U16 checkedVlan( U32 vlan ) {
   if ( vlan < Pylon::VlanId::min || vlan > Pylon::VlanId::max ) {
      throw ProfileError( "VLAN " + std::to_string( vlan ) + " is out of range: 1 to 4094" );
   }
   return static_cast<U16>( vlan );
}

void checkNumber( const char* what, U32 number ) {
   if ( number < 1 || number > IntfId::maxNumber ) {
      throw ProfileError( std::string( what ) + " number " + std::to_string( number ) +
                          " is out of range: 1 to 65535" );
   }
}

// Names stand as one word in the text form, where '#' starts a comment.
void checkWord( const char* what, const std::string& text ) {
   if ( text.empty() ) {
      throw ProfileError( std::string( "the " ) + what + " is empty" );
   }
   if ( text.find_first_of( " \t#" ) != std::string::npos ) {
      throw ProfileError( std::string( "the " ) + what + " '" + text + "' holds a blank or '#'" );
   }
}

void checkAtMost( const std::string& what, U32 asked, U32 least, U32 most, const ChipKind& kind ) {
   if ( asked < least || asked > most ) {
      throw ProfileError( what + " " + std::to_string( asked ) + " is out of range: a " +
                          kind.name + " unit has " + std::to_string( least ) + " to " +
                          std::to_string( most ) );
   }
}

// A unit may have less than its kind, never more.
void checkShrink( const UnitDef& def, const ChipKind& kind ) {
   const std::string unitText = "unit " + std::to_string( def.unit ) + ": ";
   const StageSlices* stages[] = { &kind.vfp, &kind.ifp, &kind.efp };
   for ( std::size_t s = 0; s < kStageCount; ++s ) {
      if ( def.slices[s] ) {
         const Stage stage = static_cast<Stage>( s );
         // Two IFP slices at least: the management and port-blocking entries take one each.
         const U32 least = stage == Stage::Ifp ? 2 : 1;
         checkAtMost( unitText + std::string( stageName( stage ) ) + " slices", *def.slices[s],
                      least, stages[s]->slices(), kind );
      }
   }
   if ( def.rangeCheckers ) {
      checkAtMost( unitText + "range checkers", *def.rangeCheckers, 0, kind.rangeCheckers, kind );
   }
   if ( def.udfChunks ) {
      checkAtMost( unitText + "UDF chunks", *def.udfChunks, 0, kind.udfChunks, kind );
   }
}

std::string errorText( const std::string& message, const std::string& file, U32 line ) {
   if ( file.empty() && line == 0 ) {
      return message;
   }
   // Line 0 is the file as a whole (it could not be read), so no line is named.
   const std::string where = line == 0 ? file : file + ":" + std::to_string( line );
   return where + ": " + message;
}

}  // namespace

ProfileError::ProfileError( std::string message, std::string file, U32 line )
    : Vesper::ParseException( errorText( message, file, line ) ),
      message_( std::move( message ) ),
      file_( std::move( file ) ),
      line_( line ) {}

UnitPortLayout unitPortLayout( const UnitDef& def ) {
   const ChipKind* kind = chipKindByName( def.kind );
   UnitPortLayout layout;
   layout.portCount = def.portCount;
   // The simulated SDK counts the kind's HiGig ports from the end of the unit's ports; a unit
   // without any gets its last port as its link.
   const U32 hiGig = kind ? std::min( kind->hiGigPorts, def.portCount ) : 0;
   const U32 links = std::max( hiGig, 1u );
   for ( U32 p = def.portCount - links; p < def.portCount; ++p ) {
      layout.linkPorts.push_back( p );
   }
   layout.lastFrontPanel = def.portCount - links - 1;
   return layout;
}

void SwitchProfile::nameIs( std::string name ) {
   if ( !name.empty() ) {
      checkWord( "profile name", name );
   }
   name_ = std::move( name );
}

void SwitchProfile::linecardNameIs( std::string name ) {
   checkWord( "line card name", name );
   linecardName_ = std::move( name );
}

void SwitchProfile::epochNameIs( std::string name ) {
   checkWord( "epoch name", name );
   epochName_ = std::move( name );
}

const UnitDef* SwitchProfile::unit( U32 unit ) const {
   auto it = units_.find( unit );
   return it == units_.end() ? nullptr : &it->second;
}

void SwitchProfile::unitIs( UnitDef def ) {
   const std::string unitText = "unit " + std::to_string( def.unit );
   // 0xFFFF is the unit of an interface without a port.
   if ( def.unit >= 0xFFFF ) {
      throw ProfileError( unitText + " is out of range: 0 to 65534" );
   }
   if ( units_.count( def.unit ) ) {
      throw ProfileError( unitText + " is defined twice" );
   }
   const ChipKind* kind = chipKindByName( def.kind );
   if ( !kind ) {
      throw ProfileError( "unknown chip kind '" + def.kind + "'; known kinds: " + knownKinds() );
   }
   if ( def.module >= Pylon::ModId::null ) {
      throw ProfileError( "module " + std::to_string( def.module ) + " is out of range: 0 to 254" );
   }
   for ( const auto& [number, other] : units_ ) {
      if ( other.module == def.module ) {
         throw ProfileError( "module " + std::to_string( def.module ) +
                             " is already the module of unit " + std::to_string( number ) );
      }
   }
   if ( def.portCount == 0 ) {
      def.portCount = kind->portCount;
   }
   const U32 minPorts = std::max( kind->hiGigPorts, 1u ) + 2;
   if ( def.portCount > kind->portCount || def.portCount < minPorts ||
        def.portCount > PortBitmap::kCapacity ) {
      throw ProfileError( unitText + " has " + std::to_string( def.portCount ) + " ports; a " +
                          kind->name + " unit has " + std::to_string( minPorts ) + " to " +
                          std::to_string( kind->portCount ) );
   }
   checkShrink( def, *kind );
   if ( def.chipName.empty() ) {
      def.chipName = "chip" + std::to_string( def.unit );
   }
   checkWord( "chip name", def.chipName );
   for ( const auto& [number, other] : units_ ) {
      if ( other.chipName == def.chipName ) {
         throw ProfileError( "chip name '" + def.chipName + "' is already the name of unit " +
                             std::to_string( number ) );
      }
   }
   units_.emplace( def.unit, std::move( def ) );
}

void SwitchProfile::ethernetIs( U32 number, U32 unit, U32 port ) {
   checkNumber( "Ethernet", number );
   const std::string name = "Ethernet" + std::to_string( number );
   if ( ethernet_.count( number ) ) {
      throw ProfileError( name + " is defined twice" );
   }
   const UnitDef* def = this->unit( unit );
   if ( !def ) {
      throw ProfileError( "unit " + std::to_string( unit ) + " is not defined" );
   }
   const UnitPortLayout layout = unitPortLayout( *def );
   if ( port < layout.firstFrontPanel || port > layout.lastFrontPanel ) {
      throw ProfileError( "port " + std::to_string( port ) + " of unit " + std::to_string( unit ) +
                          " is not a front-panel port; they are " +
                          std::to_string( layout.firstFrontPanel ) + " to " +
                          std::to_string( layout.lastFrontPanel ) );
   }
   const HalyardPort at( unit, port );
   for ( const auto& [other, otherPort] : ethernet_ ) {
      if ( otherPort == at ) {
         throw ProfileError( "port " + std::to_string( port ) + " of unit " +
                             std::to_string( unit ) + " is already Ethernet" +
                             std::to_string( other ) );
      }
   }
   ethernet_.emplace( number, at );
}

std::optional<U32> SwitchProfile::portChannelOf( IntfId member ) const {
   for ( const auto& [number, members] : portChannels_ ) {
      if ( std::find( members.begin(), members.end(), member ) != members.end() ) {
         return number;
      }
   }
   return std::nullopt;
}

void SwitchProfile::memberCheck( IntfId member, bool portChannelAllowed ) const {
   const bool known =
       ( member.isEthernet() && member.lane() == 0 && ethernet_.count( member.number() ) ) ||
       ( portChannelAllowed && member.isPortChannel() && portChannels_.count( member.number() ) );
   if ( !known ) {
      throw ProfileError(
          intfText( member ) + " is not " +
          ( portChannelAllowed ? "a front-panel port or port-channel" : "a front-panel port" ) +
          " of this switch" );
   }
}

void SwitchProfile::portChannelIs( U32 number, const std::vector<IntfId>& members ) {
   checkNumber( "Port-Channel", number );
   const std::string name = "Port-Channel" + std::to_string( number );
   if ( portChannels_.count( number ) ) {
      throw ProfileError( name + " is defined twice" );
   }
   if ( members.empty() ) {
      throw ProfileError( name + " has no member" );
   }
   std::set<IntfId> seen;
   for ( IntfId member : members ) {
      memberCheck( member, false );
      if ( !seen.insert( member ).second ) {
         throw ProfileError( intfText( member ) + " is named twice in " + name );
      }
      if ( auto other = portChannelOf( member ) ) {
         throw ProfileError( intfText( member ) + " is already a member of Port-Channel" +
                             std::to_string( *other ) );
      }
   }
   portChannels_.emplace( number, members );
}

void SwitchProfile::vlanIntfIs( U32 vlan, const std::vector<IntfId>& members ) {
   const U16 vid = checkedVlan( vlan );
   const std::string name = "Vlan" + std::to_string( vid );
   if ( vlans_.count( vid ) ) {
      throw ProfileError( name + " is defined twice" );
   }
   if ( members.empty() ) {
      throw ProfileError( name + " has no member" );
   }
   std::set<IntfId> seen;
   for ( IntfId member : members ) {
      memberCheck( member, true );
      if ( !seen.insert( member ).second ) {
         throw ProfileError( intfText( member ) + " is named twice in " + name );
      }
   }
   vlans_.emplace( vid, members );
}

void SwitchProfile::subIntfIs( IntfId intf, U32 vlan ) {
   if ( !intf.isEthernetSubIntf() && !intf.isPortChannelSubIntf() ) {
      throw ProfileError( intfText( intf ) + " is not a sub-interface name" );
   }
   if ( subIntfs_.count( intf ) ) {
      throw ProfileError( intfText( intf ) + " is defined twice" );
   }
   memberCheck( intf.parent(), true );
   const U16 vid = checkedVlan( vlan );
   for ( const auto& [other, otherVlan] : subIntfs_ ) {
      if ( other.parent() == intf.parent() && otherVlan == vid ) {
         throw ProfileError( "VLAN " + std::to_string( vid ) + " is already the VLAN of " +
                             intfText( other ) );
      }
   }
   subIntfs_.emplace( intf, vid );
}

bool SwitchProfile::intfHas( IntfId intf ) const {
   if ( intf.isEthernet() ) {
      return intf.lane() == 0 && ethernet_.count( intf.number() ) != 0;
   }
   if ( intf.isPortChannel() ) {
      return portChannels_.count( intf.number() ) != 0;
   }
   if ( intf.isVlan() ) {
      return vlans_.count( static_cast<U16>( intf.number() ) ) != 0;
   }
   return subIntfs_.count( intf ) != 0;
}

void SwitchProfile::checkComplete() const {
   if ( units_.empty() ) {
      throw ProfileError( "the profile defines no unit" );
   }
}

const SwitchProfile& defaultProfile() {
   static const SwitchProfile profile = [] {
      SwitchProfile p;
      p.nameIs( "default" );
      p.linecardNameIs( "Linecard1" );
      p.epochNameIs( "Epoch1" );
      SwitchFlags flags;
      flags.vlanBlocking = true;
      p.flagsIs( flags );
      p.unitIs( UnitDef{ 0, "trident3", 1, 33, "chip0" } );
      p.unitIs( UnitDef{ 1, "tomahawk", 2, 33, "chip1" } );
      for ( U32 i = 0; i < 24; ++i ) {
         p.ethernetIs( 1 + i, 0, 1 + i );
         p.ethernetIs( 25 + i, 1, 1 + i );
      }
      const auto eth = []( U32 n ) { return IntfId::ethernet( n ); };
      p.portChannelIs( 10, { eth( 21 ), eth( 22 ) } );
      p.vlanIntfIs( 100, { eth( 1 ), eth( 2 ), eth( 25 ), IntfId::portChannel( 10 ) } );
      p.vlanIntfIs( 200, { eth( 3 ), eth( 26 ) } );
      p.subIntfIs( eth( 5 ).subIntf( 300 ), 300 );
      return p;
   }();
   return profile;
}

}  // namespace Sim
