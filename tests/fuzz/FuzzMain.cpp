// The libFuzzer entry of one target, named at build time by HALYARD_FUZZ_TARGET (scripts/fuzz.sh
// builds one binary a target). In the test build the macro is not set and this file is empty.
#ifdef HALYARD_FUZZ_TARGET

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "tests/fuzz/FuzzTargets.h"

namespace {

const HalyardFuzz::Target& target() {
   static const HalyardFuzz::Target* const found = std::ranges::find(
       HalyardFuzz::kTargets, std::string_view( HALYARD_FUZZ_TARGET ),
       []( const HalyardFuzz::Target& t ) { return std::string_view( t.name ); } );
   return *found;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   const std::string finding = target().run( std::span<const U8>( data, size ) );
   if ( !finding.empty() ) {
      std::fprintf( stderr, "finding: %s\n", finding.c_str() );
      std::abort();
   }
   return 0;
}

#endif
