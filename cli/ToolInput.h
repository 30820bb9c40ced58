// The inputs of the tool's commands, read before anything is programmed: the switch profile,
// the configurations and the packets. Each reader writes every finding to the error stream in
// the form FILE:LINE: message and returns nothing, so that a command with a bad input exits
// with kExitInput having programmed nothing.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/config/ConfigText.h"
#include "cli/packets/PacketInput.h"
#include "sim/switch/SwitchProfile.h"

namespace HalyardCli {

// The profile at `path`, or the built-in default switch for an empty path. Throws
// Sim::ProfileError, which App reports.
Sim::SwitchProfile loadProfile( const std::string& path );

// Configurations checked against the switch's interfaces.
std::optional<std::vector<AclSetup> > readConfigs( const std::vector<std::string>& paths,
                                                   const Sim::SwitchProfile& profile,
                                                   std::ostream& err );

// The packets of `path`, with --in and --out of `args` as defaults; every interface must be one
// of the switch's.
std::optional<std::vector<Fennel::Packet> > readPacketsFor( const std::string& path,
                                                            const CommandArgs& args,
                                                            const Sim::SwitchProfile& profile,
                                                            std::ostream& err );

}  // namespace HalyardCli
