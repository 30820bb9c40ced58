// The halyard-acl command line: parses arguments and runs one command.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace HalyardCli {

// Runs the tool with the given arguments (without the program name) and
// returns its exit code. Output goes to `out`, diagnostics to `err`.
int run( const std::vector<std::string>& args, std::ostream& out, std::ostream& err );

}  // namespace HalyardCli
