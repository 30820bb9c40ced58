// setActions seen by packets: the entries it programs are installed on the
// simulated chip and packets pushed through, so that what the actions mean
// (drop, copy to the CPU, the source class handed to IFP, the port key) is
// checked rather than their encoding.
#include <gtest/gtest.h>

#include <optional>

#include "acl/HalyardAclHelper.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/chip/Packet.h"
#include "tests/acl/setters/SetterUnit.h"

namespace AclSettersTest {
namespace {

using Sim::Packet;

constexpr U32 vfpClass = 2;

class SetActionsLookupTest : public ::testing::Test {
 protected:
   // trident2 has HiGig ports, which are not Ethernet ports.
   SetActionsLookupTest() : unit_( "trident2" ) {}

   U32 programmed( Halyard::TcamGroupAssignment group, Acl::Action action, bool log, bool vfp,
                   bool allPorts = false, bool cancelCpuCopy = false ) {
      const U32 entry = unit_.newEntry( group );
      Halyard::setActions( SetterUnit::unit, unit_.groupMgr(), entry, action, log, vfp,
                           Acl::AclDirection::in, vfpClass, allPorts, cancelCpuCopy );
      unit_.install( entry );
      return entry;
   }
   Sim::Verdict send( U32 ingressPort = 1, bool toCpu = false ) {
      Packet p = Packet::tcp4( Sim::ip4( "10.0.0.1" ), Sim::ip4( "10.0.0.2" ), 1024, 80 );
      p.ingressPortIs( ingressPort ).egressPortIs( 2 );
      p.toCpu = toCpu;
      return unit_.chip().lookup( p );
   }

   Vesper::ActivityLockGuard activity_;
   SetterUnit unit_;
};

TEST_F( SetActionsLookupTest, IfpDenyDropsAndThrowsAnyCpuCopyAway ) {
   const U32 entry = programmed( Halyard::tcamGroupIpAcl, Acl::Action::deny, false, false );
   const Sim::Verdict v = send( 1, true );
   EXPECT_TRUE( v.dropped ) << v.text();
   EXPECT_FALSE( v.forwarded() ) << v.text();
   EXPECT_FALSE( v.copyToCpu ) << v.text();
   EXPECT_EQ( v.hitIn( unit_.groupOf( entry ) ), std::optional( entry ) );
}

TEST_F( SetActionsLookupTest, IfpLoggedDenyDropsAndCopiesAtTheLogClass ) {
   programmed( Halyard::tcamGroupIpAcl, Acl::Action::deny, true, false );
   const Sim::Verdict v = send();
   EXPECT_TRUE( v.dropped ) << v.text();
   EXPECT_TRUE( v.copyToCpu ) << v.text();
   EXPECT_EQ( v.cpuMatchId, std::optional<U32>( 3 ) );
   EXPECT_EQ( v.internalPriority, std::optional<U32>( 10 ) );
}

TEST_F( SetActionsLookupTest, VfpDenyOnlyMarksThePacketForIfp ) {
   programmed( Halyard::tcamGroupIpAclVfp, Acl::Action::deny, true, true );
   const Sim::Verdict v = send();
   EXPECT_FALSE( v.dropped ) << v.text();
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_EQ( v.sourceClass, vfpClass | 0x18 );
}

TEST_F( SetActionsLookupTest, VfpPermitPassesItsClassOn ) {
   programmed( Halyard::tcamGroupIpAclVfp, Acl::Action::permit, false, true );
   const Sim::Verdict v = send();
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_EQ( v.sourceClass, vfpClass );
}

TEST_F( SetActionsLookupTest, PermitWithCancelTakesAwayTheCopyOfForwarding ) {
   programmed( Halyard::tcamGroupIpAcl, Acl::Action::permit, false, false, false, true );
   const Sim::Verdict v = send( 1, true );
   EXPECT_TRUE( v.forwarded() ) << v.text();
   EXPECT_FALSE( v.copyToCpu ) << v.text();
}

TEST_F( SetActionsLookupTest, AllPortsKeysOnEthernetPortsOnly ) {
   programmed( Halyard::tcamGroupIpAcl, Acl::Action::deny, false, false, true );
   const U32 hiGigPort = unit_.kind().portCount - 1;
   EXPECT_TRUE( send( 1 ).dropped );
   EXPECT_FALSE( send( hiGigPort ).dropped ) << "a HiGig port is no Ethernet port";
}

}  // namespace
}  // namespace AclSettersTest
