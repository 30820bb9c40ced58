// Teardown gives everything back: after destroyAcl every pool of every unit is as bring-up
// left it (entries and slices per group, range checkers, UDF chunks, ingress and egress
// classes, the classes on the ports, VFP port claims), while the records stay for a reapply;
// after cleanupAcl no record of the ACL is left. Run over ACL types and directions, with
// rules that take every kind of resource, on a switch of two units.
#include <gtest/gtest.h>

#include "platform/acl/PayloadSpec.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclLifecycleTest {

using namespace HalyardTest;
namespace {

using HalyardTest::intfOf;

struct Case {
   const char* name;
   Acl::AclType type;
   Acl::AclDirection direction;
   std::vector<Rule> ( *rules )();
   bool noEgressClass = false;    // the type's egress classes are all taken: one entry per port
   bool sharedResources = false;  // the rules take range checkers (and, IPv4, UDF chunks)
};

void PrintTo( const Case& c, std::ostream* os ) {
   *os << c.name;
}

std::vector<Rule> macRules() {
   return { macFromHost( Acl::deny_, 1 ), macFromHost( Acl::permit_, 2 ), macAny( Acl::deny_ ) };
}

// A range (a checker, and the ACL off VFP), a payload (UDF chunks), a permit with the entry for
// later fragments, and a rule of two subrules.
std::vector<Rule> ip4Rules() {
   Acl::IpFilter payload = ip4Filter( 17, "0.0.0.0/0" );
   payload.payloadIs(
       Acl::PayloadSpec( Acl::PayloadStart::headerEnd, { { 2, 0x12345678, 0xFFFFFFFF } } ) );
   Rule web = ip4( Acl::permit_, 6, "10.0.0.0/8", { dstPortEq( 80 ), dstPortEq( 443 ) } );
   web.fragmentRule = true;
   return { ip4( Acl::deny_, 17, "10.0.0.0/8", { dstPortRange( 1000, 2000 ) } ),
            ipRule( Acl::deny_, payload ), web, ip4( Acl::permit_, 0, "0.0.0.0/0" ) };
}

std::vector<Rule> ip4EgressRules() {
   return { ip4( Acl::deny_, 6, "10.0.0.0/8", { dstPortEq( 22 ) } ),
            ip4( Acl::permit_, 0, "0.0.0.0/0" ) };
}

std::vector<Rule> ip6Rules() {
   return { ipRule( Acl::deny_, ip6Filter( 17, "2001:db8::/32" ), { dstPortRange( 100, 200 ) } ),
            ipRule( Acl::permit_, ip6Filter( 0, "::/0" ) ) };
}

class TeardownTest : public ::testing::TestWithParam<Case> {
 protected:
   void SetUp() override {
      if ( GetParam().noEgressClass ) {
         for ( const U32 unit : sw_.units() ) {
            const auto pool = sw_.helper()
                                  ->getHalyardAclTypeDirectionFeatureSm(
                                      GetParam().type, Acl::out_, Halyard::aclFeatureSecurity )
                                  ->unitData( unit );
            while ( pool->freeIntfClassPop() ) {
            }
         }
      }
      bringUp_ = poolsText( sw_ );
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident3", "trident3" } ) };
   std::string bringUp_;
};

TEST_P( TeardownTest, EveryResourceGoesBackAndCleanupLeavesNoRecord ) {
   const Case& c = GetParam();
   for ( int life = 0; life < 2; ++life ) {
      SCOPED_TRACE( "life " + std::to_string( life ) );
      DrivenAcl acl( sw_, "t", c.type, c.direction );
      for ( const Pylon::IntfId intf : { intfOf( 0, 1 ), intfOf( 0, 2 ), intfOf( 1, 1 ) } ) {
         acl.bound( intf );
      }
      ASSERT_EQ( Fennel::aclCreateSuccess, acl.applied( c.rules() ) );
      ASSERT_NE( bringUp_, poolsText( sw_ ) );
      if ( c.sharedResources ) {
         const Sim::UnitUsage usage = sw_.sim().tcamUsage( 1 );
         EXPECT_GT( usage.rangeCheckersUsed, 0u );
         EXPECT_EQ( usage.udfChunksUsed > 0, c.type == Acl::ip_ );
      }

      sw_.helper()->destroyAcl( acl.data() );
      EXPECT_EQ( bringUp_, poolsText( sw_ ) );
      for ( const U32 unit : sw_.units() ) {
         SCOPED_TRACE( unit );
         const Halyard::AclCommonUnitData::Ptr common = acl.common( unit );
         ASSERT_TRUE( common );
         EXPECT_TRUE( common->aclRule().empty() );
         EXPECT_TRUE( common->aclRuleData().empty() );
         EXPECT_TRUE( common->dirty() );
         EXPECT_FALSE( common->installed() );
         EXPECT_FALSE( acl.unitData( unit )->intfClassValid() );
      }
      EXPECT_EQ( 2u, acl.unitData( 0 )->activePort().size() );

      sw_.helper()->cleanupAcl( acl.data() );
      EXPECT_FALSE( sw_.helper()->halyardAclDataHas( acl.data()->key() ) );
      EXPECT_EQ( bringUp_, poolsText( sw_ ) );
   }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, TeardownTest,
    ::testing::Values( Case{ "MacIn", Acl::mac_, Acl::in_, macRules },
                       Case{ "MacOut", Acl::mac_, Acl::out_, macRules },
                       Case{ "MacOutPerPort", Acl::mac_, Acl::out_, macRules, true },
                       Case{ "Ip4In", Acl::ip_, Acl::in_, ip4Rules, false, true },
                       Case{ "Ip4Out", Acl::ip_, Acl::out_, ip4EgressRules },
                       Case{ "Ip6In", Acl::ipv6_, Acl::in_, ip6Rules, false, true } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

// destroyAcl of an ACL that the generic layer never configured, or that the back-end never saw,
// touches nothing (and does not compress).
TEST( TeardownEdgeTest, AnAclNeverConfiguredOrUnknownIsLeftAlone ) {
   Vesper::ActivityLockGuard activity;
   HalyardTest::AgentSwitch sw;
   DrivenAcl acl( sw, "n", Acl::mac_, Acl::in_ );
   acl.bound( intfOf( 0, 1 ) );
   sw.helper()->precreateAcl( acl.data(), nullptr );
   const std::string before = poolsText( sw );
   Vesper::TraceCapture trace( "Halyard::AclSm" );
   sw.helper()->destroyAcl( acl.data() );
   EXPECT_EQ( before, poolsText( sw ) );
   DrivenAcl unknown( sw, "u", Acl::ip_, Acl::in_ );
   unknown.data()->aclVersionIs( 1 );
   sw.helper()->destroyAcl( unknown.data() );
   for ( const std::string& line : trace.lines() ) {
      EXPECT_EQ( std::string::npos, line.find( "compressAllGroups" ) ) << line;
   }
   EXPECT_TRUE( sw.helper()->halyardAclDataHas( acl.data()->key() ) );
}

}  // namespace
}  // namespace AclLifecycleTest
