// Range checkers: shared by the subrules of a rule, asked for again by another rule, given back
// when an entry can take no more, none on egress; and the count the records hold is the count
// the manager holds. Run on a chip that reads checkers back by range configuration and on one
// that reads them the older way.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "platform/halyard/RangeCheckerDesc.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/support/ChipReadback.h"
#include "tests/support/DrivenAcl.h"
#include "tests/support/ProcessState.h"
#include "tests/support/SwitchLayout.h"

namespace AclIpTest {

using namespace HalyardTest;
namespace {

using Halyard::RangeCheckerDesc;

const RangeCheckerDesc dst1000( 1000, 2000, Halyard::rangeCheckerDstPort );
const RangeCheckerDesc src1( 1, 100, Halyard::rangeCheckerSrcPort );

HalyardTest::AgentOptions limited( U32 checkers, U32 perEntry ) {
   HalyardTest::AgentOptions options;
   Sim::UnitLimits limits;
   limits.rangeCheckers = checkers;
   limits.rangeCheckersPerEntry = perEntry;
   limits.udfChunks = 16;
   options.sim.unitLimits = limits;
   return options;
}

class RangeCheckerTest : public ::testing::TestWithParam<std::string> {
 protected:
   explicit RangeCheckerTest( const HalyardTest::AgentOptions& options = {} )
       : sw_( HalyardTest::SwitchLayout( { GetParam() } ), options ) {}

   DrivenAcl acl( const char* name, Acl::AclDirection direction = Acl::in_, U32 port = 1 ) {
      return DrivenAcl( sw_, name, Acl::ip_, direction, { HalyardTest::intfOf( 0, port ) } );
   }
   U32 uses( const RangeCheckerDesc& desc ) {
      return sw_.groupManager()->rangeCheckerUses( 0, desc );
   }
   U32 attachedId( U32 entry, size_t i = 0 ) {
      return sw_.chip( 0 ).rangeChecks( entry ).value().at( i ).id;
   }
   Vesper::Name chipName() { return sw_.sim().hcsd()->halyardModId( 0 ).chipName(); }

   HalyardTest::CleanProcessState process_;
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_;
};

TEST_P( RangeCheckerTest, SharedWithinARuleAskedForAgainByAnother ) {
   DrivenAcl a = acl( "a" );
   Terms first = dstPortRange( 1000, 2000 );
   first.srcPort = 5;
   first.srcPortMask = 0xFFFF;
   Terms second = first;
   second.srcPort = 6;
   ASSERT_EQ( 0, a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 17 ) ), { first, second } ) );
   const U32 id = a.common( 0 )->aclRule( 0 )->rangeChecker( dst1000 ).value();
   EXPECT_EQ( 1u, uses( dst1000 ) );
   EXPECT_EQ( id, attachedId( a.entries( 0, 0, 0 ).at( 0 ) ) );
   EXPECT_EQ( id, attachedId( a.entries( 0, 0, 1 ).at( 0 ) ) );

   ASSERT_EQ( 0,
              a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 1000, 2000 ) } ) );
   EXPECT_EQ( 2u, uses( dst1000 ) );
   EXPECT_EQ( id, a.common( 0 )->aclRule( 1 )->rangeChecker( dst1000 ) );
}

// The subrule is found whether its ports stand in checkers or in port qualifiers, a masked port
// read as the range it covers; other bounds are not found.
TEST_P( RangeCheckerTest, SubruleFoundByItsRanges ) {
   DrivenAcl a = acl( "a" );
   Terms ranged = dstPortRange( 1000, 2000 );
   ranged.srcPort = 80;
   ranged.srcPortMask = 0xFFFF;
   Terms block;
   block.dstPort = 1024;
   block.dstPortMask = 0xFC00;
   block.l4 = true;
   const Acl::RuleConfig rule = ip4Rule( Acl::deny_, ip4Filter( 6 ) );
   ASSERT_EQ( 0, a.ruleIs( rule, { ranged, block } ) );
   auto exists = [&]( U32 sub, U16 srcLow, U16 srcHigh, bool hasSrc, U16 dstLow, U16 dstHigh,
                      bool hasDst ) {
      return sw_.helper()->ipPortRangeSubruleExists( a.data(), rule.uniqueId(), 0, sub, srcLow,
                                                     srcHigh, hasSrc, dstLow, dstHigh, hasDst );
   };
   EXPECT_TRUE( exists( 0, 80, 80, true, 1000, 2000, true ) );
   EXPECT_TRUE( exists( 0, 0, 0, false, 1000, 2000, true ) );
   EXPECT_FALSE( exists( 0, 80, 80, true, 1000, 2001, true ) );
   EXPECT_FALSE( exists( 0, 81, 81, true, 0, 0, false ) );
   EXPECT_TRUE( exists( 1, 0, 0, false, 1024, 2047, true ) );
   EXPECT_FALSE( exists( 1, 0, 0, false, 1024, 2048, true ) );
   EXPECT_TRUE( exists( 1, 0, 0, false, 0, 0, false ) );
   EXPECT_FALSE( exists( 2, 0, 0, false, 1024, 2047, true ) );
}

