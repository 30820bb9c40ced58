// Every seed of every fuzz target, run as the fuzzer runs it, in the ordinary test build: the
// seeds stay valid inputs, and a finding that was fixed stays fixed once its input is a seed.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/fuzz/FuzzTargets.h"

namespace {

namespace fs = std::filesystem;

class FuzzCorpus : public testing::TestWithParam<HalyardFuzz::Target> {};

TEST_P( FuzzCorpus, EverySeedIsHandledWithoutAFinding ) {
   const fs::path dir = fs::path( HALYARD_SOURCE_DIR ) / "tests/fuzz/corpus" / GetParam().name;
   int seeds = 0;
   for ( const auto& entry : fs::directory_iterator( dir ) ) {
      std::ifstream in( entry.path(), std::ios::binary );
      const std::vector<U8> bytes( ( std::istreambuf_iterator<char>( in ) ),
                                   std::istreambuf_iterator<char>() );
      EXPECT_EQ( GetParam().run( bytes ), "" ) << entry.path();
      ++seeds;
   }
   EXPECT_GE( seeds, 3 ) << "the seeds of " << GetParam().name << " are missing";
}

INSTANTIATE_TEST_SUITE_P( Targets, FuzzCorpus, testing::ValuesIn( HalyardFuzz::kTargets ),
                          []( const auto& info ) { return std::string( info.param.name ); } );

}  // namespace
