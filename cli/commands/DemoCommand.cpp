// demo: the README's main job on the default switch. The back-end's bring-up and what it leaves
// in the chips, then the example configuration and packets as read; applying them and
// replaying the packets against the reference evaluator come with the generic ACL layer.
#include <filesystem>
#include <ostream>

#include "cli/BringupReport.h"
#include "cli/Command.h"
#include "cli/SimAgent.h"
#include "cli/ToolInput.h"
#include "cli/report/ConfigSummary.h"

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
   const auto setups = readConfigs( { examplePath( kDemoConfig ) }, profile, inv.err );
   CommandArgs packetArgs;
   const auto packets = readPacketsFor( examplePath( kDemoPackets ), packetArgs, profile, inv.err );
   if ( !setups || !packets ) {
      return kExitInput;
   }
   inv.out << "demo: bring-up of the back-end on the switch, as an agent does at start\n\n";
   SimAgent agent( profile );
   agent.hwInit();
   writeBringupReport( agent, inv.out );
   inv.out << "\n" << kDemoConfig << "\n";
   writeConfigSummary( setups->front(), inv.out );
   inv.out << "\n" << kDemoPackets << "\n";
   writePacketSummary( *packets, inv.out );
   inv.out << "\nnot available in this build yet: applying the configuration to the switch and "
              "replaying\nthe packets with --check against the reference evaluator (they need "
              "the generic ACL layer)\n";
   return kExitOk;
}

}  // namespace HalyardCli
