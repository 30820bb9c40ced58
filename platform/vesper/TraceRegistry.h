// The process registry behind trace handles (internal to the runtime).
//
// It keeps the live handles, the level settings in the order they were made,
// the live captures and the sink. Every member is guarded by one mutex; a
// handle's effective level mask is the only trace state read without it.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/vesper/Trace.h"

namespace Vesper {

class TraceRegistry {
 public:
   // Built on first use, when VESPER_TRACE is read; never destroyed, so
   // handles of any library can still deregister during exit.
   static TraceRegistry& instance();

   void handleIs( TraceHandle& handle );
   void handleDel( TraceHandle& handle );
   void handleLevelIs( TraceHandle& handle, U32 levelMask, bool on );
   void levelIs( std::string_view namePattern, U32 levelMask, bool on );
   void write( const TraceHandle& handle, int level, std::string_view line );

   void captureIs( TraceCapture& capture );
   void captureDel( TraceCapture& capture );
   std::vector<std::string> captureLines( const TraceCapture& capture );
   void captureClear( TraceCapture& capture );

   void sinkIs( TraceSink sink );
   void applyEnvironment();

 private:
   TraceRegistry();
   struct Setting {
      std::string namePattern;
      U32 levelMask;
      bool on;
   };
   static void apply( TraceHandle& handle, const Setting& setting );
   // Recomputes the levels forced on by captures and publishes the effective mask.
   void refresh( TraceHandle& handle );

   std::mutex mutex_;
   std::vector<TraceHandle*> handles_;
   std::vector<Setting> settings_;
   std::vector<TraceCapture*> captures_;
   std::shared_ptr<const TraceSink> sink_;
};

// Bit mask of all levels from first to last, inclusive.
U32 traceLevelMask( int first, int last );

}  // namespace Vesper
