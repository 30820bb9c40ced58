#include "cli/App.h"

#include <CLI/CLI.hpp>

#include <ostream>
#include <sstream>

#include "cli/BringupReport.h"
#include "cli/SimAgent.h"
#include "sim/switch/ProfileText.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

namespace {

// Exit codes: 0 success, 1 a finding (verify, replay --check), 2 usage or
// input error, 3 a command that this build does not provide yet.
constexpr int kExitUsage = 2;
constexpr int kExitUnavailable = 3;

// What a command gets: its own arguments and the global options.
struct Invocation {
   std::vector<std::string> args;  // after the command's name
   std::string switchProfile;      // empty: the built-in switch
   std::ostream& out;
   std::ostream& err;
};

using Handler = int ( * )( const Invocation& );

struct Command {
   const char* name;
   const char* args;
   const char* summary;
   Handler run;  // null: not available yet
};

Sim::SwitchProfile loadProfile( const std::string& path ) {
   return path.empty() ? Sim::defaultProfile() : Sim::readProfileFile( path );
}

int runBringup( const Invocation& inv ) {
   if ( !inv.args.empty() ) {
      inv.err << "halyard-acl: bringup takes no arguments\n";
      return kExitUsage;
   }
   SimAgent agent( loadProfile( inv.switchProfile ) );
   agent.hwInit();
   writeBringupReport( agent, inv.out );
   return 0;
}

// The main job: until configurations can be applied, the demo is the bring-up of the
// default switch, which shows every hidden entry the back-end leaves in the chips.
int runDemo( const Invocation& inv ) {
   inv.out << "demo: bring-up of the back-end on the switch, as an agent does at start\n\n";
   return runBringup( inv );
}

// The tool's commands in the order the help lists them. A command that is
// not available yet is listed so that users know it is coming, and refuses
// to run with a clear message.
const Command kCommands[] = {
    { "apply", "CONFIG", "program the switch; summary per unit", nullptr },
    { "show", "CONFIG", "the operator tables, per unit and ACL", nullptr },
    { "verify", "CONFIG", "read the hardware back; one line per finding", nullptr },
    { "trace", "CONFIG", "the field-processor command log of programming", nullptr },
    { "replay", "CONFIG PACKETS", "push packets through the switch", nullptr },
    { "bringup", "", "bring the switch up and show its hidden entries", runBringup },
    { "demo", "", "the main job: bring-up of the default switch", runDemo },
};

std::string helpText() {
   std::ostringstream os;
   os << "halyard-acl " << HALYARD_VERSION
      << ": program a simulated switch from an ACL configuration\n\n"
      << "usage: halyard-acl [--switch PROFILE] COMMAND ...\n\n"
      << "commands:\n";
   for ( const auto& c : kCommands ) {
      std::string head = std::string( c.name ) + ( *c.args ? " " : "" ) + c.args;
      os << "  " << head << std::string( head.size() < 22 ? 22 - head.size() : 1, ' ' ) << c.summary
         << ( c.run ? "" : " (not available yet)" ) << "\n";
   }
   os << "\noptions:\n"
      << "  -h, --help            show this help\n"
      << "  --version             show the version\n"
      << "  --switch PROFILE      switch profile file (default: built-in two-unit switch)\n";
   return os.str();
}

}  // namespace

int run( const std::vector<std::string>& args, std::ostream& out, std::ostream& err ) {
   CLI::App app{ "halyard-acl" };
   app.set_help_flag();  // help is ours, so that it can mark unavailable commands
   bool help = false;
   bool version = false;
   std::string switchProfile;
   std::vector<std::string> rest;
   app.add_flag( "-h,--help", help );
   app.add_flag( "--version", version );
   app.add_option( "--switch", switchProfile );
   app.add_option( "command", rest );
   app.allow_extras( false );

   std::vector<std::string> reversed( args.rbegin(), args.rend() );
   try {
      app.parse( reversed );
   } catch ( const CLI::ParseError& e ) {
      err << "halyard-acl: " << e.what() << "\n"
          << "try 'halyard-acl --help'\n";
      return kExitUsage;
   }
   if ( version ) {
      out << "halyard-acl " << HALYARD_VERSION << "\n";
      return 0;
   }
   if ( help || rest.empty() ) {
      ( help ? out : err ) << helpText();
      return help ? 0 : kExitUsage;
   }
   for ( const auto& c : kCommands ) {
      if ( rest.front() != c.name ) {
         continue;
      }
      if ( !c.run ) {
         err << "halyard-acl: command '" << c.name << "' is not available in this build yet\n";
         return kExitUnavailable;
      }
      Invocation inv{ { rest.begin() + 1, rest.end() }, switchProfile, out, err };
      try {
         return c.run( inv );
      } catch ( const Sim::ProfileError& e ) {
         err << "halyard-acl: " << e.what() << "\n";
         return kExitUsage;
      }
   }
   err << "halyard-acl: unknown command '" << rest.front() << "'\n"
       << "try 'halyard-acl --help'\n";
   return kExitUsage;
}

}  // namespace HalyardCli
