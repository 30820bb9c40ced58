// The state that the back-end reports through its generic base: every setter
// stores, the getters read it back, and reactors hear each real change once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fennel/FennelAclHelper.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclKey;
using FennelHelper::AclCapability;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

Pylon::IntfId eth( U32 port ) {
   return Pylon::IntfId::ethernet( port );
}

AclKey key( const char* name, Acl::AclType type = Acl::AclType::ip ) {
   return AclKey( name, type, Acl::AclDirection::in );
}

class HelperReactor : public FennelHelper::AclHelper::NotifieeConst {
 public:
   HelperReactor( const FennelHelper::AclHelper::Ptr& helper, FennelTest::EventLog& log )
       : log_( log ) {
      notifierIs( helper );
   }
   void onDirty() override { log_.add( "dirty ", notifier()->dirty() ); }
   void onDirtyAcl( const AclKey& k ) override { log_.add( "dirtyAcl ", k.aclName() ); }
   void onUnitError( const Vesper::Name& chip ) override {
      log_.add( "unitError ", chip, " ", notifier()->unitError( chip ) );
   }
   void onPublishUnitError( const Vesper::Name& chip ) override {
      log_.add( "publishUnitError ", chip, " ", notifier()->publishUnitError( chip ) );
   }
   void onNeedsDeferredUpdate() override {
      log_.add( "needsDeferredUpdate ", notifier()->needsDeferredUpdate() );
   }
   void onAsyncAclConfig() override { log_.add( "asyncAclConfig ", notifier()->asyncAclConfig() ); }
   void onAclIntfBlockedStatus( Pylon::IntfId intf ) override {
      log_.add( "blocked ", intf, " ", notifier()->aclIntfBlockedStatusHas( intf ) );
   }
   void onCapability( AclCapability c ) override {
      log_.add( "capability ", c, " ", notifier()->capability( c ) );
   }
   void onSupportedTcpFlags() override {
      log_.add( "tcpFlags ", int( notifier()->supportedTcpFlags() ) );
   }
   void onInstallImplicitIcmp6Rules() override {
      log_.add( "icmp6 ", notifier()->installImplicitIcmp6Rules() );
   }

 private:
   FennelTest::EventLog& log_;
};

class AclHelperStateTest : public FennelTest::ActivityTest {
 protected:
   Vesper::Ptr<FennelTest::StubBackEnd> helper_ = FennelTest::StubBackEnd::create();
   HelperReactor reactor_{ helper_, events_ };
};

TEST_F( AclHelperStateTest, DirtyIsStoresThroughTheBackEndsExtensionAndNotifiesOnChangeOnly ) {
   EXPECT_FALSE( helper_->dirty() );
   helper_->dirtyIs( true );
   helper_->dirtyIs( true );
   EXPECT_TRUE( helper_->dirty() );
   helper_->dirtyIs( false );
   EXPECT_FALSE( helper_->dirty() );
   EXPECT_THAT( events_.take(), ElementsAre( "dirty 1", "dirty 0" ) );
   // The back-end's extension runs after the base stored, on every call.
   EXPECT_THAT( helper_->dirtySeen, ElementsAre( true, true, false ) );
}

TEST_F( AclHelperStateTest, DirtyAclIsASetOfKeysReadableByTheGenericLayer ) {
   helper_->dirtyAclIs( key( "a" ) );
   helper_->dirtyAclIs( key( "b", Acl::AclType::mac ) );
   helper_->dirtyAclIs( key( "a" ) );
   EXPECT_TRUE( helper_->dirtyAcl( key( "b", Acl::AclType::mac ) ) );
   EXPECT_FALSE( helper_->dirtyAcl( key( "b" ) ) ) << "the type is part of the key";
   EXPECT_EQ( 2u, helper_->dirtyAcl().size() );
   EXPECT_THAT( events_.take(), ElementsAre( "dirtyAcl a", "dirtyAcl b" ) );

   helper_->dirtyAclDel( key( "a" ) );
   helper_->dirtyAclDel( key( "a" ) );
   EXPECT_FALSE( helper_->dirtyAcl( key( "a" ) ) );
   EXPECT_THAT( events_.take(), ElementsAre( "dirtyAcl a" ) );
   helper_->dirtyAclDelAll();
   EXPECT_THAT( helper_->dirtyAcl(), IsEmpty() );
   EXPECT_THAT( events_.take(), ElementsAre( "dirtyAcl b" ) );
}

TEST_F( AclHelperStateTest, UnitErrorsAreKeptPerChipAndNotifiedWhenTheyChange ) {
   EXPECT_EQ( Fennel::aclCreateSuccess, helper_->unitError( "chip0" ) );
   helper_->unitErrorIs( "chip0", Fennel::aclCreateNoEntries );
   helper_->unitErrorIs( "chip0", Fennel::aclCreateNoEntries );
   helper_->unitErrorIs( "chip1", Fennel::aclCreateUdfError );
   helper_->unitErrorIs( "chip0", Fennel::aclCreateNoRangeChecker );
   EXPECT_EQ( Fennel::aclCreateNoRangeChecker, helper_->unitError( "chip0" ) );
   EXPECT_EQ( Fennel::aclCreateUdfError, helper_->unitError( "chip1" ) );
   EXPECT_THAT( events_.take(), ElementsAre( "unitError chip0 aclCreateNoEntries",
                                             "unitError chip1 aclCreateUdfError",
                                             "unitError chip0 aclCreateNoRangeChecker" ) );
   helper_->unitErrorDelAll();
   EXPECT_THAT( helper_->unitError(), IsEmpty() );
   EXPECT_EQ( 2u, events_.take().size() );
}

