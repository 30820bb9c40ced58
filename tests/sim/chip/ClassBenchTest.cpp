// Scale: a real rule set programmed as IFP entries gives, for every packet of its trace, the
// hit that a plain first-match evaluation of the rules gives.
#include <gtest/gtest.h>

#include <map>

#include "sim/chip/ChipModel.h"
#include "sim/chip/ClassBench.h"

namespace Sim {
namespace {

const std::string kDataDir = HALYARD_SOURCE_DIR "/../shared/data/classbench/";

struct SetCase {
   const char* rules;
   const char* trace;
   U32 rangeCheckers;
};

class ClassBenchScale : public ::testing::TestWithParam<SetCase> {};

TEST_P( ClassBenchScale, FirstHitIsTheFirstMatchingRule ) {
   const SetCase& c = GetParam();
   const auto rules = ClassBench::readRules( kDataDir + c.rules );
   const auto trace = ClassBench::readTrace( kDataDir + c.trace );
   ASSERT_GT( rules.size(), 500u );
   ASSERT_GT( trace.size(), 5000u );

   ChipModel chip( ChipConfig{ 8, 0, c.rangeCheckers, 4 } );
   ASSERT_EQ( Status::Ok, chip.groupCreate( 1, Stage::Ifp, 0 ) );
   const auto programmed = ClassBench::program( chip, 1, rules, 100000 );
   ASSERT_EQ( rules.size(), programmed.entriesOfRule.size() );
   if ( c.rangeCheckers < 8 ) {
      EXPECT_GT( programmed.entries, rules.size() );  // ranges split into aligned blocks
   }
   std::map<EntryId, std::size_t> ruleOf;
   for ( std::size_t r = 0; r < programmed.entriesOfRule.size(); ++r ) {
      for ( EntryId e : programmed.entriesOfRule[r] ) {
         ruleOf[e] = r;
      }
   }

   Verdict v;
   std::size_t hits = 0;
   for ( std::size_t i = 0; i < trace.size(); ++i ) {
      chip.lookup( ClassBench::packetOf( trace[i], 1, 2 ), v );
      const auto expected = ClassBench::firstMatch( rules, trace[i] );
      const auto entry = v.hitIn( 1 );
      ASSERT_EQ( expected.has_value(), entry.has_value() ) << "header " << i;
      if ( entry ) {
         ASSERT_EQ( *expected, ruleOf.at( *entry ) ) << "header " << i;
         EXPECT_EQ( U32( *expected % 8 ), v.cpuQueue );
         ++hits;
      }
   }
   EXPECT_GT( hits, 0u );
}

// With few range checkers most ranges fall back to one entry per aligned block.
INSTANTIATE_TEST_SUITE_P( Sets, ClassBenchScale,
                          ::testing::Values( SetCase{ "acl1_1k", "acl1_1k_trace", 64 },
                                             SetCase{ "acl1_1k", "acl1_1k_trace", 2 },
                                             SetCase{ "fw1_1k", "fw1_1k_trace", 32 },
                                             SetCase{ "ipc1_1k", "ipc1_1k_trace", 24 } ) );

}  // namespace
}  // namespace Sim
