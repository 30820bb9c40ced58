// The bring-up report of the built-in switch and of the same switch read from its profile file
// agree; the report itself is a golden case (tests/e2e/golden/bringup-default.cmd).
#include <gtest/gtest.h>

#include "tests/e2e/ToolRunner.h"

namespace {

using HalyardE2e::runTool;

TEST( BringupTest, ProfileFileOfTheDefaultSwitchGivesTheSameReport ) {
   auto builtIn = runTool( { "bringup" } );
   auto fromFile = runTool( { "--switch", "examples/switches/default.switch", "bringup" } );
   ASSERT_EQ( builtIn.exitCode, 0 ) << builtIn.err;
   ASSERT_EQ( fromFile.exitCode, 0 ) << fromFile.err;
   EXPECT_EQ( fromFile.out, builtIn.out );
}

}  // namespace
