// The switch that the library benchmarks (LibraryBench*.cpp) run on, and the rule sets they
// program into it.
//
// LibrarySwitch wires the back-end on a simulated switch as the tool's agent does (SimAgent),
// with the generic layer's machine driving it, and brings it up through the back-end
// (hwInit: the management entries stand in VFP, IFP and EFP). It has one unit of a
// Tomahawk-class kind whose IFP is grown to hold the largest rule set at the wide key, so that
// the sizes of a scaling run all fit one unit, and eight front-panel ports, Ethernet1 to
// Ethernet8 on ports 1 to 8.
//
// Contract:
//   1. The configuration records parsed from the text are the ones the machine reads: change
//      bindings through intfConfig(), then runPass().
//   2. REQUIRES: one LibrarySwitch at a time (the simulated switch installs process-wide
//      records); the caller holds nothing (the switch holds the activity lock for its life).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "cli/config/ConfigText.h"
#include "fennel/GenericAclSm.h"
#include "platform/fennel/AclKey.h"
#include "sim/chip/ClassBench.h"
#include "sim/switch/SimSwitch.h"

namespace HalyardBench {

// Where the ClassBench sets are (../shared/data/classbench from the source tree).
std::string classBenchPath( const std::string& name );

// The set `name`, read once and kept for the process.
const std::vector<Sim::ClassBench::Rule>& classBenchRules( const std::string& name );

// The name of the list that the texts below configure, bound in on Ethernet1.
inline constexpr const char* kListName = "cb";

// The first `count` rules of `rules` as the list "cb" bound in on Ethernet1: rule i gets
// sequence number 10 (i + 1) and denies when i is a multiple of three, permits otherwise.
// With `portRanges` a port range is written as it stands (a range term, or blocks where no
// checker serves it); without, only single ports are kept (eq), so that each rule is one
// entry and a permit with ports one more for its later fragments.
std::string classBenchConfig( const std::vector<Sim::ClassBench::Rule>& rules, std::size_t count,
                              bool portRanges );

// Rules of acl1_10k without port ranges, as many as make about `entries` entries on a unit.
std::string entriesConfig( std::size_t entries );

// Stops the run with the reason on stderr: a benchmark that measured the wrong thing must not
// print a figure.
[[noreturn]] void fail( const std::string& why );

// The configuration text read as the tool reads it; a refusal stops the run.
HalyardCli::AclSetup parsedConfig( const std::string& text, const std::string& name );

// The one-unit switch of the scaling runs: a Tomahawk-class kind whose IFP is grown to 24 slices
// of 4,096 narrow entries (room for acl1_10k with its ranges as blocks), eight ports Ethernet1 to
// Ethernet8. Profile and the options that give unit 0 the grown kind.
Sim::SwitchProfile grownProfile();
Sim::SwitchOptions grownOptions();

// The back-end wired on a switch as the tool's agent wires it (helper, entity, the generic
// layer's machine, which must be registered), brought up, the machine marked started.
// `groupManager` is the switch's own or a decorator of it. unwire() drops them in the order
// the records need (machine, entity's machine, helper) while the switch still stands.
struct WiredBackEnd {
   Halyard::AclHelper::Ptr helper;
   Halyard::AclSmEntity::Ptr entity;
   Fennel::GenericAclSm::Ptr machine;
};
WiredBackEnd wireBackEnd( Sim::SimSwitch& sw,
                          const Halyard::HalyardTcamGroupManager::Ptr& groupManager,
                          const HalyardCli::AclSetup& setup );
void unwire( WiredBackEnd& wired );

class LibrarySwitch {
 public:
   // Parses `configText`, brings the switch up and applies the configuration (passes until
   // nothing is left to do at once). With `apply` false the configuration is not applied.
   explicit LibrarySwitch( const std::string& configText, bool apply = true );
   ~LibrarySwitch();
   LibrarySwitch( const LibrarySwitch& ) = delete;
   LibrarySwitch& operator=( const LibrarySwitch& ) = delete;

   // Passes until nothing is left that a pass can do at once.
   void settle();

   Sim::SimSwitch& simSwitch() { return *switch_; }
   Halyard::AclHelper& helper() { return *wired_.helper; }
   Fennel::GenericAclSm& machine() { return *wired_.machine; }
   Acl::IntfConfig& intfConfig() { return *setup_.intfConfig; }
   Acl::Config& config() { return *setup_.config; }

   // The key of the list "cb" as bound on Ethernet1.
   Fennel::AclKey listKey() const;
   // Entries the list holds on the unit; stops the run loudly unless it stands installed.
   U32 installedEntries() const;
   // Every entry of the list on the unit, in rule order.
   std::vector<U32> entryIds() const;

 private:
   struct Wiring;

   std::unique_ptr<Wiring> wiring_;
   HalyardCli::AclSetup setup_;
   std::unique_ptr<Sim::SimSwitch> switch_;
   WiredBackEnd wired_;
};

}  // namespace HalyardBench
