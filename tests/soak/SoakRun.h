// The churn soak: a seeded random sequence of configuration changes and TCAM room changes on a
// small two-unit switch, applied as the tool applies configurations (HalyardCli::AclSwitch),
// with these checks:
//   1. Every application (or every Nth, SoakOptions::probeEvery) runs inside an update-consistency
//   probe window: every port meets a
//      prefix of its old or its new rule list after every hardware call.
//   2. After every step, every ACL either stands installed on the unit of each interface it is
//      bound to, or waits for the back-end (dirty with its unit error, or pending for
//      resources): the generic layer destroys a standing ACL before it applies it again, so
//      a waiting ACL holds nothing in the hardware of the unit where it waits. No list is
//      refused: the generator makes only rules the switch can serve.
//   3. After every step, packets aimed at the rules agree with the reference evaluator of the
//      configuration less the bindings whose ACL waits on their unit, rule by rule (the hit of
//      every ACL the hardware looked the packet up in); an entry of a waiting ACL that a packet
//      still hits is a difference.
//   4. At the end, with every list removed and the room given back, every pool is back at its
//      bring-up value (SoakPools.h) and the back-end keeps no ACL record.
// The first failure stops the soak and says how to reproduce it: seed, step, the step, the
// configuration before and at the step in the tool's language, the switch profile.
#pragma once

#include <ostream>
#include <string>

#include "platform/vesper/Types.h"

namespace Soak {

struct SoakOptions {
   U32 steps = 1000;
   U32 seed = 1;
   U32 packetsPerStep = 16;
   std::ostream* progress = nullptr;  // a line every 1,000 steps
   // Fails the probe's findings of entries that go in or out of one list out of lookup order,
   // which a known back-end fault makes (SoakRun.cpp, entriesOutOfOrder); counted otherwise.
   bool strictOrder = false;
   // Opens the probe on every Nth application only. The probe walks every group at every
   // hardware call, which under the sanitizers costs about two seconds a step: the short form
   // in CI samples, the whole soak (scripts/soak.sh) probes every application.
   U32 probeEvery = 1;
};

struct SoakStats {
   U32 steps = 0;
   U32 applications = 0;   // AclSwitch::apply calls
   U32 probed = 0;         // of them, under the update probe
   U32 roomChanges = 0;    // groups shrunk or grown
   U32 waitingSteps = 0;   // steps after which some ACL waited on some unit
   U32 deferred = 0;       // room grown while an ACL waited, and a deferred update was asked
   U32 recovered = 0;      // ACLs that waited before a step and stood whole after it
   U32 expandedSteps = 0;  // steps after which some rule's ranges stood as masked blocks
   U64 packets = 0;
   U32 udfChunksLeft = 0;  // 1: a UDF chunk stayed used after teardown (known, SoakRun.cpp)
   U32 outOfOrder = 0;     // probe findings of the known install-order fault, not failed
};

struct SoakResult {
   std::string failure;  // empty when every check held
   SoakStats stats;
};

SoakResult runSoak( const SoakOptions& options );

// The switch the soak runs on, in the profile language (`halyard-acl --switch`).
const char* soakProfileText();

// One line of the stats, for logs.
std::string statsText( const SoakStats& stats );

}  // namespace Soak
