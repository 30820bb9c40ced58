// Sim::CallRecorder: records the calls that the back-end makes into the hardware (every call
// through Shim::sdk_ and every call into the TCAM managers) in a CallLog, so that they can be
// replayed on a fresh identical switch: the replay's time is the floor of the back-end's work,
// the cost of the hardware calls alone.
//
// Recording is a pair of decorators, put in only where wanted, so that a switch without them
// pays nothing:
//   - sdkOver( sdk ): an SDK that forwards to `sdk`; install it over the switch's own with
//     Shim::SdkInstall for the stretch to record;
//   - groupManagerOver( gm ): a group manager, with its entry managers, that forwards to `gm`'s;
//     hand it to the back-end in place of `gm` when the back-end is wired (the back-end keeps
//     the managers it is given at bring-up).
// The decorators record while recording() holds and only forward otherwise, so that bring-up
// can run through them unrecorded.
//
// What the group manager decorator keeps in step with the one it decorates: tcamManagerForEntry
// (naming its own entry managers, so that calls reached through it are recorded), the exhausted
// records of every manager and rangeCheckersExhausted (with their notifications), and, copied
// once, modChipInfo, the mirroring groups and the key width mode. The records the back-end
// writes on it (mirroring group types, sharing support) stay its own: no manager reads them.
// The look-ups of entry managers (entryManager, unboundedEntryManager) are not recorded: the
// back-end makes them at bring-up, and a replay finds its managers itself (replayTargetOf).
//
// Contract: the recorder outlives its decorators, and the decorated objects outlive them.
// Threads: one thread, like the calls recorded.
#pragma once

#include <memory>

#include "platform/shim/Sdk.h"
#include "platform/tcam/HalyardTcamGroupManager.h"
#include "sim/record/CallLog.h"

namespace Sim {

class CallRecorder {
 public:
   CallRecorder() = default;
   CallRecorder( const CallRecorder& ) = delete;
   CallRecorder& operator=( const CallRecorder& ) = delete;

   bool recording() const { return recording_; }
   void recordingIs( bool recording ) { recording_ = recording; }
   CallLog& log() { return log_; }
   const CallLog& log() const { return log_; }

   std::unique_ptr<Shim::Sdk> sdkOver( Shim::Sdk& inner );
   Halyard::HalyardTcamGroupManager::Ptr groupManagerOver(
       const Halyard::HalyardTcamGroupManager::Ptr& inner );

 private:
   bool recording_ = false;
   CallLog log_;
};

}  // namespace Sim
