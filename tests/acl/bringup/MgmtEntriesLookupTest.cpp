// The management entries at work: packets pushed through the chip model of every catalog kind
// after hwInit. A VFP entry programmed through setActions stamps the packet's source class as a
// rule would, and the IFP management entries carry the stamp out.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "acl/HalyardAclHelper.h"
#include "acl/HalyardAclSmBringupInternal.h"
#include "acl/ToggleState.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/chip/Packet.h"
#include "tests/acl/bringup/MgmtEntryExpectations.h"

namespace AclBringupTest {
namespace {

using Halyard::AclManagementTcams;
using Sim::Packet;

constexpr U32 unit = 0;
constexpr U32 inPort = 1;
constexpr U32 outPort = 2;
constexpr U16 blockedVlan = 10;
constexpr U16 openVlan = 11;

class MgmtEntriesLookupTest : public ::testing::TestWithParam<std::string> {
 protected:
   MgmtEntriesLookupTest() : sw_( SwitchLayout{ { GetParam() } } ) {}

   // Brings the unit up, with the mirror-on-drop toggle as given.
   void bringUp( bool mirrorOnDrop = true ) {
      Halyard::toggleStateIs( Halyard::mirrorOnDropToggle, mirrorOnDrop );
      sw_.hwInit();
      mgmtGroup_ = sw_.chip( unit ).entryGroup( sw_.mgmtEntry( Halyard::aclMgmtTcamStpBlock ) );
      ASSERT_TRUE( mgmtGroup_ );
   }

   // A VFP entry that matches every packet and stamps it as a rule of this action would.
   void vfpRule( Acl::Action action, bool log, U32 vfpClass = 0 ) {
      auto mgr = sw_.manager( Halyard::tcamGroupIpAclVfp );
      const U32 entry = mgr->getEntry( unit, "lookup test rule" );
      ASSERT_NE( entry, 0u );
      Halyard::setActions( unit, sw_.groupManager(), entry, action, log, true, Acl::in(), vfpClass,
                           false, false );
      mgr->installEntry( unit, entry );
   }

   Packet packet( U32 port = inPort ) {
      Packet p = Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.1.1" ), 1024, 80 );
      p.ingressPortIs( port ).egressPortIs( outPort );
      return p;
   }
   Sim::Verdict send( const Packet& p ) { return sw_.chip( unit ).lookup( p ); }

   std::optional<U32> mgmtHit( const Sim::Verdict& v ) const { return v.hitIn( *mgmtGroup_ ); }
   std::optional<U32> entry( AclManagementTcams offset ) const { return sw_.mgmtEntry( offset ); }
   void stpStateIs( U32 port, Sim::StpState state ) {
      ASSERT_EQ( sw_.chip( unit ).ports().stpStateIs( port, state ), Sim::Status::Ok );
   }