TEST_F( AclHelperStateTest, PublishUnitErrorIsAFlagPerChip ) {
   EXPECT_FALSE( helper_->publishUnitError( "chip0" ) );
   helper_->publishUnitErrorIs( "chip0", true );
   helper_->publishUnitErrorIs( "chip0", true );
   EXPECT_FALSE( helper_->publishUnitError( "chip1" ) );
   helper_->publishUnitErrorDel( "chip0" );
   EXPECT_THAT( events_.take(),
                ElementsAre( "publishUnitError chip0 1", "publishUnitError chip0 0" ) );
}

TEST_F( AclHelperStateTest, DeferredUpdateAndAsyncRequestsNotifyOncePerChange ) {
   helper_->needsDeferredUpdateIs( true );
   helper_->needsDeferredUpdateIs( true );
   helper_->asyncAclConfigIs( true );
   helper_->asyncAclConfigIs( true );
   helper_->needsDeferredUpdateIs( false );
   EXPECT_THAT( events_.take(), ElementsAre( "needsDeferredUpdate 1", "asyncAclConfig 1",
                                             "needsDeferredUpdate 0" ) );
}

TEST_F( AclHelperStateTest, BlockedStatusIsPublishedPerInterfaceAndDeleted ) {
   helper_->aclIntfBlockedStatusIs( eth( 1 ), true );
   helper_->aclIntfBlockedStatusIs( eth( 1 ), true );
   helper_->aclIntfBlockedStatusIs( Pylon::IntfId::vlan( Pylon::VlanId( 10 ) ), true );
   EXPECT_TRUE( helper_->aclIntfBlockedStatus( eth( 1 ) ) );
   EXPECT_FALSE( helper_->aclIntfBlockedStatus( eth( 2 ) ) );
   helper_->aclIntfBlockedStatusDel( eth( 1 ) );
   helper_->aclIntfBlockedStatusDel( eth( 1 ) );
   EXPECT_FALSE( helper_->aclIntfBlockedStatusHas( eth( 1 ) ) );
   EXPECT_THAT( events_.take(),
                ElementsAre( "blocked Ethernet1 1", "blocked Vlan10 1", "blocked Ethernet1 0" ) );
}

TEST_F( AclHelperStateTest, CapabilitiesStartAtTheirDocumentedDefaults ) {
   for ( size_t i = 0; i < FennelHelper::aclCapabilityCount; ++i ) {
      const auto c = static_cast<AclCapability>( i );
      const bool assumed =
          c == AclCapability::macAclSupported || c == AclCapability::ipIngressAclSupported;
      EXPECT_EQ( assumed, helper_->capability( c ) ) << c;
   }
   EXPECT_EQ( Fennel::Ip6DefaultIcmp6TypesSupported::none, helper_->installImplicitIcmp6Rules() );
   EXPECT_EQ( 0x3F, helper_->supportedTcpFlags() );
}

TEST_F( AclHelperStateTest, CapabilitySettersNotifyWithTheFlagOncePerChange ) {
   helper_->revertIncompleteAclSupportedIs( true );
   helper_->revertIncompleteAclSupportedIs( true );
   helper_->aclPayloadSupportedIs( true );
   helper_->macAclSupportedIs( true );
   helper_->capabilityIs( AclCapability::aclPayloadSupported, false );
   EXPECT_TRUE( helper_->revertIncompleteAclSupported() );
   EXPECT_FALSE( helper_->aclPayloadSupported() );
   EXPECT_THAT( events_.take(), ElementsAre( "capability revertIncompleteAclSupported 1",
                                             "capability aclPayloadSupported 1",
                                             "capability aclPayloadSupported 0" ) );
}

TEST_F( AclHelperStateTest, TcpFlagsAndImplicitIcmp6Rules ) {
   helper_->supportedTcpFlagsIs( 0x3F );
   EXPECT_THAT( events_.take(), IsEmpty() );
   helper_->supportedTcpFlagsIs( Acl::tcpFlagSyn | Acl::tcpFlagAck );
   helper_->installImplicitIcmp6RulesIs( Fennel::Ip6DefaultIcmp6TypesSupported::defaultTypes );
   helper_->installImplicitIcmp6RulesIs( Fennel::Ip6DefaultIcmp6TypesSupported::defaultTypes );
   EXPECT_THAT( events_.take(), ElementsAre( "tcpFlags 18", "icmp6 defaultTypes" ) );
}

struct PermitCase {
   bool permitDuringAclUpdate;
   bool defaultActionPermit;
   Acl::PermitDuringAclUpdateConfig config;
   bool expected;
};

class PermitDuringUpdateTest : public FennelTest::ActivityTest,
                               public ::testing::WithParamInterface<PermitCase> {};

TEST_P( PermitDuringUpdateTest, FollowsTheSettingWhereTheBackEndCanPermit ) {
   const PermitCase& c = GetParam();
   auto helper = FennelTest::StubBackEnd::create();
   helper->permitDuringAclUpdateIs( c.permitDuringAclUpdate );
   helper->defaultActionDuringAclUpdatePermitIs( c.defaultActionPermit );
   EXPECT_EQ( c.expected, helper->getPermitDuringAclUpdate( c.config ) );
}

using Cfg = Acl::PermitDuringAclUpdateConfig;
INSTANTIATE_TEST_SUITE_P( Settings, PermitDuringUpdateTest,
                          ::testing::Values( PermitCase{ false, true, Cfg::permit, false },
                                             PermitCase{ false, true, Cfg::platformDefault, false },
                                             PermitCase{ true, false, Cfg::permit, true },
                                             PermitCase{ true, true, Cfg::deny, false },
                                             PermitCase{ true, false, Cfg::platformDefault, false },
                                             PermitCase{ true, true, Cfg::platformDefault,
                                                         true } ) );

}  // namespace
