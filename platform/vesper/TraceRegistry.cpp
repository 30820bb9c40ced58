#include "platform/vesper/TraceRegistry.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "platform/vesper/Exception.h"

namespace Vesper {

namespace {

void writeToStderr( const TraceHandle& handle, int level, std::string_view line ) {
   std::cerr << handle.name() << '/' << level << ": " << line << '\n';
}

}  // namespace

U32 traceLevelMask( int first, int last ) {
   U32 mask = 0;
   for ( int level = first; level <= last; ++level ) {
      mask |= 1u << level;
   }
   return mask;
}

TraceRegistry::TraceRegistry() : sink_( std::make_shared<TraceSink>( writeToStderr ) ) {}

TraceRegistry& TraceRegistry::instance() {
   static TraceRegistry* const registry = new TraceRegistry;
   // The environment is read once the registry stands, not in its constructor: applying a
   // setting comes back here through instance(), which inside the static's initialisation
   // would be a recursive initialisation. The flag is set first for the same reason.
   static std::atomic<bool> environmentRead{ false };
   if ( !environmentRead.exchange( true ) ) {
      registry->applyEnvironment();
   }
   return *registry;
}

void TraceRegistry::applyEnvironment() {
   const char* setting = std::getenv( "VESPER_TRACE" );
   if ( !setting ) {
      return;
   }
   // Nobody could catch an exception of the start-up read: say what was
   // wrong and go on without the setting.
   try {
      traceSettingIs( setting );
   } catch ( const ParseException& e ) {
      std::cerr << "VESPER_TRACE: " << e.what() << '\n';
   }
}

void TraceRegistry::apply( TraceHandle& handle, const Setting& setting ) {
   if ( traceNameMatches( setting.namePattern, handle.name_ ) ) {
      handle.own_ = setting.on ? handle.own_ | setting.levelMask : handle.own_ & ~setting.levelMask;
   }
}

void TraceRegistry::refresh( TraceHandle& handle ) {
   handle.forced_ = 0;
   for ( const TraceCapture* capture : captures_ ) {
      if ( capture->enableAllLevels_ && traceNameMatches( capture->namePattern_, handle.name_ ) ) {
         handle.forced_ = traceLevelMask( traceLevelMin, traceLevelMax );
      }
   }
   handle.effective_.store( handle.own_ | handle.forced_, std::memory_order_relaxed );
}

void TraceRegistry::handleIs( TraceHandle& handle ) {
   std::lock_guard guard( mutex_ );
   handles_.push_back( &handle );
   for ( const Setting& setting : settings_ ) {
      apply( handle, setting );
   }
   refresh( handle );
}

void TraceRegistry::handleDel( TraceHandle& handle ) {
   std::lock_guard guard( mutex_ );
   std::erase( handles_, &handle );
}

void TraceRegistry::handleLevelIs( TraceHandle& handle, U32 levelMask, bool on ) {
   std::lock_guard guard( mutex_ );
   handle.own_ = on ? handle.own_ | levelMask : handle.own_ & ~levelMask;
   refresh( handle );
}

void TraceRegistry::levelIs( std::string_view namePattern, U32 levelMask, bool on ) {
   std::lock_guard guard( mutex_ );
   settings_.push_back( Setting{ std::string( namePattern ), levelMask, on } );
   for ( TraceHandle* handle : handles_ ) {
      apply( *handle, settings_.back() );
      refresh( *handle );
   }
}

void TraceRegistry::write( const TraceHandle& handle, int level, std::string_view line ) {
   std::shared_ptr<const TraceSink> sink;
   {
      std::lock_guard guard( mutex_ );
      bool captured = false;
      for ( TraceCapture* capture : captures_ ) {
         if ( traceNameMatches( capture->namePattern_, handle.name_ ) ) {
            capture->lines_.emplace_back( line );
            captured = true;
         }
      }
      if ( captured ) {
         return;
      }
      sink = sink_;
   }
   // Outside the lock, so that a sink may itself trace or change settings.
   ( *sink )( handle, level, line );
}

void TraceRegistry::captureIs( TraceCapture& capture ) {
   std::lock_guard guard( mutex_ );
   captures_.push_back( &capture );
   for ( TraceHandle* handle : handles_ ) {
      refresh( *handle );
   }
}

void TraceRegistry::captureDel( TraceCapture& capture ) {
   std::lock_guard guard( mutex_ );
   std::erase( captures_, &capture );
   for ( TraceHandle* handle : handles_ ) {
      refresh( *handle );
   }
}

std::vector<std::string> TraceRegistry::captureLines( const TraceCapture& capture ) {
   std::lock_guard guard( mutex_ );
   return capture.lines_;
}

void TraceRegistry::captureClear( TraceCapture& capture ) {
   std::lock_guard guard( mutex_ );
   capture.lines_.clear();
}

void TraceRegistry::sinkIs( TraceSink sink ) {
   auto next = std::make_shared<TraceSink>( sink ? std::move( sink ) : TraceSink( writeToStderr ) );
   std::lock_guard guard( mutex_ );
   sink_ = std::move( next );
}

}  // namespace Vesper
