// The configurations of a command applied to the switch in turn, as apply, trace and replay
// do, with the checks of what this build can program (ConfigChange.h) made before anything is
// programmed.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/config/ConfigText.h"
#include "cli/switch/AclSwitch.h"

namespace HalyardCli {

struct ConfigFiles {
   std::vector<std::string> paths;
   std::vector<AclSetup> setups;  // one per path, as read
};

// Whether this build can program every configuration, each as a change of the one before.
// Writes "halyard-acl: COMMAND: FILE: why" for the first it cannot; nothing is programmed.
bool programmable( const ConfigFiles& files, const std::string& command, std::ostream& err );

// Applies the configurations in turn. A configuration whose first pass would apply again an
// ACL that the one before left waiting, where this build cannot (pendingReapply), is not
// applied. Writes why and answers false then; what the earlier ones programmed stands.
// REQUIRES: programmable( files, ... ).
// `beforePass` hears of each pass: the configuration's index and the pass (1 for the first).
bool applyInTurn( AclSwitch& sw, const ConfigFiles& files, const std::string& command,
                  std::ostream& err,
                  const std::function<void( std::size_t, U32 )>& beforePass = {} );

}  // namespace HalyardCli
