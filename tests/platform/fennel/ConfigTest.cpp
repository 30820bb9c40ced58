// The configuration classes that the generic layer hands down: the ACL tree,
// the interface bindings and the hardware access-list settings. Keyed
// creators return what stands; reactors hear each real change once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "platform/acl/AclConfig.h"
#include "platform/acl/IntfConfig.h"
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

TEST_F( AclConfigTest, ARuleTakesItsKeyAsSequenceNumberAndAnEqualRuleIsSilent ) {
   Acl::RuleConfig rule = ipRule( Acl::Action::deny );
   rule.seqNoIs( 99 );
   list_->ruleIs( 10, rule );
   EXPECT_EQ( 10u, list_->rule( 10 )->seqNo() );
   list_->ruleIs( 10, rule );
   list_->ruleIs( 10, ipRule( Acl::Action::deny ) );
   EXPECT_THAT( events_.take(), ElementsAre( "rule 10 1" ) );
   list_->ruleIs( 10, ipRule( Acl::Action::permit ) );
   EXPECT_EQ( Acl::Action::permit, list_->rule( 10 )->action() );
   EXPECT_THAT( events_.take(), ElementsAre( "rule 10 1" ) );
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

TEST_F( AclConfigTest, StandardFlagNotifiesOnChange ) {
   list_->standardIs( false );
   list_->standardIs( true );
   list_->standardIs( true );
   EXPECT_TRUE( list_->standard() );
   EXPECT_THAT( events_.take(), ElementsAre( "standard 1" ) );
}

TEST_F( AclConfigTest, ARuleOfAnotherTypeStopsTheProcess ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   EXPECT_DEATH( list_->ruleIs( 10, Acl::RuleConfig( Acl::MacRuleConfig() ) ),
                 "rule.aclType\\(\\) == type\\(\\)" );
}

class ConfigReactor : public Acl::Config::NotifieeConst {
 public:
   ConfigReactor( const Acl::Config::Ptr& config, FennelTest::EventLog& log ) : log_( log ) {
      notifierIs( config );
   }
   void onAclConfig( AclType type, const Vesper::Name& name ) override {
      log_.add( "acl ", type, " ", name, " ", notifier()->aclConfigHas( type, name ) );
   }

 private:
   FennelTest::EventLog& log_;
};

class ConfigTreeTest : public FennelTest::ActivityTest {
 protected:
   Acl::Config::Ptr config_ = Acl::configFactory();
   ConfigReactor reactor_{ config_, events_ };
};

TEST_F( ConfigTreeTest, ListsAreKeyedByTypeAndNameAndFoundAgain ) {
   const Acl::AclConfig::Ptr ip = config_->aclConfigIs( AclType::ip, "a" );
   const Acl::AclConfig::Ptr mac = config_->aclConfigIs( AclType::mac, "a" );
   EXPECT_NE( ip, mac );
   EXPECT_TRUE( mac->hasNotificationActive() );
   EXPECT_EQ( ip, config_->aclConfigIs( AclType::ip, "a" ) );
   EXPECT_EQ( ip, config_->aclConfig( AclType::ip, "a" ) );
   EXPECT_EQ( nullptr, config_->aclConfig( AclType::ipv6, "a" ) );
   EXPECT_EQ( 1u, config_->aclConfig( AclType::ip ).size() );
   EXPECT_THAT( events_.take(), ElementsAre( "acl ip a 1", "acl mac a 1" ) );
}

TEST_F( ConfigTreeTest, DeletionReturnsTheListAndTellsOnce ) {
   const Acl::AclConfig::Ptr ip = config_->aclConfigIs( AclType::ip, "a" );
   config_->aclConfigIs( AclType::ipv6, "b" );
   events_.take();
   EXPECT_EQ( ip, config_->aclConfigDel( AclType::ip, "a" ) );
   EXPECT_EQ( nullptr, config_->aclConfigDel( AclType::ip, "a" ) );
   EXPECT_THAT( events_.take(), ElementsAre( "acl ip a 0" ) );
   config_->aclConfigDelAll();
   EXPECT_FALSE( config_->aclConfigHas( AclType::ipv6, "b" ) );
   EXPECT_THAT( events_.take(), ElementsAre( "acl ipv6 b 0" ) );
}

class IntfConfigReactor : public Acl::IntfConfig::NotifieeConst {
 public:
   IntfConfigReactor( const Acl::IntfConfig::Ptr& config, FennelTest::EventLog& log )
       : log_( log ) {
      notifierIs( config );
   }
   void onIntfAcl( AclType type, AclDirection direction, Pylon::IntfId intf ) override {
      log_.add( intf, " ", type, " ", direction, " '", notifier()->intfAcl( type, direction, intf ),
                "'" );
   }

 private:
   FennelTest::EventLog& log_;
};

class IntfConfigTest : public FennelTest::ActivityTest {
 protected:
   Acl::IntfConfig::Ptr config_ = Acl::intfConfigFactory();
   IntfConfigReactor reactor_{ config_, events_ };
   Pylon::IntfId eth1_ = Pylon::IntfId::ethernet( 1 );
   Pylon::IntfId vlan10_ = Pylon::IntfId::vlan( Pylon::VlanId( 10 ) );
};

TEST_F( IntfConfigTest, OneAclPerTypeAndDirectionOnEachInterface ) {
   config_->intfAclIs( AclType::ip, AclDirection::in, eth1_, "a" );
   config_->intfAclIs( AclType::ip, AclDirection::out, eth1_, "b" );
   config_->intfAclIs( AclType::mac, AclDirection::in, eth1_, "m" );
   config_->intfAclIs( AclType::ipv6, AclDirection::in, vlan10_, "r6" );
   config_->intfAclIs( AclType::ip, AclDirection::in, eth1_, "a" );
   config_->intfAclIs( AclType::ip, AclDirection::in, eth1_, "c" );
   EXPECT_EQ( "c", config_->intfAcl( AclType::ip, AclDirection::in, eth1_ ) );
   EXPECT_EQ( "b", config_->intfAcl( AclType::ip, AclDirection::out, eth1_ ) );
   EXPECT_EQ( "", config_->intfAcl( AclType::ipv6, AclDirection::in, eth1_ ) );
   EXPECT_TRUE( config_->intfAclHas( AclType::ipv6, AclDirection::in, vlan10_ ) );
   EXPECT_EQ( 1u, config_->intfAcl( AclType::mac, AclDirection::in ).size() );
   EXPECT_THAT( events_.take(),
                ElementsAre( "Ethernet1 ip in 'a'", "Ethernet1 ip out 'b'", "Ethernet1 mac in 'm'",
                             "Vlan10 ipv6 in 'r6'", "Ethernet1 ip in 'c'" ) );
}

TEST_F( IntfConfigTest, RemovingBindingsTellsOfEachOnce ) {
   config_->intfAclIs( AclType::ip, AclDirection::in, eth1_, "a" );
   config_->intfAclIs( AclType::mac, AclDirection::out, vlan10_, "m" );
   events_.take();
   config_->intfAclDel( AclType::ip, AclDirection::out, eth1_ );
   config_->intfAclDel( AclType::ip, AclDirection::in, eth1_ );
   EXPECT_THAT( events_.take(), ElementsAre( "Ethernet1 ip in ''" ) );
   config_->intfAclDelAll();
   EXPECT_FALSE( config_->intfAclHas( AclType::mac, AclDirection::out, vlan10_ ) );
   EXPECT_THAT( events_.take(), ElementsAre( "Vlan10 mac out ''" ) );
}

class ParamConfigReactor : public Acl::ParamConfig::NotifieeConst {
 public:
   ParamConfigReactor( const Acl::ParamConfig::Ptr& config, FennelTest::EventLog& log )
       : log_( log ) {
      notifierIs( config );
   }
   void onIngressRaclSharing() override {
      log_.add( "sharing ", notifier()->ingressRaclSharing() );
   }
   void onIngressMirrorAclKeyWidthMode() override {
      log_.add( "mirrorWidth ", notifier()->ingressMirrorAclKeyWidthMode() );
   }
   void onIngressIpv6SecurityAclKeyWidthMode() override {
      log_.add( "ip6Width ", notifier()->ingressIpv6SecurityAclKeyWidthMode() );
   }
   void onPermitIcmp6TypesConfig() override {
      log_.add( "icmp6 ", notifier()->permitIcmp6TypesConfig() );
   }
   void onPermitDuringAclUpdateConfig() override {
      log_.add( "update ", notifier()->permitDuringAclUpdateConfig() );
   }

 private:
   FennelTest::EventLog& log_;
};

class ParamConfigTest : public FennelTest::ActivityTest {
 protected:
   Acl::ParamConfig::Ptr config_ = Acl::paramConfigFactory();
   ParamConfigReactor reactor_{ config_, events_ };
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

TEST_F( ParamConfigTest, EachSettingNotifiesOncePerChange ) {
   config_->ingressRaclSharingIs( true );
   config_->ingressRaclSharingIs( true );
   config_->ingressMirrorAclKeyWidthModeIs( Acl::AclKeyWidthMode::narrow );
   config_->ingressIpv6SecurityAclKeyWidthModeIs( Acl::AclKeyWidthMode::narrow );
   config_->permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::defaultTypes );
   config_->permitIcmp6TypesConfigIs( Acl::PermitIcmp6TypesConfig::neighborDiscovery );
   config_->permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::deny );
   config_->permitDuringAclUpdateConfigIs( Acl::PermitDuringAclUpdateConfig::deny );
   EXPECT_THAT( events_.take(), ElementsAre( "sharing 1", "mirrorWidth narrow", "ip6Width narrow",
                                             "icmp6 neighborDiscovery", "update deny" ) );
}

TEST( ParamConfigValuesTest, NumbersAreStableAndNamesParseBack ) {
   for ( const auto& entry : Acl::permitDuringAclUpdateConfigNames ) {
      EXPECT_EQ( entry.value, Vesper::sequenceToValue<Acl::PermitDuringAclUpdateConfig>(
                                  Vesper::stringValue( entry.value ) ) );
   }
   EXPECT_EQ( Acl::AclKeyWidthMode::narrow,
              Vesper::sequenceToValue<Acl::AclKeyWidthMode>( "narrow" ) );
   EXPECT_THROW( Vesper::sequenceToValue<Acl::PermitIcmp6TypesConfig>( "all" ),
                 Vesper::ParseException );
}

}  // namespace
