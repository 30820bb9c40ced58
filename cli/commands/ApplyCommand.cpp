// apply CONFIG [CONFIG...]: programs the switch, each further configuration as a change of the
// one before, and reports per unit what stands: text, or with --json one object.
#include <ostream>

#include "cli/Command.h"
#include "cli/ToolInput.h"
#include "cli/report/ApplySummary.h"
#include "cli/switch/ApplyConfigs.h"

namespace HalyardCli {

int runApply( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   auto setups = readConfigs( inv.args.files, profile, inv.err );
   if ( !setups ) {
      return kExitInput;
   }
   const ConfigFiles files{ inv.args.files, std::move( *setups ) };
   if ( !programmable( files, "apply", inv.err ) ) {
      return kExitUnavailable;
   }
   AclSwitch sw( profile );
   const bool applied = applyInTurn( sw, files, "apply", inv.err );
   const ApplySummary summary = summarize( sw );
   if ( inv.args.json ) {
      inv.out << applyJson( summary ).dump( 2 ) << "\n";
   } else {
      writeApplyText( summary, inv.out );
   }
   if ( !applied ) {
      return kExitUnavailable;
   }
   return summary.allStand() ? kExitOk : kExitDidNotFit;
}

}  // namespace HalyardCli
