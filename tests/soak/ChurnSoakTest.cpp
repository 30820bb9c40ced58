// The churn soak (SoakRun.h) in its short form for CI: a fixed seed and 150 steps.
// HALYARD_SOAK_STEPS and HALYARD_SOAK_SEED run it longer or from another seed;
// HALYARD_SOAK_PROBE_EVERY=N opens the update probe on every Nth application (10 here, 1 in
// scripts/soak.sh); HALYARD_SOAK_STRICT_ORDER=1 fails the findings of the known install-order fault
// (scripts/soak.sh runs the whole, 10,000 steps, from a release build).
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "tests/soak/SoakRun.h"

namespace {

U32 fromEnvironment( const char* name, U32 fallback ) {
   const char* value = std::getenv( name );
   return value && *value ? static_cast<U32>( std::stoul( value ) ) : fallback;
}

TEST( ChurnSoak, EveryStepHoldsAndTeardownGivesEveryPoolBack ) {
   Soak::SoakOptions options;
   options.steps = fromEnvironment( "HALYARD_SOAK_STEPS", 150 );
   options.seed = fromEnvironment( "HALYARD_SOAK_SEED", 1 );
   options.probeEvery = fromEnvironment( "HALYARD_SOAK_PROBE_EVERY", 10 );
   options.strictOrder = fromEnvironment( "HALYARD_SOAK_STRICT_ORDER", 0 ) != 0;
   options.progress = &std::cout;
   const Soak::SoakResult result = Soak::runSoak( options );
   std::cout << "churn soak, seed " << options.seed << ": " << Soak::statsText( result.stats )
             << std::endl;
   ASSERT_EQ( "", result.failure );
   EXPECT_EQ( options.steps, result.stats.steps );
   // The soak reached what it is for: ACLs that waited for room and then stood, and ranges as
   // blocks.
   EXPECT_GT( result.stats.probed, 0u );
   if ( options.steps >= 150 ) {
      EXPECT_GT( result.stats.waitingSteps, 0u );
      EXPECT_GT( result.stats.recovered, 0u );
      EXPECT_GT( result.stats.expandedSteps, 0u );
   }
}

}  // namespace
