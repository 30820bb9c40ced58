// Packets injected by interface name: which unit and port they enter by, which VLAN they are
// in, where they go, and how a packet for another unit crosses by the link ports.
#include <gtest/gtest.h>

#include <vector>

#include "sim/switch/SimSwitch.h"
#include "tests/sim/switch/SwitchFixture.h"

namespace SimSwitchTest {
namespace {

using HalyardTypes::HalyardPort;
using Sim::ActionId;
using Sim::PortBitmap;
using Sim::QualId;
using Sim::Status;

using Ports = std::vector<HalyardPort>;

constexpr Sim::GroupId kIpGroup = Halyard::tcamGroupIpAcl;

class InjectTest : public ::testing::Test {
 protected:
   // An installed entry on `unit` that copies to the CPU what enters by `port` in `vlan`.
   U32 probe( U32 unit, U32 port, U16 vlan ) {
      const U32 e = newEntry( sw, unit );
      Sim::ChipModel& chip = sw.chip( unit );
      EXPECT_EQ( Status::Ok, chip.inPortsIs( e, PortBitmap{ port }, chip.ports().allPorts() ) );
      EXPECT_EQ( Status::Ok, chip.qualifierIs( e, QualId::OuterVlanId, vlan, 0xFFF ) );
      EXPECT_EQ( Status::Ok, chip.actionIs( e, ActionId::CopyToCpu, 1, 0 ) );
      install( sw, unit, e );
      return e;
   }

