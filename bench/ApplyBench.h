// The switch that the apply benchmarks (ApplyBench*.cpp) program, and the floor they measure
// it against.
//
// ApplySwitch wires the back-end on a fresh simulated switch as the tool's agent does
// (SimAgent), with the generic layer's machine driving it, and brings it up through the
// back-end. Its configuration records are the workload's own, parsed once: a fresh switch per
// run reads the same records, so that a run times the generic layer, the back-end and the
// simulated hardware, and neither parsing nor copying the configuration. apply() runs the
// passes of one configuration change as the tool does (AclSwitch::apply): until no port range
// waits to go in as blocks.
//
// With a CallRecorder, the back-end is wired through the recorder's manager decorator and
// apply() installs its SDK decorator and records; the log then replays on another fresh
// ApplySwitch (replayOn), which times the hardware calls alone.
//
// REQUIRES: one ApplySwitch at a time (the simulated switch installs process-wide records).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "bench/LibraryBench.h"
#include "cli/config/ConfigText.h"
#include "fennel/GenericAclSm.h"
#include "platform/fennel/AclKey.h"
#include "sim/record/CallRecorder.h"
#include "sim/switch/SimSwitch.h"

namespace HalyardBench {

// What an apply benchmark programs: a configuration on a switch.
struct ApplyWorkload {
   HalyardCli::AclSetup setup;
   std::size_t rules = 0;   // configured rules of the list
   std::vector<U32> units;  // the units the list must stand installed on
   Sim::SwitchProfile profile;
   Sim::SwitchOptions options;
};

// A ClassBench set whole as the list "cb", bound in on Ethernet1 (unit 0) and Ethernet25
// (unit 1) of the default switch, as the tool's ClassBench tests bind it; port ranges as
// written.
ApplyWorkload classBenchWorkload( const std::string& set );
// The first `count` rules of acl1_10k (all of its 9,761 at most) with their single ports and
// without their port ranges, bound in on Ethernet1 of a one-unit switch whose IFP holds them.
ApplyWorkload scalingWorkload( std::size_t count );

class ApplySwitch {
 public:
   ApplySwitch( const ApplyWorkload& workload, Sim::CallRecorder* recorder = nullptr );
   ~ApplySwitch();
   ApplySwitch( const ApplySwitch& ) = delete;
   ApplySwitch& operator=( const ApplySwitch& ) = delete;

   // The passes of the configuration change. Recorded when the switch has a recorder.
   void apply();
   // Stops the run loudly unless the list stands installed on every unit of the workload.
   void checkInstalled() const;
   // Where the calls of `log` go on this switch: its SDK and managers.
   Sim::ReplayTarget replayTarget( const Sim::CallLog& log );

   Sim::SimSwitch& simSwitch() { return *switch_; }

 private:
   struct Wiring;

   const ApplyWorkload& workload_;
   Sim::CallRecorder* recorder_;
   std::unique_ptr<Wiring> wiring_;
   std::unique_ptr<Sim::SimSwitch> switch_;
   WiredBackEnd wired_;
};

}  // namespace HalyardBench
