// The state that the back-end reports through its generic base: the generic
// layer hears each real change of dirty state once, after the back-end's
// extension ran; capabilities start at their stated defaults.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fennel/FennelAclHelper.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclKey;
using FennelHelper::AclCapability;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
