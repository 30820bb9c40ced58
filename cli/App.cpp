#include "cli/App.h"

#include <CLI/CLI.hpp>

#include <ostream>
#include <sstream>

namespace HalyardCli {

namespace {

// Exit codes: 0 success, 1 a finding (verify, replay --check), 2 usage or
// input error, 3 a command that this build does not provide yet.
constexpr int kExitUsage = 2;
constexpr int kExitUnavailable = 3;

struct Command {
   const char* name;
   const char* args;
   const char* summary;
   bool available;
};

// The tool's commands in the order the help lists them. A command that is
// not available yet is listed so that users know it is coming, and refuses
// to run with a clear message.
const Command kCommands[] = {
    { "apply", "CONFIG", "program the switch; summary per unit", false },
    { "show", "CONFIG", "the operator tables, per unit and ACL", false },
    { "verify", "CONFIG", "read the hardware back; one line per finding", false },
    { "trace", "CONFIG", "the field-processor command log of programming", false },
    { "replay", "CONFIG PACKETS", "push packets through the switch", false },
    { "bringup", "", "bring the switch up and show its hidden entries", false },
    { "demo", "", "an example configuration on the default switch", false },
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
         << ( c.available ? "" : " (not available yet)" ) << "\n";
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
      if ( rest.front() == c.name ) {
         err << "halyard-acl: command '" << c.name << "' is not available in this build yet\n";
         return kExitUnavailable;
      }
   }
   err << "halyard-acl: unknown command '" << rest.front() << "'\n"
       << "try 'halyard-acl --help'\n";
   return kExitUsage;
}

}  // namespace HalyardCli
