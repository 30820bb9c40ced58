// trace CONFIG: the field-processor command log of programming the configuration, per unit:
// the "fp qual ...", "fp action add ..." and "fp entry install ..." lines that the back-end
// writes as it programs, in order. Bring-up's own come before and are left out.
#include <algorithm>
#include <ostream>

#include "cli/Command.h"
#include "cli/ToolInput.h"
#include "cli/switch/ApplyConfigs.h"
#include "cli/trace/FpCommandLog.h"

namespace HalyardCli {

namespace {

void writeTrace( const std::string& path, const Sim::SimSwitch& sim,
                 const std::vector<FpCommandLog::Line>& lines, std::ostream& out ) {
   out << "field-processor commands of programming " << path << ", per unit\n"
       << "(bring-up's own are left out: 'bringup' shows what it leaves in the chips)\n";
   for ( U32 unit : sim.units() ) {
      const auto commands = std::ranges::count_if(
          lines, [unit]( const auto& l ) { return l.unit == unit && !l.note; } );
      out << "\nunit " << unit << ": " << sim.chipKind( unit ).name << ", " << commands
          << " commands\n";
      for ( const FpCommandLog::Line& line : lines ) {
         if ( line.unit == unit ) {
            out << ( line.note ? "! " : "  " ) << line.text << "\n";
         }
      }
   }
}

}  // namespace

int runTrace( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   auto setups = readConfigs( inv.args.files, profile, inv.err );
   if ( !setups ) {
      return kExitInput;
   }
   const ConfigFiles files{ inv.args.files, std::move( *setups ) };
   if ( !programmable( files, "trace", inv.err ) ) {
      return kExitUnavailable;
   }
   AclSwitch sw( profile );
   sw.bringUp();
   std::vector<FpCommandLog::Line> lines;
   bool applied = false;
   {
      FpCommandLog log( sw.simSwitch() );
      applied = applyInTurn( sw, files, "trace", inv.err, [&log]( std::size_t, U32 pass ) {
         log.noteIs( "pass " + std::to_string( pass ) );
      } );
      lines = log.lines();
   }
   writeTrace( files.paths.front(), sw.simSwitch(), lines, inv.out );
   return applied ? kExitOk : kExitUnavailable;
}

}  // namespace HalyardCli
