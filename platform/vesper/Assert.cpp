#include "platform/vesper/Assert.h"

// The C library declares its assertion entry point only without NDEBUG; this
// file needs it in every build.
#ifdef NDEBUG
#undef NDEBUG
#include <cassert>
#define NDEBUG
#else
#include <cassert>
#endif
#include <cstdio>
#include <cstdlib>

namespace Vesper {

void assertionFailed( const char* expr, const char* file, unsigned line, const char* function ) {
#if defined( __GLIBC__ )
   // glibc's own entry point, so the text is the one operators know from assert().
   __assert_fail( expr, file, line, function );
#else
   std::fprintf( stderr, "%s:%u: %s: Assertion `%s' failed.\n", file, line, function, expr );
   std::fflush( stderr );
   std::abort();
#endif
}

}  // namespace Vesper
