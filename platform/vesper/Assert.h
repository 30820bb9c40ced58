// Always-on assertions of the object runtime.
//
// A broken invariant of stored state stops the process through the C
// library's assertion path: the message names the expression's text, the
// source file, the line and the function, exactly as assert() would. Unlike
// assert(), VESPER_ASSERT stays in builds with NDEBUG, because the state it
// guards is just as wrong in a release build.
#pragma once

namespace Vesper {

// Reports the failed assertion in the C library's format and aborts.
[[noreturn]] void assertionFailed( const char* expr, const char* file, unsigned line,
                                   const char* function );

}  // namespace Vesper

#define VESPER_ASSERT( expr )  \
   ( static_cast<bool>( expr ) \
         ? void( 0 )           \
         : ::Vesper::assertionFailed( #expr, __FILE__, __LINE__, __PRETTY_FUNCTION__ ) )
