// Runs the halyard-acl binary as a user would, from the top of the source tree, so that the
// paths in its messages are the ones a user in a checkout sees.
#pragma once

#include <string>
#include <vector>

namespace HalyardE2e {

struct ToolResult {
   int exitCode;
   std::string out;
   std::string err;
};

ToolResult runTool( const std::vector<std::string>& args );

std::string readFile( const std::string& path );

}  // namespace HalyardE2e