   CleanProcessState clean_;
   Vesper::ActivityLockGuard activity_;
   BringupSwitch sw_;
   std::optional<Sim::GroupId> mgmtGroup_;
};

TEST_P( MgmtEntriesLookupTest, WithoutAStampNothingHappens ) {
   bringUp();
   const Sim::Verdict v = send( packet() );
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_FALSE( v.copyToCpu ) << v.text();
   EXPECT_EQ( mgmtHit( v ), std::nullopt ) << v.text();
}

TEST_P( MgmtEntriesLookupTest, ADropStampIsDroppedInIfp ) {
   bringUp();
   vfpRule( Acl::deny(), false );
   const Sim::Verdict v = send( packet() );
   EXPECT_EQ( v.sourceClass, 0x08u );
   EXPECT_TRUE( v.dropped ) << v.text();
   EXPECT_FALSE( v.forwarded() ) << v.text();
   EXPECT_FALSE( v.copyToCpu ) << v.text();
   EXPECT_EQ( mgmtHit( v ), entry( Halyard::aclMgmtTcamVfpDrop ) ) << v.text();
}

TEST_P( MgmtEntriesLookupTest, ALogStampIsCopiedToTheCpuAndForwarded ) {
   bringUp();
   vfpRule( Acl::permit(), false, 0x10 );
   const Sim::Verdict v = send( packet() );
   EXPECT_EQ( v.sourceClass, 0x10u );
   EXPECT_FALSE( v.dropped ) << v.text();
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_TRUE( v.copyToCpu ) << v.text();
   EXPECT_EQ( v.internalPriority, std::optional<U32>( 10 ) );
   EXPECT_EQ( mgmtHit( v ), entry( Halyard::aclMgmtTcamVfpLog ) ) << v.text();
}

TEST_P( MgmtEntriesLookupTest, ADropAndLogStampIsDroppedAndCopiedOnlyOnAForwardingPort ) {
   bringUp();
   vfpRule( Acl::deny(), true );
   const Sim::Verdict forwarding = send( packet() );
   EXPECT_EQ( forwarding.sourceClass, 0x18u );
   EXPECT_TRUE( forwarding.dropped ) << forwarding.text();
   EXPECT_TRUE( forwarding.copyToCpu ) << forwarding.text();
   EXPECT_EQ( mgmtHit( forwarding ), entry( Halyard::aclMgmtTcamVfpDropLog ) );

   stpStateIs( 3, Sim::StpState::Block );
   const Sim::Verdict blocked = send( packet( 3 ) );
   EXPECT_FALSE( blocked.forwarded() ) << blocked.text();
   EXPECT_FALSE( blocked.copyToCpu ) << blocked.text();
   EXPECT_EQ( mgmtHit( blocked ), entry( Halyard::aclMgmtTcamStpBlock ) );

   stpStateIs( 4, Sim::StpState::Learn );
   const Sim::Verdict learning = send( packet( 4 ) );
   EXPECT_FALSE( learning.forwarded() ) << learning.text();
   EXPECT_FALSE( learning.copyToCpu ) << learning.text();
   EXPECT_EQ( mgmtHit( learning ), entry( Halyard::aclMgmtTcamStpLearn ) );
}

TEST_P( MgmtEntriesLookupTest, OnABlockedPortOnlyCopiesOfLoggedPacketsGoToTheDropQueue ) {
   bringUp();
   stpStateIs( 3, Sim::StpState::Block );
   const Sim::Verdict plain = send( packet( 3 ).toCpuIs() );
   EXPECT_TRUE( plain.copyToCpu ) << plain.text();
   EXPECT_EQ( plain.cpuQueue, std::nullopt ) << plain.text();

   vfpRule( Acl::permit(), false, 0x10 );
   const Sim::Verdict logged = send( packet( 3 ).toCpuIs() );
   EXPECT_TRUE( logged.copyToCpu ) << logged.text();
   EXPECT_EQ( logged.cpuQueue, std::optional<U32>( 0 ) ) << logged.text();
   EXPECT_EQ( mgmtHit( logged ), entry( Halyard::aclMgmtTcamStpBlock ) );
}

TEST_P( MgmtEntriesLookupTest, WithMirrorOnDropOffEveryCopyOfABlockedPortGoesToTheDropQueue ) {
   bringUp( false );
   stpStateIs( 3, Sim::StpState::Block );
   stpStateIs( 4, Sim::StpState::Learn );
   for ( const U32 port : { 3u, 4u } ) {
      const Sim::Verdict v = send( packet( port ).toCpuIs() );
      EXPECT_TRUE( v.copyToCpu ) << v.text();
      EXPECT_EQ( v.cpuQueue, std::optional<U32>( 0 ) ) << v.text();
   }
   const Sim::Verdict open = send( packet().toCpuIs() );
   EXPECT_EQ( open.cpuQueue, std::nullopt ) << open.text();
}

TEST_P( MgmtEntriesLookupTest, RoutedTrafficOfAVlanWithTheDropClassIsDropped ) {
   bringUp();
   ASSERT_EQ( sw_.chip( unit ).vlans().l2ClassIs( blockedVlan, 0x04 ), Sim::Status::Ok );
   const Sim::Verdict routed =
       send( packet().vlanIs( blockedVlan ).routedIs().myStationHitIs().egressVlanIs( openVlan ) );
   EXPECT_TRUE( routed.dropped ) << routed.text();
   EXPECT_EQ( mgmtHit( routed ), entry( Halyard::aclMgmtTcamVlanBlock ) );

   const Sim::Verdict bridged = send( packet().vlanIs( blockedVlan ) );
   EXPECT_TRUE( bridged.forwarded() ) << bridged.text();
   EXPECT_EQ( mgmtHit( bridged ), std::nullopt );

   const Sim::Verdict elsewhere =
       send( packet().vlanIs( openVlan ).routedIs().myStationHitIs().egressVlanIs( blockedVlan ) );
   EXPECT_TRUE( elsewhere.forwarded() ) << elsewhere.text();
}

TEST_P( MgmtEntriesLookupTest, TheSkipBitPassesEveryManagementEntry ) {
   bringUp();
   vfpRule( Acl::deny(), true );
   ASSERT_EQ( sw_.chip( unit ).vlans().l2ClassIs( blockedVlan, 0x04 ), Sim::Status::Ok );
   stpStateIs( 3, Sim::StpState::Block );
   const Packet routed = packet().vlanIs( blockedVlan ).routedIs().myStationHitIs();
   const Sim::Verdict skipped = send( Packet( routed ).dstL2ClassIs( 0x40 ) );
   EXPECT_FALSE( skipped.dropped ) << skipped.text();
   EXPECT_TRUE( skipped.forwarded() ) << skipped.text();
   EXPECT_FALSE( skipped.copyToCpu ) << skipped.text();
   EXPECT_EQ( mgmtHit( skipped ), std::nullopt );
   const Sim::Verdict blockedPort = send( packet( 3 ).toCpuIs().dstL2ClassIs( 0x40 ) );
   EXPECT_EQ( blockedPort.cpuQueue, std::nullopt ) << blockedPort.text();
   EXPECT_EQ( mgmtHit( blockedPort ), std::nullopt );
   // The same packets without the bit: the entries act.
   EXPECT_TRUE( send( routed ).dropped );
}

// The two ingress port-blocking entries key on no port yet; the two egress ones match every
// port but mask none out. Installed, none of them changes what a packet does.
TEST_P( MgmtEntriesLookupTest, PortBlockingEntriesChangeNothingEvenWhenInstalled ) {
   bringUp();
   auto& blocking = sw_.boundedManager( Halyard::tcamGroupAclPortBlocking );
   for ( const auto offset :
         { Halyard::aclMgmtTcamPortBlock1, Halyard::aclMgmtTcamPortBlock2,
           Halyard::aclMgmtTcamEgressBlock1, Halyard::aclMgmtTcamEgressBlock2 } ) {
      EXPECT_EQ( sw_.chip( unit ).entryInstalled( sw_.portBlockingEntry( offset ) ),
                 std::optional( false ) );
      blocking.installEntry( unit, sw_.portBlockingEntry( offset ) );
   }
   const auto group =
       sw_.chip( unit ).entryGroup( sw_.portBlockingEntry( Halyard::aclMgmtTcamPortBlock1 ) );
   ASSERT_TRUE( group );
   const U32 egressBlock = sw_.portBlockingEntry( Halyard::aclMgmtTcamEgressBlock1 );
   const U32 lastPort = sw_.kind( unit ).portCount - 1;
   for ( U32 port = 1; port <= lastPort; ++port ) {
      const U32 dest = port == outPort ? 3 : outPort;
      const Sim::Verdict v = send( packet( port ).egressPortIs( dest ) );
      ASSERT_EQ( v.hitIn( *group ), std::optional( egressBlock ) )
          << "port " << port << ": " << v.text();
      ASSERT_TRUE( v.egressPorts.test( dest ) ) << "port " << port << ": " << v.text();
      ASSERT_FALSE( v.dropped ) << "port " << port << ": " << v.text();
   }
}

INSTANTIATE_TEST_SUITE_P( ChipKinds, MgmtEntriesLookupTest,
                          ::testing::ValuesIn( catalogKindNames() ),
                          []( const ::testing::TestParamInfo<std::string>& info ) {
                             return info.param;
                          } );

}  // namespace
}  // namespace AclBringupTest
