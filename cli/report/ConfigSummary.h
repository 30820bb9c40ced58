// A few lines on a configuration as read: each list with its rules and where it is bound.
#pragma once

#include <ostream>
#include <vector>

#include "cli/config/ConfigText.h"
#include "fennel/Packet.h"

namespace HalyardCli {

//   ip access-list web            12 rules  in: Ethernet1 Ethernet25
void writeConfigSummary( const AclSetup& setup, std::ostream& out );
//   36 packets: 14 IPv4, 12 IPv6, 10 other
void writePacketSummary( const std::vector<Fennel::Packet>& packets, std::ostream& out );

}  // namespace HalyardCli
