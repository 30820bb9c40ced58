// Reading what the back-end said: the field-processor commands on Halyard::bcmFpCmd, the SDK
// calls in the level-4 trace lines of the checked forms, and the text of fatal failures for
// death tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/vesper/Trace.h"

namespace HalyardTest {

// Collects the "fp qual ..." and "fp action add ..." lines while it lives.
class FpCmdCapture {
 public:
   FpCmdCapture() : capture_( "Halyard::bcmFpCmd" ) {}

   std::vector<std::string> lines() const { return capture_.lines(); }
   // The lines about one entry ("fp qual <entry> ..." and "fp action add <entry> ..."), in order.
   std::vector<std::string> linesOf( unsigned entry ) const;
   void clear() { capture_.clear(); }

 private:
   Vesper::TraceCapture capture_;
};

// The expressions of the checked SDK calls among trace lines of the form
// "<file>:<line> <expr> (rc:<code>)", in order.
std::vector<std::string> checkedCalls( const std::vector<std::string>& lines );

// The lines that start with, or contain, `text`.
std::vector<std::string> linesStartingWith( const std::vector<std::string>& lines,
                                            std::string_view prefix );
std::vector<std::string> linesContaining( const std::vector<std::string>& lines,
                                          std::string_view text );

// Regular expressions, as death tests take them, for the line of a failed assertion on `expr`
// and for the fatal line of a checked SDK call that failed; the texts stand exactly.
std::string assertionFailure( std::string_view expr );
std::string sdkCheckFailure( std::string_view call );

}  // namespace HalyardTest
