// The configuration that the generic layer hands down: an ACL's rules walk in
// sequence order whatever the order of entry, a rule of another type stops
// the process, and the hardware access-list settings start at their defaults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/acl/AclConfig.h"
#include "platform/acl/ParamConfig.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Acl::RuleConfig ipRule( Acl::Action action, U8 proto = 0 ) {
   Acl::IpFilter filter;
   filter.protoIs( proto );
   Acl::RuleConfig rule{ Acl::IpRuleConfig( filter ) };
   rule.actionIs( action );
   return rule;
}

class AclConfigReactor : public Acl::AclConfig::NotifieeConst {
 public:
   AclConfigReactor( const Acl::AclConfig::Ptr& list, FennelTest::EventLog& log ) : log_( log ) {
      notifierIs( list );
   }
   void onStandard() override { log_.add( "standard ", notifier()->standard() ); }
   void onRule( U32 seqNo ) override {
      log_.add( "rule ", seqNo, " ", notifier()->ruleHas( seqNo ) );
   }

 private:
   FennelTest::EventLog& log_;
};

class AclConfigTest : public FennelTest::ActivityTest {
 protected:
   Acl::AclConfig::Ptr list_ = Acl::aclConfigFactory( "web", AclType::ip );
   AclConfigReactor reactor_{ list_, events_ };

   std::vector<U32> seqNos() const {
      std::vector<U32> result;
      for ( const auto& [seqNo, rule] : list_->rule() ) {
         EXPECT_EQ( seqNo, rule.seqNo() );
         result.push_back( seqNo );
      }
      return result;
   }
};

TEST_F( AclConfigTest, RulesAreWalkedInSequenceOrderWhateverTheOrderOfEntry ) {
   list_->ruleIs( 30, ipRule( Acl::Action::deny ) );
   list_->ruleIs( 10, ipRule( Acl::Action::permit, 6 ) );
   list_->ruleIs( 20, ipRule( Acl::Action::permit, 17 ) );
   EXPECT_THAT( seqNos(), ElementsAre( 10, 20, 30 ) );
   EXPECT_EQ( 3u, list_->ruleCount() );
   ASSERT_NE( nullptr, list_->rule( 20 ) );
   EXPECT_EQ( 17, list_->rule( 20 )->ipFilter().proto() );
   EXPECT_EQ( nullptr, list_->rule( 25 ) );
   EXPECT_THAT( events_.take(), ElementsAre( "rule 30 1", "rule 10 1", "rule 20 1" ) );
}

TEST_F( AclConfigTest, DeletionTellsOfEachRuleInSequenceOrder ) {
   list_->ruleIs( 20, ipRule( Acl::Action::deny ) );
   list_->ruleIs( 10, ipRule( Acl::Action::deny ) );
   events_.take();
   list_->ruleDel( 15 );
   EXPECT_THAT( events_.take(), IsEmpty() );
   list_->ruleDelAll();
   EXPECT_EQ( 0u, list_->ruleCount() );
   EXPECT_THAT( events_.take(), ElementsAre( "rule 10 0", "rule 20 0" ) );
}

TEST_F( AclConfigTest, ARuleOfAnotherTypeStopsTheProcess ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   EXPECT_DEATH( list_->ruleIs( 10, Acl::RuleConfig( Acl::MacRuleConfig() ) ),
                 "rule.aclType\\(\\) == type\\(\\)" );
}

class ParamConfigTest : public FennelTest::ActivityTest {
 protected:
   Acl::ParamConfig::Ptr config_ = Acl::paramConfigFactory();
};

TEST_F( ParamConfigTest, DefaultsOfASwitchWithoutSettings ) {
   EXPECT_FALSE( config_->ingressRaclSharing() );
   EXPECT_EQ( Acl::AclKeyWidthMode::platformDefault, config_->ingressMirrorAclKeyWidthMode() );
   EXPECT_EQ( Acl::AclKeyWidthMode::platformDefault,
              config_->ingressIpv6SecurityAclKeyWidthMode() );
   EXPECT_EQ( Acl::PermitIcmp6TypesConfig::defaultTypes, config_->permitIcmp6TypesConfig() );
   EXPECT_EQ( Acl::PermitDuringAclUpdateConfig::platformDefault,
              config_->permitDuringAclUpdateConfig() );
}

}  // namespace
