// bringup: the back-end's one-time bring-up on the switch, and what it leaves in the chips.
#include <ostream>

#include "cli/BringupReport.h"
#include "cli/Command.h"
#include "cli/SimAgent.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runBringup( const Invocation& inv ) {
   SimAgent agent( loadProfile( inv.switchProfile ) );
   agent.hwInit();
   writeBringupReport( agent, inv.out );
   return kExitOk;
}

}  // namespace HalyardCli
