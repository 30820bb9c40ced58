// demo: the README's main job on the default switch. The example configuration is applied
// (what its ACLs became in the TCAM of each unit), then the example packets are replayed with
// the check against the reference evaluator (what the ACLs do to traffic).
#include <filesystem>
#include <ostream>

#include "cli/Command.h"
#include "cli/ToolInput.h"
#include "cli/replay/Replayer.h"
#include "cli/report/ApplySummary.h"
#include "cli/report/ConfigSummary.h"
#include "cli/report/ReplayReport.h"
#include "cli/switch/ApplyConfigs.h"

namespace HalyardCli {

namespace {

constexpr const char* kDemoConfig = "examples/acls/demo.acl";
constexpr const char* kDemoPackets = "examples/packets/demo.jsonl";

// An example file: under the working directory (a checkout), else in the source tree the tool
// was built from, else where the tool was installed.
std::string examplePath( const std::string& relative ) {
   namespace fs = std::filesystem;
   const std::string prefix = "examples/";
   for ( const std::string& dir :
         { std::string( "examples" ), std::string( HALYARD_SOURCE_EXAMPLES ),
           std::string( HALYARD_INSTALLED_EXAMPLES ) } ) {
      const fs::path path = fs::path( dir ) / relative.substr( prefix.size() );
      if ( fs::exists( path ) ) {
         return path.string();
      }
   }
   return relative;
}

}  // namespace

int runDemo( const Invocation& inv ) {
   const Sim::SwitchProfile profile = loadProfile( inv.switchProfile );
   auto setups = readConfigs( { examplePath( kDemoConfig ) }, profile, inv.err );
   const auto packets =
       readPacketsFor( examplePath( kDemoPackets ), CommandArgs{}, profile, inv.err );
   if ( !setups || !packets ) {
      return kExitInput;
   }
   const ConfigFiles files{ { kDemoConfig }, std::move( *setups ) };
   if ( !programmable( files, "demo", inv.err ) ) {
      return kExitUnavailable;
   }
   inv.out << "halyard-acl demo: " << kDemoConfig << " applied to the " << profile.name()
           << " switch, then\n"
           << kDemoPackets << " pushed through it and checked against the reference evaluator\n\n"
           << "the configuration:\n";
   writeConfigSummary( files.setups.front(), inv.out );

   AclSwitch sw( profile );
   applyInTurn( sw, files, "demo", inv.err );
   inv.out << "\n$ halyard-acl apply " << kDemoConfig << "\n";
   writeApplyText( summarize( sw ), inv.out );

   inv.out << "\n$ halyard-acl replay --check " << kDemoConfig << " " << kDemoPackets << "\n";
   Replayer replayer( sw, true );
   const auto writer = replayTextWriter( inv.out, true );
   replayAll( replayer, *packets, *writer, sw.machine() );
   return replayer.totals().disagree != 0 ? kExitFinding : kExitOk;
}

}  // namespace HalyardCli
