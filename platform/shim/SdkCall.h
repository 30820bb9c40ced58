// The bracket round every SDK call, and the three forms of return-code handling.
//
// sdkCall( call ) gives up the activity lock for exactly the length of
// `call`: it constructs a Vesper::UnlockAnchor on the lock of
// Vesper::ActivityUnlockAnchor::lock(), runs the call (with the enumerators
// and bitmaps it fetches from Shim::sdk_) and destroys the anchor, which
// takes the lock back, also when an exception passes. Only after that is the
// return code looked at, so checks, traces and the error text run with the
// lock held. The forms run their whole expression inside the bracket, plain
// arguments included: keep those to locals and plain accessors, and compute
// anything that walks shared state before the call.
//
// Every call site picks one form; `expr` is the call's source text as written:
//
//   SDK_CHECK( expr )     a call that programs the chip, or reads what must be
//                         there. A negative code stops the process: one line
//                         "<file>:<line> <expr> API ERROR:<text> (<code>)" on
//                         stderr, then an assertion failure on "0" with the
//                         file, line and function of the call (also with
//                         NDEBUG). 0 and positive codes are success; the form
//                         yields the code.
//   SDK_TRACE_RV( expr )  a read-back whose code the caller judges itself;
//                         never stops, yields the code.
//   SDK_NO_CHECK( expr )  a call whose return is ignored by design; never
//                         stops, yields the call's result (if any).
//
// Trace lines, at level 4 on the source file's own handle (VESPER_TRACE_HANDLE):
//   "<file>:<line> <expr> (rc:<code>)"   SDK_CHECK, on success only
//   "<file>:<line> <expr> (rv:<code>)"   SDK_TRACE_RV
//   "<file>:<line> <expr> no rc check"   SDK_NO_CHECK
// The call happens whether or not the level is on.
//
// SDK_CHECK_SPINDLE and SDK_NO_CHECK_SPINDLE are the same forms for the
// sources of the ACL state machines: they also write their line to the
// in-memory ring (Vesper::Spindle), whatever the trace levels.
//
// REQUIRES: the calling thread holds the activity lock; the forms are used
// inside a function (they capture its locals by reference).
#pragma once

#include <type_traits>
#include <utility>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"

namespace Shim {

// Where a call stands in the source, and its text there.
struct SdkCallSite {
   const char* file;
   unsigned line;
   const char* function;
   const char* expr;
};

// Whether a form also writes its line to the Spindle ring.
enum class SdkRing { no, yes };

template <typename Call>
decltype( auto ) sdkCall( Call&& call ) {
   Vesper::UnlockAnchor anchor( Vesper::ActivityUnlockAnchor::lock() );
   return std::forward<Call>( call )();
}

// The handling of a code once the lock is back, one per form.
int sdkChecked( int rc, const SdkCallSite& site, const Vesper::TraceHandle& trace, SdkRing ring );
int sdkTracedRv( int rc, const SdkCallSite& site, const Vesper::TraceHandle& trace );
void sdkNotChecked( const SdkCallSite& site, const Vesper::TraceHandle& trace, SdkRing ring );

// The failing end of SDK_CHECK: the API ERROR line, then the assertion.
[[noreturn]] void sdkCheckFailed( int rc, const SdkCallSite& site );

template <typename Call>
auto sdkNoCheck( Call&& call, const SdkCallSite& site, const Vesper::TraceHandle& trace,
                 SdkRing ring ) {
   if constexpr ( std::is_void_v<std::invoke_result_t<Call&> > ) {
      sdkCall( call );
      sdkNotChecked( site, trace, ring );
   } else {
      auto result = sdkCall( call );
      sdkNotChecked( site, trace, ring );
      return result;
   }
}

}  // namespace Shim

// Each form stringizes its expression itself: handed on to another macro,
// the argument would be macro-expanded first and lose its source text.
#define SHIM_SDK_SITE( text )                       \
   ::Shim::SdkCallSite {                            \
      __FILE__, __LINE__, __PRETTY_FUNCTION__, text \
   }

#define SHIM_SDK_CHECK( ring, text, ... )                                       \
   ::Shim::sdkChecked( ::Shim::sdkCall( [&]() -> int { return __VA_ARGS__; } ), \
                       SHIM_SDK_SITE( text ), vesperFileTrace(), ring )

#define SHIM_SDK_NO_CHECK( ring, text, ... )                                                    \
   ::Shim::sdkNoCheck( [&]() { return __VA_ARGS__; }, SHIM_SDK_SITE( text ), vesperFileTrace(), \
                       ring )

#define SDK_CHECK( ... ) SHIM_SDK_CHECK( ::Shim::SdkRing::no, #__VA_ARGS__, __VA_ARGS__ )
#define SDK_CHECK_SPINDLE( ... ) SHIM_SDK_CHECK( ::Shim::SdkRing::yes, #__VA_ARGS__, __VA_ARGS__ )
#define SDK_NO_CHECK( ... ) SHIM_SDK_NO_CHECK( ::Shim::SdkRing::no, #__VA_ARGS__, __VA_ARGS__ )
#define SDK_NO_CHECK_SPINDLE( ... ) \
   SHIM_SDK_NO_CHECK( ::Shim::SdkRing::yes, #__VA_ARGS__, __VA_ARGS__ )

#define SDK_TRACE_RV( ... )                                                      \
   ::Shim::sdkTracedRv( ::Shim::sdkCall( [&]() -> int { return __VA_ARGS__; } ), \
                        SHIM_SDK_SITE( #__VA_ARGS__ ), vesperFileTrace() )
