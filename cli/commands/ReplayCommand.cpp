// replay CONFIG [CONFIG...] PACKETS: the switch programmed as apply does, then every packet
// pushed through it; with --check each verdict is compared with the reference evaluator.
#include <ostream>

#include "cli/Command.h"
#include "cli/ToolInput.h"

namespace HalyardCli {

int runReplay( const Invocation& inv ) {
   const std::vector<std::string>& files = inv.args.files;
   if ( files.size() < 2 ) {
      inv.err << "halyard-acl: replay needs CONFIG [CONFIG...] PACKETS\n";
      return kExitInput;
   }
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   const auto setups =
       readConfigs( std::vector<std::string>( files.begin(), files.end() - 1 ), profile, inv.err );
   const auto packets = readPacketsFor( files.back(), inv.args, profile, inv.err );
   if ( !setups || !packets ) {
      return kExitInput;
   }
   return notAvailableYet( inv, "replay", "programming the switch from a configuration" );
}

}  // namespace HalyardCli