   Sim::SimSwitch sw;
};

TEST_F( InjectTest, PacketWithinAUnitIsLookedUpOnceAndDelivered ) {
   const Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet2" );
   EXPECT_EQ( 0u, v.ingressUnit );
   EXPECT_FALSE( v.egressUnit );
   EXPECT_FALSE( v.egress );
   EXPECT_TRUE( v.ingress.hits.empty() );
   EXPECT_EQ( Ports{ HalyardPort( 0, 2 ) }, v.delivered ) << v.text();
   EXPECT_TRUE( v.forwarded() );
   EXPECT_FALSE( v.dropped() );
}

TEST_F( InjectTest, EntryOnTheIngressPortDropsAndCounts ) {
   const U32 e = actOnPort( sw, 0, 1, ActionId::Drop );
   Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet2" );
   EXPECT_TRUE( v.dropped() );
   EXPECT_FALSE( v.forwarded() );
   EXPECT_EQ( e, v.ingress.hitIn( kIpGroup ) );
   EXPECT_EQ( 1u, sw.chip( 0 ).entryHits( e ) );

   v = sw.inject( "Ethernet3", tcpPacket(), "Ethernet2" );
   EXPECT_TRUE( v.forwarded() );
   EXPECT_EQ( 1u, sw.chip( 0 ).entryHits( e ) );
   // Port 1 of the other unit is another port: Ethernet25.
   v = sw.inject( "Ethernet25", tcpPacket(), "Ethernet26" );
   EXPECT_EQ( Ports{ HalyardPort( 1, 2 ) }, v.delivered );
   EXPECT_EQ( 1u, sw.chip( 0 ).entryHits( e ) );
}

TEST_F( InjectTest, PacketForAnotherUnitCrossesByTheLinkPorts ) {
   // On unit 1, copy to the CPU what arrives by the link port.
   const U32 e = newEntry( sw, 1 );
   Sim::ChipModel& chip1 = sw.chip( 1 );
   ASSERT_EQ( Status::Ok, chip1.inPortsIs( e, PortBitmap{ 32 }, chip1.ports().allPorts() ) );
   ASSERT_EQ( Status::Ok, chip1.actionIs( e, ActionId::CopyToCpu, 1, 0 ) );
   install( sw, 1, e );

   Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet30" );
   EXPECT_EQ( 0u, v.ingressUnit );
   EXPECT_EQ( 1u, v.egressUnit );
   EXPECT_EQ( PortBitmap{ 32 }, v.ingress.egressPorts );
   ASSERT_TRUE( v.egress );
   EXPECT_EQ( e, v.egress->hitIn( kIpGroup ) );
   EXPECT_TRUE( v.copyToCpu() );
   EXPECT_EQ( Ports{ HalyardPort( 1, 6 ) }, v.delivered ) << v.text();

   // Within unit 1 the packet does not come by the link port.
   v = sw.inject( "Ethernet25", tcpPacket(), "Ethernet30" );
   EXPECT_FALSE( v.egressUnit );
   EXPECT_FALSE( v.copyToCpu() );
   EXPECT_EQ( Ports{ HalyardPort( 1, 6 ) }, v.delivered );
}

// The egress unit sees a packet from the other unit as a HiGig packet: an egress router entry
// that drops HiGig traffic drops it there, and lets the unit's own traffic go.
TEST_F( InjectTest, APacketFromAnotherUnitIsHiGigOnTheEgressUnit ) {
   const U32 e = newEntry( sw, 1, Halyard::tcamGroupRouterAclEgress );
   ASSERT_EQ( Status::Ok, sw.chip( 1 ).qualifierIs( e, QualId::HiGig, 1, 1 ) );
   ASSERT_EQ( Status::Ok, sw.chip( 1 ).actionIs( e, ActionId::Drop, 0, 0 ) );
   install( sw, 1, e );
   Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet30" );
   ASSERT_TRUE( v.egress );
   EXPECT_EQ( e, v.egress->hitIn( Halyard::tcamGroupRouterAclEgress, 6 ) );
   EXPECT_TRUE( v.dropped() ) << v.text();
   EXPECT_EQ( Ports{ HalyardPort( 1, 6 ) },
              sw.inject( "Ethernet25", tcpPacket(), "Ethernet30" ).delivered );
}

TEST_F( InjectTest, DropOnTheIngressUnitNeverReachesTheOther ) {
   actOnPort( sw, 0, 1, ActionId::Drop );
   const Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet30" );
   EXPECT_EQ( 1u, v.egressUnit );
   EXPECT_FALSE( v.egress );
   EXPECT_TRUE( v.dropped() );
   EXPECT_TRUE( v.delivered.empty() );
}

TEST_F( InjectTest, EgressUnitDecidesItsOwnPorts ) {
   // Unit 1 masks Ethernet30 (port 6) out of what comes from the other unit.
   const U32 e = newEntry( sw, 1 );
   Sim::ChipModel& chip1 = sw.chip( 1 );
   ASSERT_EQ( Status::Ok, chip1.inPortsIs( e, PortBitmap{ 32 }, chip1.ports().allPorts() ) );
   ASSERT_EQ( Status::Ok, chip1.actionPortsIs( e, ActionId::EgressMask, PortBitmap{ 6 } ) );
   install( sw, 1, e );

   Sim::SwitchVerdict v = sw.inject( "Ethernet2", tcpPacket(), "Ethernet30" );
   ASSERT_TRUE( v.egress );
   EXPECT_FALSE( v.dropped() );
   EXPECT_TRUE( v.delivered.empty() ) << v.text();
   v = sw.inject( "Ethernet2", tcpPacket(), "Ethernet31" );
   EXPECT_EQ( Ports{ HalyardPort( 1, 7 ) }, v.delivered );
}

// An EFP drop of the only copy is a drop of the packet, on the ingress unit or on the other;
// a copy that another port still gets is no drop.
TEST_F( InjectTest, EgressDropOfTheOnlyCopyReadsAsDropped ) {
   auto dropOutPort = [&]( U32 unit, U32 port ) {
      const U32 e = newEntry( sw, unit, Halyard::tcamGroupIpAclEgress );
      EXPECT_EQ( Status::Ok, sw.chip( unit ).qualifierIs( e, QualId::OutPort, port, 0xFF ) );
      EXPECT_EQ( Status::Ok, sw.chip( unit ).actionIs( e, ActionId::Drop, 0, 0 ) );
      install( sw, unit, e );
      return e;
   };
   const U32 local = dropOutPort( 0, 2 );
   Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet2" );
   EXPECT_EQ( local, v.ingress.hitIn( Halyard::tcamGroupIpAclEgress, 2 ) );
   EXPECT_TRUE( v.dropped() ) << v.text();
   EXPECT_FALSE( v.forwarded() );

   const U32 remote = dropOutPort( 1, 6 );
   v = sw.inject( "Ethernet1", tcpPacket(), "Ethernet30" );
   ASSERT_TRUE( v.egress );
   EXPECT_EQ( remote, v.egress->hitIn( Halyard::tcamGroupIpAclEgress, 6 ) );
   EXPECT_TRUE( v.dropped() ) << v.text();

   Sim::Packet both = tcpPacket();
   both.ingressPortIs( 1 ).egressPortIs( 2 );
   both.egressPorts.set( 3 );
   const Sim::Verdict chipVerdict = sw.chip( 0 ).lookup( both );
   EXPECT_EQ( PortBitmap{ 2 }, chipVerdict.egressDropped );
   EXPECT_EQ( PortBitmap{ 3 }, chipVerdict.egressPorts );
   Sim::SwitchVerdict twoCopies;
   twoCopies.ingress = chipVerdict;
   twoCopies.delivered = { HalyardPort( 0, 3 ) };
   EXPECT_FALSE( twoCopies.dropped() );
}

TEST_F( InjectTest, IngressInterfaceKindsSetPortAndVlan ) {
   const U32 portChannel = probe( 0, 21, 1 );  // first member of Port-Channel10
   const U32 subIntf = probe( 0, 5, 300 );
   const U32 vlanIntf = probe( 0, 3, 200 );   // first member of Vlan200
   const U32 memberPc = probe( 0, 21, 100 );  // Vlan100 by its port-channel member
   EXPECT_EQ( portChannel, sw.inject( "Port-Channel10", tcpPacket() ).ingress.hitIn( kIpGroup ) );
   EXPECT_EQ( subIntf, sw.inject( "Ethernet5.300", tcpPacket() ).ingress.hitIn( kIpGroup ) );
   EXPECT_EQ( vlanIntf, sw.inject( "Vlan200", tcpPacket() ).ingress.hitIn( kIpGroup ) );
   EXPECT_EQ( memberPc,
              sw.inject( "Port-Channel10", tcpPacket().vlanIs( 100 ) ).ingress.hitIn( kIpGroup ) );
}

TEST_F( InjectTest, SubInterfaceTagsAnUntaggedPacket ) {
   const U32 e = newEntry( sw, 0 );
   ASSERT_EQ( Status::Ok, sw.chip( 0 ).qualifierIs( e, QualId::OuterVlanId, 300, 0xFFF ) );
   ASSERT_EQ( Status::Ok, sw.chip( 0 ).actionIs( e, ActionId::CopyToCpu, 1, 0 ) );
   install( sw, 0, e );
   EXPECT_TRUE( sw.inject( "Ethernet5.300", tcpPacket() ).copyToCpu() );
   // A packet that carries a tag keeps it.
   EXPECT_FALSE( sw.inject( "Ethernet5.300", tcpPacket().taggedIs( 7 ) ).copyToCpu() );
}

TEST_F( InjectTest, EgressToAnotherVlanOrASubInterfaceIsRouted ) {
   const U32 e = newEntry( sw, 0, Halyard::tcamGroupRouterAcl );
   ASSERT_EQ( Status::Ok, sw.chip( 0 ).qualifierIs( e, QualId::L3Routable, 1, 1 ) );
   ASSERT_EQ( Status::Ok, sw.chip( 0 ).actionIs( e, ActionId::CopyToCpu, 1, 0 ) );
   install( sw, 0, e );

   // Within its VLAN: bridged, to the first member other than the ingress port.
   Sim::SwitchVerdict v = sw.inject( "Ethernet1", tcpPacket().vlanIs( 100 ), "Vlan100" );
   EXPECT_EQ( Ports{ HalyardPort( 0, 2 ) }, v.delivered );
   EXPECT_FALSE( v.copyToCpu() );
   v = sw.inject( "Ethernet2", tcpPacket().vlanIs( 100 ), "Vlan100" );
   EXPECT_EQ( Ports{ HalyardPort( 0, 1 ) }, v.delivered );

   v = sw.inject( "Ethernet1", tcpPacket().vlanIs( 100 ), "Vlan200" );
   EXPECT_EQ( Ports{ HalyardPort( 0, 3 ) }, v.delivered );
   EXPECT_TRUE( v.copyToCpu() );

   v = sw.inject( "Ethernet2", tcpPacket(), "Ethernet5.300" );
   EXPECT_EQ( Ports{ HalyardPort( 0, 5 ) }, v.delivered );
   EXPECT_TRUE( v.copyToCpu() );

   // A packet the caller marked routed stays routed.
   EXPECT_TRUE( sw.inject( "Ethernet1", tcpPacket().routedIs(), "Ethernet2" ).copyToCpu() );
}

TEST_F( InjectTest, UnknownOrMalformedNamesAreRefused ) {
   try {
      sw.inject( "Ethernet99", tcpPacket() );
      FAIL() << "no error";
   } catch ( const Vesper::RangeException& e ) {
      EXPECT_STREQ( "Ethernet99 is not an interface of this switch", e.what() );
   }
   EXPECT_THROW( sw.inject( "Vlan4000", tcpPacket() ), Vesper::RangeException );
   EXPECT_THROW( sw.inject( "Ethernet1", tcpPacket(), "Ethernet5.301" ), Vesper::RangeException );
   EXPECT_THROW( sw.inject( "Eth1", tcpPacket() ), Vesper::ParseException );
   EXPECT_THROW( sw.inject( "Ethernet1", tcpPacket(), "Port-Channel" ), Vesper::ParseException );
}

}  // namespace
}  // namespace SimSwitchTest
