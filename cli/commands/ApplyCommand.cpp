// apply CONFIG [CONFIG...]: programs the switch, each further configuration as a change of the
// one before, and reports per unit what stands.
#include "cli/Command.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runApply( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   if ( !readConfigs( inv.args.files, profile, inv.err ) ) {
      return kExitInput;
   }
   return notAvailableYet( inv, "apply", "programming the switch from a configuration" );
}

}  // namespace HalyardCli
