// The commands of halyard-acl: what each gets, what each returns. One command per source file
// in cli/commands/; App.cpp parses the command line and dispatches.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace HalyardCli {

// Exit codes: 0 success; 1 a finding (verify, replay --check); 2 an error in the command line
// or an input file, and nothing was programmed; 3 an ACL that did not fit (apply); 4 a command,
// or part of one, that this build does not provide yet.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFinding = 1;
inline constexpr int kExitInput = 2;
inline constexpr int kExitDidNotFit = 3;
inline constexpr int kExitUnavailable = 4;

// The arguments and options of one command; each command declares the ones it takes.
struct CommandArgs {
   std::vector<std::string> files;  // CONFIG... and, for replay, PACKETS last
   bool json = false;
   bool check = false;
   std::string in;   // --in INTERFACE: ingress of packets that do not name one
   std::string out;  // --out INTERFACE: egress of packets that do not name one
};

struct Invocation {
   CommandArgs args;
   std::string switchProfile;  // empty: the built-in switch
   std::ostream& out;
   std::ostream& err;
};

int runApply( const Invocation& inv );
int runShow( const Invocation& inv );
int runVerify( const Invocation& inv );
int runTrace( const Invocation& inv );
int runReplay( const Invocation& inv );
int runBringup( const Invocation& inv );
int runDemo( const Invocation& inv );

// Says loudly what this build lacks ("halyard-acl: COMMAND: WHAT, which is not available in
// this build yet"), and returns kExitUnavailable.
int notAvailableYet( const Invocation& inv, const std::string& command, const std::string& what );

}  // namespace HalyardCli
