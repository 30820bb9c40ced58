#include "tests/sim/lookup/LookupFixture.h"

#include <stdexcept>
#include <string>

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

namespace SimLookupTest {

void LookupTest::TearDown() {
   for ( const std::string& v : sw_.sdk().gate().violations() ) {
      ADD_FAILURE() << "contract violation: " << v;
   }
}

U32 LookupTest::acquire( TcamGroupAssignment a, U32 unit ) {
   const U32 e = sw_.groupManager()->unboundedEntryManager( a )->getEntry( unit, "lookup test" );
   EXPECT_NE( 0u, e ) << "no entry left in " << static_cast<U32>( a );
   return e;
}

Halyard::HalyardTcamEntryManager& LookupTest::manager( U32 entry ) const {
   const auto m = sw_.groupManager()->tcamEntryMgr( entry );
   if ( !m ) {
      throw std::logic_error( "no manager issued entry " + std::to_string( entry ) );
   }
   return *m;
}

void LookupTest::install( U32 entry, U32 unit ) {
   EXPECT_LE( 0, manager( entry ).installEntry( unit, entry ) ) << "entry " << entry;
}

U64 LookupTest::hits( U32 entry, U32 unit ) const {
   return manager( entry ).hitsForEntry( unit, entry );
}

bcm_pbmp_t LookupTest::pbmp( const std::vector<int>& ports ) {
   bcm_pbmp_t b;
   BCM_PBMP_CLEAR( b );
   for ( int p : ports ) {
      BCM_PBMP_PORT_ADD( b, p );
   }
   return b;
}

bcm_pbmp_t LookupTest::allPorts( U32 unit ) {
   return PBMP_ALL( static_cast<int>( unit ) );
}

}  // namespace SimLookupTest
