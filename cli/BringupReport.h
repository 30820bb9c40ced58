// The bring-up report: what stands in each chip after the back-end's hwInit, read back from
// the simulated chips and managers rather than from the back-end's own records, so that the
// report shows what the hardware would do.
#pragma once

#include <iosfwd>

namespace HalyardCli {

class SimAgent;

// Writes, per unit: the chip, the management and port-blocking entries (named by their
// purpose, with qualifiers and actions as the chip holds them, and whether each is
// installed), the free interface classes, and the TCAM groups with their use; and once for
// the switch the capability flags the back-end published.
void writeBringupReport( SimAgent& agent, std::ostream& os );

}  // namespace HalyardCli
