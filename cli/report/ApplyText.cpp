// The text form of the apply summary: per unit its ACLs, the TCAM groups that hold entries
// with their slices, the stages' free slices, range checkers and classes; then the rules
// expanded into blocks, and whether everything stands.
#include <algorithm>
#include <iomanip>
#include <sstream>

#include "cli/report/ApplySummary.h"
#include "platform/vesper/Enum.h"

namespace HalyardCli {

namespace {

std::string aclText( const AclOnUnit& acl ) {
   std::string text = Vesper::stringValue( acl.type ) + " access-list " + acl.name + " " +
                      Vesper::stringValue( acl.direction );
   if ( acl.vlan != 0 ) {
      text += " on Vlan" + std::to_string( acl.vlan );
   }
   return text;
}

std::string stateText( const AclOnUnit& acl ) {
   if ( acl.stands() ) {
      return "installed";
   }
   return acl.dirty ? "dirty" : "not installed";
}

void writeAcls( const UnitSummary& unit, std::ostream& out ) {
   if ( unit.acls.empty() ) {
      out << "  no ACLs\n";
      return;
   }
   std::size_t width = 3;
   for ( const AclOnUnit& acl : unit.acls ) {
      width = std::max( width, aclText( acl ).size() );
   }
   out << "  " << std::left << std::setw( int( width ) ) << "ACL" << std::right << std::setw( 9 )
       << "entries"
       << "  state\n";
   for ( const AclOnUnit& acl : unit.acls ) {
      out << "  " << std::left << std::setw( int( width ) ) << aclText( acl ) << std::right
          << std::setw( 9 ) << acl.entries << "  " << stateText( acl );
      if ( !acl.expanded.empty() ) {
         out << "  expanded:";
         for ( U32 seq : acl.expanded ) {
            out << " " << seq;
         }
      }
      out << "\n";
      if ( acl.error ) {
         out << "  " << std::string( width + 11, ' ' ) << *acl.error << "\n";
      }
   }
}

void writeGroups( const UnitSummary& unit, std::ostream& out ) {
   std::vector<std::string> names;
   for ( const GroupOnUnit& g : unit.groups ) {
      names.push_back( g.name + " (" + std::to_string( g.assignment ) + ")" );
   }
   std::size_t width = std::string( "TCAM group" ).size();
   for ( std::size_t i = 0; i < unit.groups.size(); ++i ) {
      if ( unit.groups[i].used != 0 ) {
         width = std::max( width, names[i].size() );
      }
   }
   out << "  " << std::left << std::setw( int( width ) ) << "TCAM group"
       << "  stage" << std::right << std::setw( 9 ) << "entries" << std::setw( 10 ) << "capacity"
       << std::setw( 8 ) << "slices"
       << "\n";
   for ( std::size_t i = 0; i < unit.groups.size(); ++i ) {
      const GroupOnUnit& g = unit.groups[i];
      if ( g.used == 0 ) {
         continue;
      }
      out << "  " << std::left << std::setw( int( width ) ) << names[i] << "  " << std::setw( 5 )
          << g.stage << std::right << std::setw( 9 ) << g.used << std::setw( 10 ) << g.capacity
          << std::setw( 8 ) << g.slices << ( g.wide ? "  wide key" : "" ) << "\n";
   }
}

void writeUnit( const UnitSummary& unit, std::ostream& out ) {
   out << "unit " << unit.unit << ": " << unit.chip << "\n";
   writeAcls( unit, out );
   writeGroups( unit, out );
   if ( !unit.stages.empty() ) {
      out << "  free slices:";
      for ( std::size_t i = 0; i < unit.stages.size(); ++i ) {
         const StageSlices& s = unit.stages[i];
         out << ( i ? ", " : " " ) << s.stage << " " << s.free << " of " << s.slices;
      }
      out << "\n";
   }
   out << "  range checkers: " << unit.rangeCheckersUsed << " of " << unit.rangeCheckerCapacity
       << " in use\n"
       << "  free interface classes: " << unit.freeClasses << "\n";
}

void writeExpanded( const ApplySummary& summary, std::ostream& out ) {
   if ( summary.expanded.empty() ) {
      return;
   }
   out << "rules whose port ranges went in as masked blocks (entries per unit):\n";
   for ( const ExpandedSummary& e : summary.expanded ) {
      out << "  " << e.acl << ", sequence " << e.seq << ": " << e.entries
          << " entries as blocks, in place of " << e.entriesWithCheckers
          << " with range checkers\n";
   }
   out << "\n";
}

void writeVerdict( const ApplySummary& summary, std::ostream& out ) {
   for ( const std::string& line : summary.bindingErrors ) {
      out << "not served: " << line << "\n";
   }
   if ( std::ranges::all_of( summary.units, []( const auto& u ) { return u.acls.empty(); } ) ) {
      out << "no ACL is bound\n";
      return;
   }
   if ( summary.allStand() ) {
      out << "every ACL stands installed on every unit\n";
      return;
   }
   out << "did not fit:\n";
   for ( const UnitSummary& unit : summary.units ) {
      for ( const AclOnUnit& acl : unit.acls ) {
         if ( !acl.stands() ) {
            out << "  unit " << unit.unit << ": " << aclText( acl ) << ": "
                << acl.error.value_or( stateText( acl ) ) << "\n";
         }
      }
   }
}

}  // namespace

void writeApplyText( const ApplySummary& summary, std::ostream& out ) {
   out << "switch " << summary.switchName << ": " << summary.units.size() << " units\n\n";
   for ( const UnitSummary& unit : summary.units ) {
      writeUnit( unit, out );
      out << "\n";
   }
   writeExpanded( summary, out );
   writeVerdict( summary, out );
}

}  // namespace HalyardCli
