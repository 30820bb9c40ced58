// Interfaces joining and leaving ACLs after the first pass: each binding outcome gives the
// reapply answer it must, the reapply that follows gives the hardware the generic layer then
// expects, and packets on the new and the old ports meet the rules they should.
#include <gtest/gtest.h>

#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"
#include "tests/support/TraceLines.h"

namespace AclLifecycleTest {

using namespace HalyardTest;
namespace {

using HalyardTest::intfOf;

class BindingTest : public ::testing::Test {
 protected:
   // Whether a packet that comes in on `in` and is forwarded out by `out` leaves.
   bool passes( const std::string& in, const Sim::Packet& p, const std::string& out ) {
      const Sim::SwitchVerdict v = sw_.sim().inject( in, p, out );
      return v.forwarded();
   }
   bool passesIn( U32 port, const Sim::Packet& p ) {
      return passes( intfName( 0, port ), p, intfName( 0, 4 ) );
   }
   bool passesOut( U32 port, const Sim::Packet& p ) {
      return passes( intfName( 0, 4 ), p, intfName( 0, port ) );
   }
   std::optional<Acl::AclType> claimOf( U32 port ) const {
      return sw_.helper()->vfpAclTypeForUnit( 0 )->vfpAclTypeForPort(
          Vesper::String( intfName( 0, port ) ) );
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3" } ) };
};

const std::vector<Rule> denyHostOne = { macFromHost( Acl::deny_, 1 ), macAny( Acl::permit_ ) };

// An ingress ACL in VFP selects its ports by class: a new port only needs the class, and no
// entry is rewritten.
TEST_F( BindingTest, APortJoinsAnIngressAclByItsClassAlone ) {
   DrivenAcl acl( sw_, "m", Acl::mac_, Acl::in_ );
   EXPECT_FALSE( acl.bound( intfOf( 0, 1 ) ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.applied( denyHostOne ) );
   ASSERT_TRUE( acl.common( 0 )->canUseVfp() );
   const S16 intfClass = acl.unitData( 0 )->intfClass();
   ASSERT_TRUE( acl.unitData( 0 )->intfClassValid() );

   EXPECT_FALSE( acl.bound( intfOf( 0, 2 ) ) );
   EXPECT_EQ( U32( intfClass ), HalyardTest::ingressClass( sw_.chip( 0 ), 2 ) );
   EXPECT_TRUE( acl.unitData( 0 )->intfClassAppliedPortHas( 2 ) );
   EXPECT_EQ( claimOf( 2 ), Acl::mac_ );
   HalyardTest::FpCmdCapture fp;
   sw_.helper()->updateAclPorts( acl.data(), true );
   EXPECT_TRUE( fp.lines().empty() ) << fp.lines().front();
   EXPECT_FALSE( passesIn( 2, macPacket( 1 ) ) );
   EXPECT_TRUE( passesIn( 2, macPacket( 2 ) ) );
   EXPECT_TRUE( passesIn( 3, macPacket( 1 ) ) );

   EXPECT_FALSE( acl.unbound( intfOf( 0, 2 ) ) );
   EXPECT_EQ( 0u, HalyardTest::ingressClass( sw_.chip( 0 ), 2 ) );
   EXPECT_EQ( claimOf( 2 ), std::nullopt );
   EXPECT_TRUE( passesIn( 2, macPacket( 1 ) ) );
   EXPECT_FALSE( passesIn( 1, macPacket( 1 ) ) );
}

// A port whose VFP lookup another ACL type holds: the ACL must be rebuilt without VFP; when the
// holder leaves the port, the waiting ACL is woken and takes VFP at its next pass.
TEST_F( BindingTest, AVfpPortConflictAsksForAReapplyAndTheFreedPortIsHandedOver ) {
   DrivenAcl mac( sw_, "m", Acl::mac_, Acl::in_ );
   DrivenAcl ip( sw_, "i", Acl::ip_, Acl::in_ );
   mac.bound( intfOf( 0, 1 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, mac.applied( denyHostOne ) );
   const std::vector<Rule> denyTen = { ip4( Acl::deny_, 17, "10.0.0.0/8" ),
                                       ip4( Acl::permit_, 0, "0.0.0.0/0" ) };
   ip.bound( intfOf( 0, 2 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, ip.applied( denyTen ) );
   ASSERT_TRUE( ip.common( 0 )->canUseVfp() );
   const U32 macClass = HalyardTest::ingressClass( sw_.chip( 0 ), 1 );

   EXPECT_TRUE( ip.bound( intfOf( 0, 1 ) ) );
   EXPECT_TRUE( ip.common( 0 )->dirty() );
   EXPECT_EQ( macClass, HalyardTest::ingressClass( sw_.chip( 0 ), 1 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, ip.reapplied() );
   EXPECT_TRUE( ip.unitData( 0 )->vfpPortConflict() );
   EXPECT_FALSE( ip.common( 0 )->canUseVfp() );
   EXPECT_FALSE( ip.unitData( 0 )->intfClassValid() );
   EXPECT_EQ( claimOf( 1 ), Acl::mac_ );
   EXPECT_EQ( claimOf( 2 ), std::nullopt );
   for ( const U32 port : { 1u, 2u } ) {
      SCOPED_TRACE( port );
      EXPECT_FALSE( passesIn( port, udpPacket( "10.1.1.1", 53 ) ) );
      EXPECT_TRUE( passesIn( port, udpPacket( "11.1.1.1", 53 ) ) );
   }
   EXPECT_FALSE( passesIn( 1, macPacket( 1 ) ) );

   Vesper::TraceCapture trace( "Halyard::AclSm" );
   EXPECT_TRUE( mac.unbound( intfOf( 0, 1 ) ) );
   EXPECT_EQ( 1u,
              HalyardTest::linesContaining( trace.lines(), "Letting i try to use VFP" ).size() );
   EXPECT_TRUE( ip.common( 0 )->dirty() );
   EXPECT_TRUE( sw_.helper()->dirtyAcl( ip.data()->key() ) );
   EXPECT_TRUE( sw_.helper()->unitDirty( 0 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, ip.reapplied() );
   EXPECT_TRUE( ip.common( 0 )->canUseVfp() );
   EXPECT_EQ( claimOf( 1 ), Acl::ip_ );
   EXPECT_EQ( claimOf( 2 ), Acl::ip_ );
   for ( const U32 port : { 1u, 2u } ) {
      SCOPED_TRACE( port );
      EXPECT_FALSE( passesIn( port, udpPacket( "10.1.1.1", 53 ) ) );
      EXPECT_TRUE( passesIn( port, udpPacket( "11.1.1.1", 53 ) ) );
   }
   EXPECT_TRUE( passesIn( 1, macPacket( 1 ) ) );
}

// Without a class of its type an egress ACL holds its ports by one copy of every entry per
// port: a port that comes or goes takes a reapply. With a class it does not.
TEST_F( BindingTest, AnEgressAclWithoutAClassIsRebuiltForEachPortThatComesOrGoes ) {
   const Halyard::AclTypeUnitData::Ptr pool =
       sw_.helper()
           ->getHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::out_,
                                                  Halyard::aclFeatureSecurity )
           ->unitData( 0 );
   std::vector<U8> taken;
   while ( const U8 c = pool->freeIntfClassPop() ) {
      taken.push_back( c );
   }
   DrivenAcl acl( sw_, "e", Acl::mac_, Acl::out_ );
   acl.bound( intfOf( 0, 1 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.applied( denyHostOne ) );
   EXPECT_EQ( 1u, acl.ruleEntries( 0, 0 ).size() );

   EXPECT_TRUE( acl.bound( intfOf( 0, 2 ) ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.reapplied() );
   EXPECT_EQ( 2u, acl.ruleEntries( 0, 0 ).size() );
   EXPECT_FALSE( passesOut( 1, macPacket( 1 ) ) );
   EXPECT_FALSE( passesOut( 2, macPacket( 1 ) ) );
   EXPECT_TRUE( passesOut( 2, macPacket( 2 ) ) );
   EXPECT_TRUE( passesOut( 3, macPacket( 1 ) ) );

   EXPECT_TRUE( acl.unbound( intfOf( 0, 1 ) ) );
   EXPECT_TRUE( sw_.helper()->dirtyAcl( acl.data()->key() ) );
   EXPECT_TRUE( sw_.helper()->unitDirty( 0 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.reapplied() );
   EXPECT_EQ( 1u, acl.ruleEntries( 0, 0 ).size() );
   EXPECT_TRUE( passesOut( 1, macPacket( 1 ) ) );
   EXPECT_FALSE( passesOut( 2, macPacket( 1 ) ) );

   for ( auto it = taken.rbegin(); it != taken.rend(); ++it ) {
      pool->freeIntfClassPush( *it );
   }
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.reapplied() );
   ASSERT_TRUE( acl.unitData( 0 )->intfClassValid() );
   EXPECT_FALSE( acl.bound( intfOf( 0, 3 ) ) );
   HalyardTest::FpCmdCapture fp;
   sw_.helper()->updateAclPorts( acl.data(), true );
   EXPECT_TRUE( fp.lines().empty() );
   EXPECT_FALSE( passesOut( 3, macPacket( 1 ) ) );
   EXPECT_FALSE( acl.unbound( intfOf( 0, 3 ) ) );
   EXPECT_EQ( 0u, HalyardTest::egressClass( sw_.chip( 0 ), 3 ) );
   EXPECT_TRUE( passesOut( 3, macPacket( 1 ) ) );
}

// An ACL bound anywhere stands on every unit; a reapply that one unit needs spreads to all.
TEST( BindingUnitsTest, ABindingPutsTheAclOnEveryUnitAndADirtyUnitDirtiesAll ) {
   HalyardTest::CleanProcessState process;
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentSwitch sw( HalyardTest::SwitchLayout( { "trident3", "trident3" } ) );
   DrivenAcl mac( sw, "m", Acl::mac_, Acl::in_ );
   DrivenAcl ip( sw, "i", Acl::ip_, Acl::in_ );
   EXPECT_FALSE( ip.bound( intfOf( 1, 2 ) ) );
   for ( const U32 unit : { 0u, 1u } ) {
      ASSERT_TRUE( ip.common( unit ) ) << unit;
      EXPECT_TRUE( ip.unitData( unit )->needsPortUpdate() );
   }
   EXPECT_TRUE( ip.unitData( 0 )->activePort().empty() );
   mac.bound( intfOf( 0, 1 ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, mac.applied( denyHostOne ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, ip.applied( { ip4( Acl::deny_, 0, "10.0.0.0/8" ) } ) );
   EXPECT_TRUE( ip.bound( intfOf( 0, 1 ) ) );
   EXPECT_TRUE( ip.common( 0 )->dirty() );
   EXPECT_TRUE( ip.common( 1 )->dirty() );
}

TEST( IntfSupportTest, VlansAndPortChannelsFollowTheEpochOtherInterfacesTheGenericMap ) {
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentSwitch sw;
   Halyard::AclHelper& helper = *sw.helper();
   const Pylon::IntfId vlan = Pylon::IntfId::vlan( Pylon::VlanId( 10 ) );
   const Pylon::IntfId eth = Pylon::IntfId::ethernet( 1 );
   EXPECT_TRUE( helper.intfSupportsAcl( vlan ) );
   EXPECT_TRUE( helper.intfSupportsAcl( Pylon::IntfId::portChannel( 5 ) ) );
   EXPECT_TRUE( helper.intfSupportsAcl( eth ) );
   sw.sim().aclSupportedIs( false );
   sw.fcsd()->intfIs( eth, true );
   EXPECT_FALSE( helper.intfSupportsAcl( vlan ) );
   EXPECT_FALSE( helper.intfSupportsAcl( Pylon::IntfId::portChannel( 5 ) ) );
   EXPECT_FALSE( helper.intfSupportsAcl( eth ) );
   EXPECT_TRUE( helper.intfSupportsAcl( Pylon::IntfId::ethernet( 2 ) ) );
   EXPECT_EQ( sw.sim().hcsd()->linecardName(), helper.intfLinecardName( eth ) );
}

}  // namespace
}  // namespace AclLifecycleTest
