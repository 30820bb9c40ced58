// Shared fixture of the lookup tests: the default simulated switch, driven on the road the
// back-end takes. Entries come only from the switch's TCAM managers; qualifiers and actions go
// through Shim::sdk_ in the checked form; install, enable, remove and priority go through the
// managers; packets go through SimSwitch::inject, or straight into a unit's chip where a test
// needs ports that inject does not give (several destinations, a given ingress port).
//
// Unit 0 of the default switch is a trident3 whose port p is Ethernet<p> (1 to 24); unit 1 a
// tomahawk whose port p is Ethernet<24 + p>. The activity lock is held for the test's life, as
// on the activity thread, so that the SDK forms can give it up round each call.
//
// Include this before platform/shim/SdkNames.h.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "platform/shim/BcmTypes.h"
#include "platform/shim/SdkCall.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/switch/SimSwitch.h"

namespace Sim {
inline void PrintTo( const SwitchVerdict& v, std::ostream* os ) {
   *os << v.text();
}
}  // namespace Sim

namespace SimLookupTest {

using namespace Sim;
using Halyard::tcamGroupAclMgmt;
using Halyard::TcamGroupAssignment;
using Halyard::tcamGroupIpAcl;
using Halyard::tcamGroupIpAclEgress;
using Halyard::tcamGroupIpAclVfp;
using Halyard::tcamGroupMacAcl;

inline constexpr U32 kUnit = 0;

class LookupTest : public ::testing::Test {
 protected:
   void TearDown() override;

   // A new entry of group `a` on `unit`, standing at the group's priority; fails the test
   // when the manager has none.
   U32 acquire( TcamGroupAssignment a, U32 unit = kUnit );
   Halyard::HalyardTcamEntryManager& manager( U32 entry ) const;
   // Writes the entry to the chip (again) and enables it.
   void install( U32 entry, U32 unit = kUnit );
   U64 hits( U32 entry, U32 unit = kUnit ) const;

   // The unit's port bitmap of `ports`, and of every port.
   static bcm_pbmp_t pbmp( const std::vector<int>& ports );
   static bcm_pbmp_t allPorts( U32 unit = kUnit );

   // A TCP packet 10.0.0.1:1024 -> 10.0.0.2:dstPort, through the switch from `in` to `out`.
   SwitchVerdict inject( U16 dstPort, const std::string& in = "Ethernet1",
                         const std::string& out = "Ethernet2" ) {
      return sw_.inject( in, tcp( dstPort ), out );
   }
   SwitchVerdict inject( const Packet& p, const std::string& in = "Ethernet1",
                         const std::string& out = "Ethernet2" ) {
      return sw_.inject( in, p, out );
   }
   // Straight into the unit's chip, ports as the packet names them.
   Verdict lookup( const Packet& p, U32 unit = kUnit ) { return sw_.chip( unit ).lookup( p ); }
   static Packet tcp( U16 dstPort = 80 ) {
      return Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1024, dstPort );
   }

   Vesper::ActivityLockGuard activity_;
   SimSwitch sw_;
};

}  // namespace SimLookupTest
