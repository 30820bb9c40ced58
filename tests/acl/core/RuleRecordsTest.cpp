// The rule-level records: the two indices of AclCommonUnitData, the name-in-use texts of a
// rule made again with other values, the consistency cross-check, and the per-rule maps.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acl/HalyardAclCommon.h"
#include "platform/halyard/UdfData.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Exception.h"
#include "platform/vesper/ValueText.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

class RuleRecordsTest : public ::testing::Test {
 protected:
   std::string nameInUseError( Acl::UniqueId aclId, U32 ruleNum, bool dropAll ) {
      try {
         common_->aclRuleIs( aclId, ruleNum, dropAll );
      } catch ( const Vesper::NameInUseException& e ) {
         return e.what();
      }
      return "no exception";
   }

   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident2" } ),
                                 HalyardTest::notBroughtUp() };
   const AclCommonUnitData::Ptr common_ =
       aclCommonUnitDataFactory( 0, Acl::ip_, sw_.sim().hcsd(), sw_.groupManager() );
};

TEST_F( RuleRecordsTest, RuleMadeAgainWithOtherValuesNamesTheAttribute ) {
   common_->aclRuleIs( Acl::UniqueId( 7 ), 3, false );
   EXPECT_EQ( nameInUseError( Acl::UniqueId( 8 ), 3, false ),
              "Reinstantiating the pointer interface where constructor parameter attribute "
              "_aclId has a different value of 8 than the current value of 7 not allowed" );
   EXPECT_EQ( nameInUseError( Acl::UniqueId( 7 ), 3, true ),
              "Reinstantiating the pointer interface where constructor parameter attribute "
              "_dropAll has a different value of true than the current value of false not "
              "allowed" );
   EXPECT_EQ( common_->aclRule().size(), 1u );
   EXPECT_EQ( common_->aclRule( 3 )->aclId(), Acl::UniqueId( 7 ) );
}

TEST_F( RuleRecordsTest, CreateEntersBothIndicesAndAlwaysDropsAll ) {
   const AclRuleData::Ptr rule = common_->aclRuleCreate( Acl::UniqueId( 21 ), 0, false );
   EXPECT_TRUE( rule->dropAll() );
   EXPECT_EQ( common_->aclRule( 0 ), rule );
   EXPECT_EQ( common_->aclRuleData( Acl::UniqueId( 21 ) ), rule );
   EXPECT_EQ( common_->getAclRuleDataForAclId( Acl::UniqueId( 21 ) ), rule );
   EXPECT_EQ( common_->aclRuleCreate( Acl::UniqueId( 21 ), 0, false ), rule );
}

TEST_F( RuleRecordsTest, RulesWalkInRisingNumberWhateverTheOrderOfCreation ) {
   for ( U32 ruleNum : { 9u, 2u, 40u, 0u, 7u } ) {
      common_->aclRuleCreate( Acl::UniqueId( 100 + ruleNum ), ruleNum, true );
   }
   std::vector<U32> walked;
   for ( const AclRuleData& rule : common_->aclRule() ) {
      walked.push_back( rule.ruleNum() );
   }
   EXPECT_EQ( walked, ( std::vector<U32>{ 0, 2, 7, 9, 40 } ) );
}

TEST_F( RuleRecordsTest, CrossCheckPassesOnConsistentIndices ) {
   sw_.sim().hcsd()->aclRuleIndexConsistencyCheckIs( true );
   const AclRuleData::Ptr rule = common_->aclRuleCreate( Acl::UniqueId( 5 ), 1, true );
   EXPECT_EQ( common_->getAclRuleDataForAclId( Acl::UniqueId( 5 ) ), rule );
   EXPECT_FALSE( common_->getAclRuleDataForAclId( Acl::UniqueId( 6 ) ) );
}

using RuleRecordsDeathTest = RuleRecordsTest;

TEST_F( RuleRecordsDeathTest, CrossCheckStopsOnARuleMissingFromTheIdIndex ) {
   sw_.sim().hcsd()->aclRuleIndexConsistencyCheckIs( true );
   common_->aclRuleIs( Acl::UniqueId( 5 ), 1, true );
   EXPECT_DEATH( common_->getAclRuleDataForAclId( Acl::UniqueId( 5 ) ),
                 "Assertion `aclRuleIter\\.ptr\\(\\) == found' failed" );
}

TEST_F( RuleRecordsDeathTest, CrossCheckStopsOnAnIdWhoseRuleLeftTheNumberIndex ) {
   sw_.sim().hcsd()->aclRuleIndexConsistencyCheckIs( true );
   common_->aclRuleCreate( Acl::UniqueId( 5 ), 1, true );
   common_->aclRuleDel( 1 );
   EXPECT_DEATH( common_->getAclRuleDataForAclId( Acl::UniqueId( 5 ) ),
                 "Assertion `!found' failed" );
}

}  // namespace
}  // namespace AclCoreTest