// After every ACL, the ranges that the rule records hold are the checkers standing on the chip,
// and each is used once for every rule that holds it.
TEST_P( RangeCheckerTest, RecordsAndManagerAgreeAfterEveryAcl ) {
   std::vector<DrivenAcl> acls;
   auto agree = [&]( const char* when ) {
      std::map<RangeCheckerDesc, U32> held;
      for ( const DrivenAcl& a : acls ) {
         for ( const auto& rule : a.common( 0 )->aclRule() ) {
            for ( const auto& member : rule.rangeChecker() ) {
               ++held[member.key()];
            }
         }
      }
      EXPECT_EQ( held.size(), sw_.chip( 0 ).rangeCheckerIds().size() ) << when;
      for ( const auto& [desc, rules] : held ) {
         EXPECT_EQ( rules, uses( desc ) ) << when << " " << desc;
      }
   };
   acls.push_back( acl( "a", Acl::in_, 1 ) );
   acls[0].rulesCommitted( { { ip4Rule( Acl::deny_, ip4Filter( 17 ) ),
                               { dstPortRange( 1000, 2000 ), srcPortRange( 1, 100 ) } },
                             { ip4Rule( Acl::permit_, ip4Filter( 6 ) ),
                               { dstPortRange( 1000, 2000 ), ipLengthEq( 64 ) } } } );
   agree( "after a" );
   acls.push_back( acl( "b", Acl::in_, 3 ) );
   acls[1].rulesCommitted(
       { { ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 1000, 2000 ) } },
         { ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 7, 9 ) } } } );
   agree( "after b" );
}

// No checker on egress: a range fails with 3 and marks the ACL dirty, with no unit error; an
// exact port is a plain qualifier and succeeds.
TEST_P( RangeCheckerTest, EgressHasNone ) {
   DrivenAcl a = acl( "a", Acl::out_, 2 );
   EXPECT_EQ( 0, a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortEq( 22 ) } ) );
   EXPECT_FALSE( a.common( 0 )->dirty() );
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker,
              a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 1, 1023 ) } ) );
   EXPECT_TRUE( a.common( 0 )->dirty() );
   EXPECT_FALSE( sw_.helper()->unitDirty( 0 ) );
   EXPECT_EQ( 0, sw_.helper()->unitError( chipName() ) );
   EXPECT_TRUE( sw_.chip( 0 ).rangeCheckerIds().empty() );
   EXPECT_TRUE( HalyardTest::numericQual( sw_.chip( 0 ), a.entries( 0, 0 ).at( 0 ),
                                          Sim::QualId::L4DstPort ) );
}

class OneCheckerPerEntryTest : public RangeCheckerTest {
 protected:
   OneCheckerPerEntryTest() : RangeCheckerTest( limited( 64, 1 ) ) {}
};

// An entry that takes no more checkers gives back the one just obtained; the release made for
// a reused id is given back as well.
TEST_P( OneCheckerPerEntryTest, GivenBackWhenTheEntryTakesNoMore ) {
   DrivenAcl a = acl( "a" );
   Terms both = srcPortRange( 1, 100 );
   both.dstLow = 1000;
   both.dstHigh = 2000;
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker,
              a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 17 ) ), { both } ) );
   EXPECT_EQ( 1u, uses( src1 ) );
   EXPECT_EQ( 0u, uses( dst1000 ) );
   EXPECT_TRUE( a.common( 0 )->aclRule( 0 )->rangeCheckerHas( src1 ) );
   EXPECT_FALSE( a.common( 0 )->aclRule( 0 )->rangeCheckerHas( dst1000 ) );
   EXPECT_TRUE( a.common( 0 )->dirty() );
   EXPECT_EQ( 0, sw_.helper()->unitError( chipName() ) );

   // Subrule 0 holds the destination checker; subrule 1 reuses its id, cannot attach it, and
   // gives one use back.
   DrivenAcl b = acl( "b", Acl::in_, 3 );
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker, b.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 17 ) ),
                                                         { dstPortRange( 1000, 2000 ), both } ) );
   EXPECT_EQ( 0u, uses( dst1000 ) );
}

class FewCheckersTest : public RangeCheckerTest {
 protected:
   FewCheckersTest() : RangeCheckerTest( limited( 1, 3 ) ) {}
};

// With the unit's checkers gone, a port range fails with 3 and no unit error, an IP length
// with 2 and the unit error.
TEST_P( FewCheckersTest, NoneLeft ) {
   DrivenAcl a = acl( "a" );
   EXPECT_EQ( 0, a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 1, 2 ) } ) );
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker,
              a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { dstPortRange( 3, 4 ) } ) );
   EXPECT_FALSE( sw_.helper()->unitDirty( 0 ) );
   EXPECT_EQ( Fennel::aclCreateNoEntries,
              a.ruleIs( ip4Rule( Acl::deny_, ip4Filter( 6 ) ), { ipLengthEq( 100 ) } ) );
   EXPECT_TRUE( sw_.helper()->unitDirty( 0 ) );
   EXPECT_EQ( Fennel::aclCreateNoEntries, sw_.helper()->unitError( chipName() ) );
}

INSTANTIATE_TEST_SUITE_P( ReadBackForms, RangeCheckerTest,
                          ::testing::Values( "trident2", "trident3" ) );
INSTANTIATE_TEST_SUITE_P( ReadBackForms, OneCheckerPerEntryTest,
                          ::testing::Values( "trident2", "trident3" ) );
INSTANTIATE_TEST_SUITE_P( ReadBackForms, FewCheckersTest,
                          ::testing::Values( "trident2", "trident3" ) );

}  // namespace
}  // namespace AclIpTest
