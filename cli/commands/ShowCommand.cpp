// show CONFIG: the operator tables of the programmed configuration, per unit and ACL.
#include "cli/Command.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runShow( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   if ( !readConfigs( inv.args.files, profile, inv.err ) ) {
      return kExitInput;
   }
   return notAvailableYet( inv, "show", "the operator tables need the back-end's show support" );
}

}  // namespace HalyardCli
