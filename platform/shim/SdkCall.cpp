#include "platform/shim/SdkCall.h"

#include <cstdio>
#include <string>

#include "platform/shim/Sdk.h"
#include "platform/vesper/Assert.h"

namespace Shim {

namespace {

// The level of every SDK call trace line.
constexpr int sdkTraceLevel = 4;

// "<file>:<line> <expr>", the start of every line about a call.
std::string positionAndExpr( const SdkCallSite& site ) {
   return std::string( site.file ) + ":" + std::to_string( site.line ) + " " + site.expr;
}

void writeLine( const std::string& line, const Vesper::TraceHandle& trace, SdkRing ring ) {
   trace.write( sdkTraceLevel, line );
   if ( ring == SdkRing::yes ) {
      Vesper::Spindle::instance().write( line );
   }
}

}  // namespace

int sdkChecked( int rc, const SdkCallSite& site, const Vesper::TraceHandle& trace, SdkRing ring ) {
   if ( rc < 0 ) {
      sdkCheckFailed( rc, site );
   }
   if ( trace.enabled( sdkTraceLevel ) || ring == SdkRing::yes ) {
      writeLine( positionAndExpr( site ) + " (rc:" + std::to_string( rc ) + ")", trace, ring );
   }
   return rc;
}

int sdkTracedRv( int rc, const SdkCallSite& site, const Vesper::TraceHandle& trace ) {
   if ( trace.enabled( sdkTraceLevel ) ) {
      trace.write( sdkTraceLevel, positionAndExpr( site ) + " (rv:" + std::to_string( rc ) + ")" );
   }
   return rc;
}

void sdkNotChecked( const SdkCallSite& site, const Vesper::TraceHandle& trace, SdkRing ring ) {
   if ( trace.enabled( sdkTraceLevel ) || ring == SdkRing::yes ) {
      writeLine( positionAndExpr( site ) + " no rc check", trace, ring );
   }
}

void sdkCheckFailed( int rc, const SdkCallSite& site ) {
   // The lock is held again here (the bracket has ended), so the SDK's error
   // text may be asked for and the agent's state is consistent in the core.
   const char* text = sdk_->bcm_errmsg( rc );
   const std::string line = positionAndExpr( site ) + " API ERROR:" + ( text ? text : "" ) + " (" +
                            std::to_string( rc ) + ")\n";
   std::fputs( line.c_str(), stderr );
   std::fflush( stderr );
   Vesper::assertionFailed( "0", site.file, site.line, site.function );
}

}  // namespace Shim
