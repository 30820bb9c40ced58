#include "tests/platform/shim/FakeSdk.h"

#include "platform/vesper/ActivityLock.h"

namespace ShimTest {

std::vector<std::string> FakeSdk::callNames() const {
   std::vector<std::string> names;
   for ( const FakeCall& call : calls ) {
      names.push_back( call.name );
   }
   return names;
}

const char* FakeSdk::bcm_errmsg( int ) {
   record( "bcm_errmsg" );
   return Vesper::ActivityUnlockAnchor::lock().held() ? "Entry not found"
                                                      : "error text asked without the lock";
}

void FakeSdk::record( const char* name ) {
   calls.push_back( { name, Vesper::ActivityUnlockAnchor::lock().held() } );
}

}  // namespace ShimTest
