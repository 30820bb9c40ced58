// Sim::SwitchProfile: what a simulated switch is made of. Its units (a chip kind of the
// catalog, a module id, a port count), its interfaces (front-panel ports "EthernetN" on a unit's
// port, port-channels, VLAN interfaces, sub-interfaces), the names the agent's shared data
// carries, and the switch's flags. The text form is in ProfileText.h and sim/switch/README.md.
//
// A profile is built member by member, and every adder checks the member against what stands,
// so that a profile is valid at every step:
//   1. Unit numbers, module ids (0 to 254) and chip names are unique; the kind is in the
//      catalog; the port count (CPU port 0 included) is at most the kind's.
//   2. Each unit's last ports link it to the other units (its HiGig ports where the kind has
//      them, else its last port); front-panel ports are 1 .. the port before the first link
//      port (unitPortLayout). A front-panel port maps to one such port, and each port at most
//      once.
//   3. Interfaces are defined before they are used: port-channel members are front-panel
//      ports, each in at most one port-channel; VLAN members are front-panel ports or
//      port-channels; a sub-interface's parent is a front-panel port or a port-channel.
//   4. VLANs are 1 to 4094. A sub-interface names its own VLAN (its 802.1Q tag).
//   5. A unit shrinks its kind, never grows it: at most the kind's slices per stage (at least
//      one, and two in IFP, where the management and port-blocking entries take one each),
//      range checkers and UDF chunks.
// A broken rule throws ProfileError and leaves the profile as it was. What no adder can check
// (at least one unit) is checked by checkComplete().
//
// A profile is a value: copied and compared member by member.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/halyard/HalyardPort.h"
#include "platform/pylon/IntfId.h"
#include "platform/vesper/Exception.h"
#include "platform/vesper/Types.h"
#include "sim/chip/ChipTypes.h"

namespace Sim {

struct ChipKind;

// A rule of the profile broken. From the text form it names the file and the line (1-based);
// from code both are empty. what() is "file:line: message", or the message alone.
class ProfileError : public Vesper::ParseException {
 public:
   explicit ProfileError( std::string message, std::string file = {}, U32 line = 0 );

   const std::string& message() const { return message_; }
   const std::string& file() const { return file_; }
   U32 line() const { return line_; }

 private:
   std::string message_;
   std::string file_;
   U32 line_;
};

struct UnitDef {
   U32 unit = 0;
   std::string kind;      // a name of the chip catalog: "trident3"
   U16 module = 0;        // module id, 0 to 254
   U32 portCount = 0;     // ports of the chip, CPU port 0 included; 0: the kind's own count
   std::string chipName;  // as operators see it; empty: "chip<unit>"
   // A unit smaller than its kind, to ask whether an ACL fits a smaller chip: the first
   // slices[stage] slices of a stage (by Stage), fewer range checkers, fewer UDF chunks.
   // nullopt: the kind's own.
   std::array<std::optional<U32>, kStageCount> slices{};
   std::optional<U32> rangeCheckers{};
   std::optional<U32> udfChunks{};

   friend bool operator==( const UnitDef&, const UnitDef& ) = default;
};

// Which ports of a unit do what.
struct UnitPortLayout {
   U32 portCount = 0;
   U32 firstFrontPanel = 1;
   U32 lastFrontPanel = 0;
   std::vector<U32> linkPorts;  // ascending; the first carries traffic to the other units
};

// REQUIRES: `def` was accepted by SwitchProfile::unitIs (its kind and count are final).
UnitPortLayout unitPortLayout( const UnitDef& def );

struct SwitchFlags {
   bool fabric = false;               // the units' link ports are fabric ports (a modular system)
   bool vlanBlocking = false;         // VLAN blocks go to the per-chip VLAN topology agents
   bool vlanBlockBypass = false;      // ... unless this is set
   bool egressFilterPerPort = false;  // bring-up turns the egress filter on per fabric port

   friend bool operator==( const SwitchFlags&, const SwitchFlags& ) = default;
};

class SwitchProfile {
 public:
   using HalyardPort = HalyardTypes::HalyardPort;

   const std::string& name() const { return name_; }
   void nameIs( std::string name );
   // The line card whose epoch decides ACL support for VLANs and port-channels, and the epoch
   // name that bring-up and blocking ask about.
   const std::string& linecardName() const { return linecardName_; }
   void linecardNameIs( std::string name );
   const std::string& epochName() const { return epochName_; }
   void epochNameIs( std::string name );

   const SwitchFlags& flags() const { return flags_; }
   void flagsIs( const SwitchFlags& flags ) { flags_ = flags; }

   // Units, by unit number. unitIs fills in the default port count and chip name.
   const std::map<U32, UnitDef>& units() const { return units_; }
   const UnitDef* unit( U32 unit ) const;
   void unitIs( UnitDef def );

   // Front-panel ports: EthernetN -> (unit, port).
   const std::map<U32, HalyardPort>& ethernet() const { return ethernet_; }
   void ethernetIs( U32 number, U32 unit, U32 port );

   // Port-channels and their members, in the order given; the first member is the port by
   // which the agent's maps know the port-channel.
   const std::map<U32, std::vector<Pylon::IntfId> >& portChannels() const { return portChannels_; }
   void portChannelIs( U32 number, const std::vector<Pylon::IntfId>& members );

   // VLAN interfaces and their member ports or port-channels, in the order given.
   const std::map<U16, std::vector<Pylon::IntfId> >& vlans() const { return vlans_; }
   void vlanIntfIs( U32 vlan, const std::vector<Pylon::IntfId>& members );

   // Sub-interfaces and their VLANs.
   const std::map<Pylon::IntfId, U16>& subIntfs() const { return subIntfs_; }
   void subIntfIs( Pylon::IntfId intf, U32 vlan );

   // Whether `intf` is an interface of the profile, of any kind.
   bool intfHas( Pylon::IntfId intf ) const;

   // Throws ProfileError unless the profile is fit to build a switch from.
   void checkComplete() const;

   friend bool operator==( const SwitchProfile&, const SwitchProfile& ) = default;

 private:
   void memberCheck( Pylon::IntfId member, bool portChannelAllowed ) const;
   std::optional<U32> portChannelOf( Pylon::IntfId member ) const;

   std::string name_;
   std::string linecardName_ = "Linecard1";
   std::string epochName_ = "Epoch1";
   SwitchFlags flags_;
   std::map<U32, UnitDef> units_;
   std::map<U32, HalyardPort> ethernet_;
   std::map<U32, std::vector<Pylon::IntfId> > portChannels_;
   std::map<U16, std::vector<Pylon::IntfId> > vlans_;
   std::map<Pylon::IntfId, U16> subIntfs_;
};

// The switch that serves when no profile is given: two units of different kinds (Trident3-class
// and Tomahawk-class), 48 front-panel ports, a port-channel, two VLAN interfaces and a
// sub-interface, with VLAN blocking through the per-chip agents. examples/switches/default.switch
// is its text form.
const SwitchProfile& defaultProfile();

}  // namespace Sim
