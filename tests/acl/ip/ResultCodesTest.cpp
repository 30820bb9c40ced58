// What a failed IP rule tells the generic layer, and the marks it leaves: the result code, the
// ACL dirty on the unit, the unit and the helper dirty and the unit's error published (all but
// 3, which the generic layer answers itself), and the other units programmed all the same.
#include <gtest/gtest.h>

#include <string>

#include "platform/vesper/ActivityLock.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclIpTest {

using namespace HalyardTest;
namespace {

class ResultCodesTest : public ::testing::Test {
 protected:
   explicit ResultCodesTest( const HalyardTest::AgentOptions& options = {} )
       : sw_( HalyardTest::SwitchLayout( { "trident3", "trident3" } ), options ) {}

   Fennel::AclCreateError unitError( U32 unit ) {
      return sw_.helper()->unitError( sw_.sim().hcsd()->halyardModId( unit ).chipName() );
   }
   void expectMarked( const DrivenAcl& acl, U32 unit, Fennel::AclCreateError error ) {
      EXPECT_TRUE( acl.common( unit )->dirty() ) << unit;
      EXPECT_TRUE( sw_.helper()->unitDirty( unit ) ) << unit;
      EXPECT_TRUE( sw_.helper()->dirty() );
      EXPECT_EQ( error, unitError( unit ) ) << unit;
   }
   void expectClean( const DrivenAcl& acl, U32 unit ) {
      EXPECT_FALSE( acl.common( unit )->dirty() ) << unit;
      EXPECT_FALSE( sw_.helper()->unitDirty( unit ) ) << unit;
      EXPECT_EQ( Fennel::aclCreateSuccess, unitError( unit ) ) << unit;
   }
   DrivenAcl bothUnits( const char* name ) {
      return DrivenAcl( sw_, name, Acl::ip_, Acl::in_,
                        { HalyardTest::intfOf( 0, 1 ), HalyardTest::intfOf( 1, 1 ) } );
   }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_;
};

// A VNI rule does not come through this door: 13, and no unit is touched.
TEST_F( ResultCodesTest, VniRuleIsRefusedBeforeAnyUnit ) {
   DrivenAcl acl = bothUnits( "vni" );
   Acl::IpFilter filter = ip4Filter( 17 );
   filter.vniIs( 5000 );
   EXPECT_EQ( Fennel::aclCreateNotExpressible, acl.ruleIs( ip4Rule( Acl::permit_, filter ) ) );
   for ( const U32 unit : sw_.units() ) {
      EXPECT_FALSE( acl.common( unit )->aclRuleHas( 0 ) );
      expectClean( acl, unit );
   }
}

// The narrow key of a mirroring group has no address field: 13, with every mark.
TEST_F( ResultCodesTest, NarrowMirroringKeyRefusesAddresses ) {
   sw_.groupManager()->ingressMirrorAclKeyWidthModeIs( 1 );
   sw_.helper()->setMirroringHalyardAclTypeDirectionFeatureSm( Acl::ip_, Acl::in_,
                                                               Halyard::aclFeatureMirroring1 );
   DrivenAcl acl = bothUnits( "mirror" );
   const Acl::RuleConfig rule = ip4Rule( Acl::permit_, ip4Filter( 0, "0.0.0.0/0", "10.0.0.0/8" ) );
   EXPECT_EQ( Fennel::aclCreateNotExpressible,
              sw_.helper()->createIpAclSubruleForUnit(
                  Acl::ip_, acl.unitData( 0 ), rule, rule.uniqueId(), acl.data(), 0, 0, 0, 0, 0, 0,
                  0, 0, 0, 0, 0, 0, 0, 0, 0, false, Halyard::aclFeatureMirroring1, 0, 0 ) );
   expectMarked( acl, 0, Fennel::aclCreateNotExpressible );
   EXPECT_TRUE( acl.entries( 0, 0 ).empty() );
}

// A port range on egress: 3 to the generic layer, the ACL dirty on each unit (commit keeps
// away), and neither the units nor the helper marked, nor an error published.
TEST_F( ResultCodesTest, NoRangeCheckerMarksTheAclOnly ) {
   DrivenAcl acl( sw_, "out", Acl::ip_, Acl::out_,
                  { HalyardTest::intfOf( 0, 2 ), HalyardTest::intfOf( 1, 2 ) } );
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker,
              acl.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 10, 20 ) } ) );
   EXPECT_EQ( Fennel::aclCreateSuccess, acl.ruleIs( ip4Rule( Acl::permit_, ip4Filter( 6 ) ) ) );
   ASSERT_EQ( Fennel::aclCreateSuccess, acl.closed() );
   acl.committed();
   for ( const U32 unit : sw_.units() ) {
      EXPECT_TRUE( acl.common( unit )->dirty() ) << unit;
      EXPECT_FALSE( acl.common( unit )->installed() ) << unit;
      EXPECT_FALSE( sw_.helper()->unitDirty( unit ) ) << unit;
      EXPECT_EQ( Fennel::aclCreateSuccess, unitError( unit ) ) << unit;
   }
   EXPECT_FALSE( sw_.helper()->dirty() );
}

class FullUnitTest : public ResultCodesTest {
 protected:
   static HalyardTest::AgentOptions smallGroups() {
      HalyardTest::AgentOptions options;
      options.sim.groupTable =
          HalyardTest::groupTableWith( HalyardTest::catalogKind( "trident3" ),
                                       { Halyard::tcamGroupIpAcl, Halyard::tcamGroupIpAclVfp }, 4 );
      return options;
   }
   FullUnitTest() : ResultCodesTest( smallGroups() ) {}

   // Takes every entry the unit's IPv4 groups have left.
   void filled( U32 unit ) {
      for ( const auto a : { Halyard::tcamGroupIpAcl, Halyard::tcamGroupIpAclVfp } ) {
         const auto manager = sw_.manager( a );
         while ( manager->entriesAvailable( unit ) > 0 ) {
            manager->getEntry( unit, "filler" );
         }
      }
   }
};

// No entry on unit 0: 2 for the call, the marks and the error on unit 0, and unit 1 gets its
// rule and stays clean.
TEST_F( FullUnitTest, FailingUnitDoesNotStopTheOthers ) {
   DrivenAcl acl = bothUnits( "full" );
   filled( 0 );
   EXPECT_EQ( Fennel::aclCreateNoEntries,
              acl.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortEq( 23 ) } ) );
   expectMarked( acl, 0, Fennel::aclCreateNoEntries );
   EXPECT_TRUE( acl.entries( 0, 0 ).empty() );
   expectClean( acl, 1 );
   EXPECT_EQ( 1u, acl.entries( 1, 0 ).size() );
}

}  // namespace
}  // namespace AclIpTest
