// Shared helpers of the simulated switch tests: entries programmed straight on a unit's chip
// model, as the back-end would through the SDK, in groups the switch's managers hand out.
#pragma once

#include <gtest/gtest.h>

#include "platform/tcam/TcamGroupAssignment.h"
#include "sim/chip/ChipModel.h"
#include "sim/switch/SimSwitch.h"

namespace SimSwitchTest {

// A new entry of group `a` on `unit`, with no qualifier and no action yet.
inline U32 newEntry( Sim::SimSwitch& sw, U32 unit,
                     Halyard::TcamGroupAssignment a = Halyard::tcamGroupIpAcl ) {
   return sw.groupManager()->unboundedEntryManager( a )->getEntry( unit, "switch test entry" );
}

// Writes the entry to the chip so that packets see it.
inline void install( Sim::SimSwitch& sw, U32 unit, U32 entry ) {
   sw.groupManager()->tcamEntryMgr( entry )->installEntry( unit, entry );
}

// An entry on `unit` that takes action `a` on packets from `port` and is installed.
inline U32 actOnPort( Sim::SimSwitch& sw, U32 unit, U32 port, Sim::ActionId a ) {
   const U32 e = newEntry( sw, unit );
   Sim::ChipModel& chip = sw.chip( unit );
   EXPECT_EQ( Sim::Status::Ok,
              chip.inPortsIs( e, Sim::PortBitmap{ port }, chip.ports().allPorts() ) );
   EXPECT_EQ( Sim::Status::Ok, chip.actionIs( e, a, 1, 0 ) );
   install( sw, unit, e );
   return e;
}

inline Sim::Packet tcpPacket( U16 dstPort = 80 ) {
   return Sim::Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.1.1" ), 1024, dstPort );
}

}  // namespace SimSwitchTest
