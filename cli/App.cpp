#include "cli/App.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <sstream>

#include "cli/Command.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

namespace {

using Handler = int ( * )( const Invocation& );

// Which arguments a command takes.
enum Takes : unsigned {
   configs = 1,    // CONFIG [CONFIG...]
   oneConfig = 2,  // CONFIG
   packets = 4,    // ... PACKETS, --in, --out
   json = 8,       // --json
   check = 16,     // --check
};

struct Command {
   const char* name;
   const char* args;
   const char* summary;
   unsigned takes;
   Handler run;
   bool available;  // false: listed so that users know it is coming; runs only up to the gap
};

// The tool's commands in the order the help lists them.
const Command kCommands[] = {
    { "apply", "CONFIG [CONFIG...]", "program the switch; summary per unit", configs | json,
      runApply, true },
    { "show", "CONFIG", "the operator tables, per unit and ACL", oneConfig, runShow, false },
    { "verify", "CONFIG", "read the hardware back; one line per finding", oneConfig | json,
      runVerify, false },
    { "trace", "CONFIG", "the field-processor command log of programming", oneConfig, runTrace,
      true },
    { "replay", "CONFIG [CONFIG...] PACKETS", "push packets through the switch; --check compares",
      configs | packets | json | check, runReplay, true },
    { "bringup", "", "bring the switch up and show its hidden entries", 0, runBringup, true },
    { "demo", "", "the main job: example ACLs applied, example packets checked", 0, runDemo, true },
};

std::string helpText() {
   std::ostringstream os;
   os << "halyard-acl " << HALYARD_VERSION
      << ": program a simulated switch from an ACL configuration\n\n"
      << "usage: halyard-acl [--switch PROFILE] COMMAND ...\n\n"
      << "commands:\n";
   for ( const auto& c : kCommands ) {
      std::string head = std::string( c.name ) + ( *c.args ? " " : "" ) + c.args;
      os << "  " << head << "\n"
         << "      " << c.summary << ( c.available ? "" : " (not available yet)" ) << "\n";
   }
   os << "\noptions:\n"
      << "  -h, --help            show this help (COMMAND --help: the command's own)\n"
      << "  --version             show the version\n"
      << "  --switch PROFILE      switch profile file (default: built-in two-unit switch)\n"
      << "  --json                apply, verify, replay: machine-readable output\n"
      << "  --check               replay: compare with the reference evaluator\n"
      << "  --in, --out INTERFACE replay: interfaces of packets that name none (captures)\n";
   return os.str();
}

CLI::App* addCommand( CLI::App& app, const Command& c, CommandArgs& args ) {
   CLI::App* sub = app.add_subcommand( c.name, c.summary );
   sub->allow_extras( false );
   sub->set_help_flag( "-h,--help", "show this command's help" );
   if ( c.takes & ( configs | oneConfig ) ) {
      auto* files = sub->add_option( "files", args.files, c.args )->required();
      if ( c.takes & oneConfig ) {
         files->expected( 1 );
      }
   }
   if ( c.takes & packets ) {
      sub->add_option( "--in", args.in, "ingress interface of packets that name none" );
      sub->add_option( "--out", args.out, "egress interface of packets that name none" );
   }
   if ( c.takes & json ) {
      sub->add_flag( "--json", args.json, "machine-readable output" );
   }
   if ( c.takes & check ) {
      sub->add_flag( "--check", args.check, "compare each verdict with the reference evaluator" );
   }
   return sub;
}

}  // namespace

int notAvailableYet( const Invocation& inv, const std::string& command, const std::string& what ) {
   inv.err << "halyard-acl: " << command << ": " << what
           << ", which is not available in this build yet\n";
   return kExitUnavailable;
}

int run( const std::vector<std::string>& args, std::ostream& out, std::ostream& err ) {
   CLI::App app{ "halyard-acl" };
   app.set_help_flag();  // the top help is ours, so that it can mark unavailable commands
   bool help = false;
   bool version = false;
   std::string switchProfile;
   app.add_flag( "-h,--help", help );
   app.add_flag( "--version", version );
   app.add_option( "--switch", switchProfile );
   app.require_subcommand( 0, 1 );
   app.fallthrough();
   CommandArgs commandArgs;
   for ( const auto& c : kCommands ) {
      addCommand( app, c, commandArgs );
   }

   std::vector<std::string> reversed( args.rbegin(), args.rend() );
   try {
      app.parse( reversed );
   } catch ( const CLI::CallForHelp& ) {
      out << app.help();
      return kExitOk;
   } catch ( const CLI::ExtrasError& e ) {
      const std::vector<std::string> extras = app.remaining();
      const std::string first = extras.empty() ? "" : extras.front();
      if ( app.get_subcommands().empty() && !first.empty() && first[0] != '-' ) {
         err << "halyard-acl: unknown command '" << first << "'\n";
      } else {
         err << "halyard-acl: " << e.what() << "\n";
      }
      err << "try 'halyard-acl --help'\n";
      return kExitInput;
   } catch ( const CLI::ParseError& e ) {
      err << "halyard-acl: " << e.what() << "\n"
          << "try 'halyard-acl --help'\n";
      return kExitInput;
   }
   if ( version ) {
      out << "halyard-acl " << HALYARD_VERSION << "\n";
      return kExitOk;
   }
   const auto chosen = app.get_subcommands();
   if ( help || chosen.empty() ) {
      ( help ? out : err ) << helpText();
      return help ? kExitOk : kExitInput;
   }
   for ( const auto& c : kCommands ) {
      if ( chosen.front()->get_name() != c.name ) {
         continue;
      }
      Invocation inv{ commandArgs, switchProfile, out, err };
      try {
         return c.run( inv );
      } catch ( const Sim::ProfileError& e ) {
         err << e.what() << "\n";
         return kExitInput;
      }
   }
   return kExitInput;
}

}  // namespace HalyardCli
