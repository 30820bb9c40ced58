// trace CONFIG: the field-processor command log of programming the configuration, per unit.
#include "cli/Command.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runTrace( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   if ( !readConfigs( inv.args.files, profile, inv.err ) ) {
      return kExitInput;
   }
   return notAvailableYet( inv, "trace", "programming the switch from a configuration" );
}

}  // namespace HalyardCli
