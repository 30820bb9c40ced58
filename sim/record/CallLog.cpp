#include "sim/record/CallLog.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/vesper/ActivityLock.h"

namespace Sim {

CallReader::CallReader( const CallLog& log, const ReplayTarget& target )
    : log_( log ),
      target_( target ),
      at_( log.bytes_.data() ),
      end_( log.bytes_.data() + log.bytes_.size() ) {}

void CallReader::diverged( const char* call, const std::string& recorded,
                           const std::string& answered ) const {
   std::fprintf( stderr,
                 "call replay: call %llu of %zu answered %s where the recording had %s; the "
                 "switch is not the one the calls were recorded on (%s)\n",
                 static_cast<unsigned long long>( index_ ), log_.calls(), answered.c_str(),
                 recorded.c_str(), call );
   std::abort();
}

void CallLog::clear() {
   bytes_.clear();
   strings_.clear();
   qualIdLists_.clear();
   calls_ = 0;
}

void CallLog::replay( const ReplayTarget& target ) const {
   // The back-end gives the activity lock up around each SDK call; the replay gives it up
   // once for all of them, so that the simulated SDK's probe finds no call made under it.
   std::optional<Vesper::UnlockAnchor> unlocked;
   if ( Vesper::ActivityUnlockAnchor::lock().held() ) {
      unlocked.emplace( Vesper::ActivityUnlockAnchor::lock() );
   }
   CallReader in( *this, target );
   while ( !in.done() ) {
      const ReplayFn fn = in.read<ReplayFn>();
      fn( in );
      in.next();
   }
}

U32 CallLog::stringIs( const Vesper::String& text ) {
   strings_.push_back( text );
   return static_cast<U32>( strings_.size() - 1 );
}

U32 CallLog::qualIdListIs( const Halyard::QualIdList& ids ) {
   qualIdLists_.push_back( ids );
   return static_cast<U32>( qualIdLists_.size() - 1 );
}

U16 CallLog::managerIndex( Halyard::TcamGroupAssignment assignment, bool bounded ) {
   for ( std::size_t i = 0; i < managers_.size(); ++i ) {
      if ( managers_[i].assignment == assignment ) {
         return static_cast<U16>( i );
      }
   }
   managers_.push_back( { assignment, bounded } );
   return static_cast<U16>( managers_.size() - 1 );
}

ReplayTarget replayTargetOf( const CallLog& log, Shim::Sdk& sdk,
                             Halyard::HalyardTcamGroupManager& groupManager ) {
   ReplayTarget target;
   target.sdk = &sdk;
   target.groupManager = &groupManager;
   for ( const RecordedManager& m : log.managers() ) {
      Halyard::HalyardTcamEntryManager* manager =
          m.bounded ? static_cast<Halyard::HalyardTcamEntryManager*>(
                          groupManager.entryManager( m.assignment ).ptr() )
                    : groupManager.unboundedEntryManager( m.assignment ).ptr();
      if ( !manager ) {
         std::fprintf( stderr, "call replay: the switch has no manager of group %u\n",
                       static_cast<unsigned>( m.assignment ) );
         std::abort();
      }
      target.managers.push_back( manager );
   }
   return target;
}

}  // namespace Sim
