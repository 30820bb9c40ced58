// Trace handles, trace captures and the in-memory trace ring.
//
// Every source file declares one named handle (VESPER_TRACE_HANDLE) and
// traces through it at levels 0 to 9 (VTRACE). All levels are off by
// default; they are switched on by handle name pattern, at run time through
// traceLevelIs() or at start through the environment variable VESPER_TRACE,
// for example "Halyard::bcmFpCmd/0,Halyard::AclSm/0-9". A pattern is a glob
// ('*' any text, '?' one character) and applies to handles registered later
// as well, in the order the settings were made.
//
// A line written on an enabled level goes to every live TraceCapture whose
// pattern matches the handle; a line that no capture takes goes to the sink
// (stderr unless replaced by traceSinkIs).
//
// Threads: lines are written on the activity thread; the registry of
// handles, settings and captures is guarded so that handles may be made and
// settings changed from any thread.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/vesper/Types.h"

namespace Vesper {

// Levels run from traceLevelMin to traceLevelMax, inclusive.
constexpr int traceLevelMin = 0;
constexpr int traceLevelMax = 9;

// A named trace handle; registers itself in the process registry while it
// lives. Not copyable: the registry knows it by address.
class TraceHandle {
 public:
   explicit TraceHandle( std::string name );
   ~TraceHandle();
   TraceHandle( const TraceHandle& ) = delete;
   TraceHandle& operator=( const TraceHandle& ) = delete;

   const std::string& name() const { return name_; }
   // Cheap enough to guard the formatting of every line: one load, one bit test.
   bool enabled( int level ) const {
      return level >= traceLevelMin && level <= traceLevelMax &&
             ( effective_.load( std::memory_order_relaxed ) >> level ) & 1u;
   }
   // Switches one level of this handle. A level outside 0..9 raises RangeException.
   void levelIs( int level, bool on );
   // Writes the line if the level is enabled; `line` carries no end of line.
   void write( int level, std::string_view line ) const;

 private:
   friend class TraceRegistry;
   std::string name_;
   // Levels switched on by settings or levelIs().
   U32 own_ = 0;
   // Levels forced on by live captures that enable all levels.
   U32 forced_ = 0;
   // own_ | forced_, the only field read without the registry lock.
   std::atomic<U32> effective_{ 0 };
};

// Switches `level` on or off for every handle whose name matches
// `namePattern`, now and for handles registered later.
void traceLevelIs( std::string_view namePattern, int level, bool on );

// Applies a setting in the syntax of VESPER_TRACE: items separated by ',',
// each "pattern", "pattern/level" or "pattern/first-last"; a bare pattern
// means all levels. Raises ParseException on a malformed item, naming it,
// and applies nothing then.
void traceSettingIs( std::string_view setting );

// Where lines go that no capture takes. An empty function restores the
// default sink, which writes "name/level: line" to stderr.
using TraceSink = std::function<void( const TraceHandle&, int, std::string_view )>;
void traceSinkIs( TraceSink sink );

// True when `name` matches the glob `pattern` ('*' any text, '?' one character).
bool traceNameMatches( std::string_view pattern, std::string_view name );

// Collects the lines written to matching handles while it lives (tests).
// With enableAllLevels it turns every level on for matching handles,
// including those registered while it lives; they fall back to their own
// levels when it ends.
class TraceCapture {
 public:
   explicit TraceCapture( std::string namePattern = "*", bool enableAllLevels = true );
   ~TraceCapture();
   TraceCapture( const TraceCapture& ) = delete;
   TraceCapture& operator=( const TraceCapture& ) = delete;

   // Only the text of each line, in the order written.
   std::vector<std::string> lines() const;
   void clear();

   const std::string& namePattern() const { return namePattern_; }
   bool enablesAllLevels() const { return enableAllLevels_; }

 private:
   friend class TraceRegistry;
   std::string namePattern_;
   bool enableAllLevels_;
   std::vector<std::string> lines_;  // guarded by the registry lock
};

// The in-memory ring of recent trace lines. Bounded: once full, each new
// line pushes out the oldest, so a post-mortem shows the latest history.
class Spindle {
 public:
   static Spindle& instance();
   void write( std::string_view line );
   // Oldest first.
   std::vector<std::string> lines() const;
   void clear();
   size_t capacity() const;

 private:
   Spindle();
   struct Impl;
   Impl* impl_;  // never freed: the ring outlives every writer
};

// Test access to the registry's one-time start-up work.
struct TraceTestAccess {
   // Reads VESPER_TRACE again and applies it as at first use.
   static void applyEnvironment();
};

}  // namespace Vesper

namespace Halyard {
// The field-processor command handle imported from the agent.
extern Vesper::TraceHandle& bcmFpCmd;
}  // namespace Halyard

// Declares the trace handle of one source file; use once, at namespace scope.
#define VESPER_TRACE_HANDLE( nameLiteral )                     \
   namespace {                                                 \
   [[maybe_unused]] ::Vesper::TraceHandle& vesperFileTrace() { \
      static ::Vesper::TraceHandle handle( nameLiteral );      \
      return handle;                                           \
   }                                                           \
   }

// Writes one line on the file's handle; the stream expression is evaluated
// only when the level is enabled.
#define VTRACE( level, streamExpr )                                  \
   do {                                                              \
      if ( vesperFileTrace().enabled( level ) ) {                    \
         std::ostringstream vesperTraceStream_;                      \
         vesperTraceStream_ << streamExpr;                           \
         vesperFileTrace().write( level, vesperTraceStream_.str() ); \
      }                                                              \
   } while ( 0 )
