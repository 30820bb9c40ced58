// Sim::CallLog: the hardware calls of a stretch of the back-end's work, as a flat byte stream,
// and their replay on another switch.
//
// Each call is one record in the stream: the function that replays it (a pre-bound call, so
// that replay does no lookup by name or by map), the manager it went to where it went to an
// entry manager (an index into managers()), its arguments as the call got them, and its
// answer. Texts (entry descriptions) and lists (UDF qualifier ids) sit in side pools, indexed
// from the stream. Records are written by the decorators of CallRecorder.h.
//
// Invariants:
//   1. Calls are in the order they were made; a call made while another was running (a
//      notification that called back into the managers) follows the call it was made in.
//   2. A pointer or reference argument is kept as the value it pointed at when the call was
//      made: an input, or what an output held before, which the replay overwrites alike.
//   3. Replay runs every call on the target with the recorded arguments and compares every
//      answer that can be compared (codes, entry ids, counts, range checker ids, UDF ids, class
//      allocations) with the recorded one. The first difference stops the process with a
//      line naming the call: the target was not the identical switch the calls were made on.
//
// Threads: one thread, like the calls it records.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "platform/halyard/QualIdList.h"
#include "platform/shim/Sdk.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/String.h"
#include "platform/vesper/Types.h"

namespace Sim {

// The entry managers that calls of a log went to, by group assignment.
struct RecordedManager {
   Halyard::TcamGroupAssignment assignment{};
   bool bounded = false;
};

// Where a replay sends its calls: a switch's SDK, its group manager, and its entry managers in
// the order of the log's managers(). Build it with replayTargetOf before the replay is timed.
struct ReplayTarget {
   Shim::Sdk* sdk = nullptr;
   Halyard::HalyardTcamGroupManager* groupManager = nullptr;
   std::vector<Halyard::HalyardTcamEntryManager*> managers;
};

class CallLog;

// The target of `log`'s calls on a switch. A manager of the log that the group manager does not
// have stops the process.
ReplayTarget replayTargetOf( const CallLog& log, Shim::Sdk& sdk,
                             Halyard::HalyardTcamGroupManager& groupManager );

// The cursor of a replay: reads the stream in order and reaches the target.
class CallReader {
 public:
   CallReader( const CallLog& log, const ReplayTarget& target );

   template <class T>
   T read() {
      T value;
      std::memcpy( &value, at_, sizeof value );
      at_ += sizeof value;
      return value;
   }
   void readInto( void* out, std::size_t n ) {
      std::memcpy( out, at_, n );
      at_ += n;
   }
   // The next `n` bytes of the stream, in place.
   const U8* take( std::size_t n ) {
      const U8* start = at_;
      at_ += n;
      return start;
   }
   bool done() const { return at_ == end_; }
   const CallLog& log() const { return log_; }
   const ReplayTarget& target() const { return target_; }
   void next() { ++index_; }

   // Stops the process: call number index (from 0) answered otherwise than it did when it was
   // recorded. `call` names the call.
   [[noreturn]] void diverged( const char* call, const std::string& recorded,
                               const std::string& answered ) const;

 private:
   const CallLog& log_;
   const ReplayTarget& target_;
   const U8* at_;
   const U8* end_;
   U64 index_ = 0;
};

using ReplayFn = void ( * )( CallReader& );

class CallLog {
 public:
   std::size_t calls() const { return calls_; }
   std::size_t bytes() const { return bytes_.size(); }
   const std::vector<RecordedManager>& managers() const { return managers_; }
   void clear();

   // Runs every call on the target, in order (invariant 3), with the activity lock given up
   // for the whole run where the caller holds it.
   void replay( const ReplayTarget& target ) const;

   // ---- Writing, for the recording decorators.
   void put( const void* data, std::size_t n ) {
      const std::size_t at = bytes_.size();
      bytes_.resize( at + n );
      std::memcpy( bytes_.data() + at, data, n );
   }
   template <class T>
   void put( const T& value ) {
      put( &value, sizeof value );
   }
   // Room for `n` bytes written later with putAt (an answer, known after the call).
   std::size_t reserve( std::size_t n ) {
      const std::size_t at = bytes_.size();
      bytes_.resize( at + n );
      return at;
   }
   void putAt( std::size_t at, const void* data, std::size_t n ) {
      std::memcpy( bytes_.data() + at, data, n );
   }
   void callDone() { ++calls_; }
   U32 stringIs( const Vesper::String& text );
   const Vesper::String& string( U32 index ) const { return strings_[index]; }
   U32 qualIdListIs( const Halyard::QualIdList& ids );
   const Halyard::QualIdList& qualIdList( U32 index ) const { return qualIdLists_[index]; }
   // The index of the manager of the group, added at its first call.
   U16 managerIndex( Halyard::TcamGroupAssignment assignment, bool bounded );

 private:
   friend class CallReader;

   std::vector<U8> bytes_;
   std::vector<Vesper::String> strings_;
   std::vector<Halyard::QualIdList> qualIdLists_;
   std::vector<RecordedManager> managers_;
   std::size_t calls_ = 0;
};

}  // namespace Sim
