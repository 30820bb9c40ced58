// From the operator's packet (Fennel::Packet, interface names) to what the simulated switch
// takes: its own packet, injected by interface names through Sim::SimSwitch::inject.
#pragma once

#include <string>
#include <vector>

#include "fennel/Packet.h"
#include "sim/chip/Packet.h"
#include "sim/switch/SimSwitch.h"

namespace HalyardCli {

struct SimInjection {
   std::string ingress;  // interface name
   Sim::Packet packet;
   std::string egress;  // empty: forwarding chose no destination (ingress lookup only)
};

// The chip's packet for `packet`: the same headers and payload; a VLAN becomes an 802.1Q tag, a
// later fragment gets a fragment offset of 185 eight-byte units (a second 1500-byte fragment).
Sim::Packet toSimPacket( const Fennel::Packet& packet );

// REQUIRES: packet.in is not the null interface.
SimInjection toSimInjection( const Fennel::Packet& packet );

// Pushes the packet through the switch. Unknown interfaces raise what inject raises.
Sim::SwitchVerdict inject( Sim::SimSwitch& simSwitch, const Fennel::Packet& packet );

// The bytes of the packet on the wire, as a capture would hold them.
std::vector<U8> frameBytes( const Fennel::Packet& packet );

}  // namespace HalyardCli
