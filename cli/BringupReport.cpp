#include "cli/BringupReport.h"

#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>

#include "cli/SimAgent.h"
#include "platform/fennel/AclHelperCapabilities.h"
#include "platform/halyard/HalyardAclFeature.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

// One hidden entry: its enumerator, and where its manager keeps it.
struct HiddenEntry {
   std::string name;
   U32 offset;
   bool portBlocking;
};

std::vector<HiddenEntry> hiddenEntries() {
   std::vector<HiddenEntry> all;
   for ( const auto& e : Halyard::aclManagementTcamsNames ) {
      all.push_back( { std::string( e.name ), static_cast<U32>( e.value ), false } );
   }
   for ( const auto& e : Halyard::aclPortBlockingTcamsNames ) {
      all.push_back( { std::string( e.name ), static_cast<U32>( e.value ), true } );
   }
   return all;
}

// The chip's dump of an entry without its first line, which repeats what the report's own
// line says; each line indented under the entry.
void writeEntryBody( const std::string& dump, std::ostream& os ) {
   std::istringstream lines( dump );
   std::string line;
   std::getline( lines, line );
   while ( std::getline( lines, line ) ) {
      os << "      " << line.substr( line.find_first_not_of( ' ' ) ) << "\n";
   }
}

void writeHiddenEntries( SimAgent& agent, U32 unit, std::ostream& os ) {
   const auto& helper = *agent.helper();
   Sim::SimSwitch& sw = agent.simSwitch();
   Sim::ChipModel& chip = sw.chip( unit );
   os << "  hidden entries:\n";
   for ( const HiddenEntry& h : hiddenEntries() ) {
      const auto mgr = h.portBlocking ? helper.aclPortBlockingEntryMgr() : helper.aclMgmtEntryMgr();
      if ( !mgr ) {
         os << "    " << h.name << ": no manager\n";
         continue;
      }
      const U32 entry = mgr->entryBase() + h.offset;
      const auto dump = chip.entryDump( entry );
      if ( !dump ) {
         os << "    " << h.name << ": not on this unit\n";
         continue;
      }
      const bool installed = chip.entryInstalled( entry ).value_or( false );
      os << "    " << std::left << std::setw( 24 ) << h.name << " entry " << std::setw( 4 ) << entry
         << ( installed ? " installed     " : " not installed " ) << "\""
         << sw.groupManager()->entryDescription( unit, entry ).str() << "\"\n";
      writeEntryBody( *dump, os );
   }
}

void writeFreeClasses( SimAgent& agent, U32 unit, std::ostream& os ) {
   const auto data = agent.helper()->halyardIntfClassData( unit );
   if ( !data ) {
      os << "  free interface classes: none (no pool)\n";
      return;
   }
   const auto& pool = data->freeAclIntfClass();
   os << "  free interface classes: " << pool.size();
   if ( const auto top = pool.stack().top() ) {
      os << " (next " << unsigned( *top ) << ")";
   }
   os << "\n";
}

void writeGroups( SimAgent& agent, U32 unit, std::ostream& os ) {
   const auto& gm = *agent.simSwitch().groupManager();
   os << "  TCAM groups:\n";
   os << "    " << std::left << std::setw( 40 ) << "group" << std::setw( 6 ) << "stage"
      << std::right << std::setw( 9 ) << "priority" << std::setw( 8 ) << "in use" << std::setw( 10 )
      << "capacity"
      << "\n";
   for ( const auto& [assignment, def] : gm.groupTable() ) {
      const Halyard::HalyardTcamEntryManager* mgr =
          Halyard::isBoundedAssignment( assignment )
              ? static_cast<const Halyard::HalyardTcamEntryManager*>(
                    gm.entryManager( assignment ).ptr() )
              : gm.unboundedEntryManager( assignment ).ptr();
      std::ostringstream name;
      name << Vesper::stringValue( assignment ) << " (" << U32( assignment ) << ")";
      os << "    " << std::left << std::setw( 40 ) << name.str() << std::setw( 6 )
         << Sim::stageName( def.stage ) << std::right << std::setw( 9 ) << def.priority
         << std::setw( 8 ) << ( mgr ? mgr->entriesInUse( unit ) : 0 ) << std::setw( 10 )
         << def.capacity << "\n";
   }
}

void writeCapabilities( const FennelHelper::AclHelper& helper, std::ostream& os ) {
   os << "capability flags:\n";
   for ( const auto& c : FennelHelper::aclCapabilityNames ) {
      os << "  " << std::left << std::setw( 44 ) << c.name
         << ( helper.capability( c.value ) ? "yes" : "no" ) << "\n";
   }
}

}  // namespace

void writeBringupReport( SimAgent& agent, std::ostream& os ) {
   Sim::SimSwitch& sw = agent.simSwitch();
   os << "switch " << sw.profile().name() << ": " << sw.units().size() << " units"
      << ( sw.hasFabric() ? ", fabric" : "" ) << "\n\n";
   for ( U32 unit : sw.units() ) {
      const Sim::ChipKind& kind = sw.chipKind( unit );
      os << "unit " << unit << ": " << kind.name << " (" << kind.description << "), module "
         << U32( sw.modId( unit ).value() ) << ", " << sw.portLayout( unit ).portCount
         << " ports\n";
      writeHiddenEntries( agent, unit, os );
      writeFreeClasses( agent, unit, os );
      writeGroups( agent, unit, os );
      os << "\n";
   }
   writeCapabilities( *agent.helper(), os );
}

}  // namespace HalyardCli
