// verify CONFIG: the hardware read back against the configuration, one line per finding.
#include "cli/Command.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runVerify( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   if ( !readConfigs( inv.args.files, profile, inv.err ) ) {
      return kExitInput;
   }
   return notAvailableYet( inv, "verify",
                           "reading the hardware back needs the back-end's verification" );
}

}  // namespace HalyardCli
