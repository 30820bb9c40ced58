// replay CONFIG [CONFIG...] PACKETS: the switch programmed as apply does, then every packet
// pushed through it; with --check each verdict is compared with the reference evaluator of
// the last configuration, and a difference makes the exit code 1.
#include <unistd.h>

#include <iostream>
#include <ostream>

#include "cli/Command.h"
#include "cli/ToolInput.h"
#include "cli/replay/Replayer.h"
#include "cli/report/ApplySummary.h"
#include "cli/report/ReplayReport.h"
#include "cli/switch/ApplyConfigs.h"
#include "platform/pylon/ValueText.h"

namespace HalyardCli {

namespace {

// Replays longer than this show their progress when stderr is a terminal.
constexpr std::size_t kProgressFrom = 2000;
constexpr std::size_t kProgressEvery = 500;

bool showProgress( const Invocation& inv, std::size_t packets ) {
   return packets > kProgressFrom && &inv.err == &std::cerr && isatty( STDERR_FILENO );
}

// A word on stderr when the switch does not hold every ACL: the packets meet what stands.
void warnUnlessAllStand( const AclSwitch& sw, std::ostream& err ) {
   const ApplySummary summary = summarize( sw );
   if ( summary.allStand() ) {
      return;
   }
   err << "halyard-acl: replay: not every ACL stands installed; packets meet the hardware as it "
          "stands ('apply' says why)\n";
}

// Packets arrive on a front-panel port or a port-channel; a VLAN interface or a sub-interface
// is no place a frame comes in by (a frame for a sub-interface arrives on its parent, tagged
// with the sub-interface's VLAN).
bool ingressesArePorts( const std::string& path, const std::vector<Fennel::Packet>& packets,
                        std::ostream& err ) {
   for ( std::size_t i = 0; i < packets.size(); ++i ) {
      const Pylon::IntfId in = packets[i].in;
      if ( in.isEthernet() || in.isPortChannel() ) {
         continue;
      }
      err << path << ": packet " << i + 1 << ": in " << Pylon::valueToStrep( in )
          << ": expected a front-panel port or a port-channel (a frame for a sub-interface "
             "arrives on its parent, tagged with its VLAN)\n";
      return false;
   }
   return true;
}

}  // namespace

int runReplay( const Invocation& inv ) {
   const std::vector<std::string>& args = inv.args.files;
   if ( args.size() < 2 ) {
      inv.err << "halyard-acl: replay needs CONFIG [CONFIG...] PACKETS\n";
      return kExitInput;
   }
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   const std::vector<std::string> paths( args.begin(), args.end() - 1 );
   auto setups = readConfigs( paths, profile, inv.err );
   const auto packets = readPacketsFor( args.back(), inv.args, profile, inv.err );
   if ( !setups || !packets || !ingressesArePorts( args.back(), *packets, inv.err ) ) {
      return kExitInput;
   }
   const ConfigFiles files{ paths, std::move( *setups ) };
   if ( !programmable( files, "replay", inv.err ) ) {
      return kExitUnavailable;
   }
   AclSwitch sw( profile );
   if ( !applyInTurn( sw, files, "replay", inv.err ) ) {
      return kExitUnavailable;
   }
   warnUnlessAllStand( sw, inv.err );

   const bool check = inv.args.check;
   Replayer replayer( sw, check );
   const auto writer = inv.args.json ? replayJsonWriter( inv.out, inv.err, check )
                                     : replayTextWriter( inv.out, check );
   std::function<void( U32 )> progress;
   if ( showProgress( inv, packets->size() ) ) {
      progress = [&inv, total = packets->size()]( U32 done ) {
         if ( done % kProgressEvery == 0 || done == total ) {
            inv.err << "\rreplay: " << done << " of " << total << " packets"
                    << ( done == total ? "\n" : "" ) << std::flush;
         }
      };
   }
   replayAll( replayer, *packets, *writer, sw.machine(), progress );
   return check && replayer.totals().disagree != 0 ? kExitFinding : kExitOk;
}

}  // namespace HalyardCli
