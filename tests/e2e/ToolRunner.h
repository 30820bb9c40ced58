// Runs the halyard-acl binary as a user would and compares its output with golden files.
//
// Golden files live in tests/e2e/golden/. Set HALYARD_UPDATE_GOLDEN=1 to rewrite them from the
// tool's present output (then review the diff before committing).
#pragma once

#include <string>
#include <vector>

namespace HalyardE2e {

struct ToolResult {
   int exitCode;
   std::string out;
   std::string err;
};

// Runs the tool with `args` from the top of the source tree.
ToolResult runTool( const std::vector<std::string>& args );

// Compares `actual` with the golden file `name`; the failure names the first differing line.
void expectGolden( const std::string& name, const std::string& actual );

}  // namespace HalyardE2e
