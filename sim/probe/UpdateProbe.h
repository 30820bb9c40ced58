// Sim::UpdateProbe: checks that no packet ever meets a half-updated rule list.
//
// While its window is open (begin() to end()), the probe hears of every call into the simulated
// hardware (HardwareCalls.h) and records, for every port of every unit, the entries a packet
// there would meet in each group: the installed, enabled entries whose port scope admits the
// port, in lookup order. The port scope of an entry is its InPorts bitmap (VFP, IFP), its port
// class qualifier against the port's field class (ingress class in VFP and IFP, egress class in
// EFP) and its OutPort (EFP); for EFP, "a packet there" is one leaving by the port.
//
// When the window closes, every list seen in between must be a prefix of the list before the
// window (old) or of the list after it (new). A list that is a prefix of neither is a packet
// meeting rules that the old list would not have shown it in that order and that the new one
// will not either: a later rule without an earlier one, or old and new rules mixed.
//
// Hardware face: lookup sees an entry as it stood at its last install, while the chip's reads
// answer what was written since. The probe reads an entry's scope when it stands installed and
// unchanged since (not pending), keeps it, and uses the kept scope while later writes wait for
// the next install. An entry already pending when the window opens is taken as written.
//
// Cost: one walk of every group's entries at every call in the window, and memory for each
// change of a group's list: meant for the small switches of tests, not for whole TCAMs.
//
// Contract:
//   1. One probe observes at a time (HardwareCalls.h); begin() while another observes raises
//      Vesper::RangeException.
//   2. The switch outlives the probe. Destroying a probe with an open window stops observing.
#pragma once

#include <compare>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/chip/ChipModel.h"
#include "sim/probe/HardwareCalls.h"
#include "sim/switch/SimSwitch.h"

namespace Sim {

class UpdateProbe final : public HardwareCallObserver {
 public:
   explicit UpdateProbe( const SimSwitch& sw ) : switch_( sw ) {}
   ~UpdateProbe() override;
   UpdateProbe( const UpdateProbe& ) = delete;
   UpdateProbe& operator=( const UpdateProbe& ) = delete;

   // Opens the window: what stands now is the old list of every port.
   void begin();
   // Closes the window: what stands now is the new list. Answers one line per list seen that
   // is a prefix of neither (at most `maxFindings`); empty when the update held.
   std::vector<std::string> end( std::size_t maxFindings = 8 );
   bool open() const { return open_; }

   // Of the last window: calls heard, and states of the hardware that differed from the one
   // before (the old and new states not counted).
   U64 callsSeen() const { return calls_; }
   U64 statesSeen() const { return states_.size(); }
   // Whether the last window changed what any port meets.
   bool changed() const { return old_ != new_; }

   void beforeHardwareCall( std::string_view call ) override;

 private:
   struct GroupKey {
      U32 unit = 0;
      GroupId group = 0;
      auto operator<=>( const GroupKey& ) const = default;
   };
   struct Visible {
      EntryId id = 0;
      PortBitmap ports;
      friend bool operator==( const Visible&, const Visible& ) = default;
   };
   using GroupLists = std::map<GroupKey, std::vector<Visible> >;
   // One state of the hardware: the groups whose lists changed from the state before.
   struct State {
      std::string after;  // the call that made it
      U64 call = 0;
      GroupLists changed;
   };
   struct Scope {
      std::optional<InPortsValue> inPorts;
      std::optional<QualValue> portClass;
      std::optional<QualValue> outPort;
   };

   GroupLists snapshot();
   void groupSnapshot( U32 unit, const ChipModel& chip, GroupId group, GroupLists& out );
   const Scope& hardwareScope( U32 unit, const ChipModel& chip, EntryId id );
   void record( std::string_view after );
   void check( const State& s, std::size_t maxFindings, std::vector<std::string>& out ) const;

   const SimSwitch& switch_;
   bool open_ = false;
   bool inside_ = false;  // guards against a call heard while the probe reads
   U64 calls_ = 0;
   std::string lastCall_ = "begin";
   GroupLists old_;
   GroupLists current_;
   GroupLists new_;
   std::vector<State> states_;
   std::map<std::pair<U32, EntryId>, Scope> hardware_;
};

}  // namespace Sim
