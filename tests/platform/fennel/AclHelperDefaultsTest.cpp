// What the generic base answers for operations that a back-end leaves alone:
// neutral answers, refusals with a trace line, and a stop naming the
// operation where only a back-end can answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/fennel/FennelAclHelper.h"
#include "platform/vesper/Trace.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclKey;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const Pylon::IntfId eth1 = Pylon::IntfId::ethernet( 1 );

class AclHelperDefaultsTest : public FennelTest::ActivityTest {
 protected:
   Vesper::Ptr<FennelTest::StubBackEnd> helper_ = FennelTest::StubBackEnd::create();
   AclKey key_{ "acl1", Acl::AclType::ipv6, Acl::AclDirection::out };
   Fennel::AclData::Ptr aclData_ = Fennel::aclDataFactory( key_, 3 );
};

TEST_F( AclHelperDefaultsTest, NeutralAnswersOfTheBase ) {
   EXPECT_TRUE( helper_->intfSupportsAcl( eth1 ) );
   EXPECT_EQ( key_, helper_->aclOwner( eth1, key_ ) );
   EXPECT_EQ( "aclGroupDefault", helper_->aclGroup( eth1, Acl::AclDirection::in ) );
   EXPECT_FALSE( helper_->subIntfAclSharingSupported( key_ ) );
   EXPECT_EQ( std::nullopt,
              helper_->aclRuleCounterPerChipSinceLastPoll( aclData_, 10, Acl::UniqueId( 5 ), 0 ) );
}

TEST_F( AclHelperDefaultsTest, RemoveAndBatchCommitLeaveEverythingAsItWas ) {
   helper_->removeAcl( aclData_ );
   helper_->batchCommitAcls();
   EXPECT_EQ( *Fennel::aclDataFactory( key_, 3 ), *aclData_ );
   EXPECT_FALSE( helper_->dirty() );
   EXPECT_THAT( helper_->dirtyAcl(), IsEmpty() );
}

TEST_F( AclHelperDefaultsTest, BaseVerificationHasNothingToReport ) {
   Vesper::TraceCapture capture( "FennelHelper::*" );
   helper_->verifyHwInit();
   helper_->verifyIpDIRule( aclData_, Acl::UniqueId( 1 ), 10, 0 );
   helper_->verifyDeepInspSkipL4();
   EXPECT_THAT( capture.lines(), IsEmpty() );
   EXPECT_THAT( helper_->unitError(), IsEmpty() );
}

TEST_F( AclHelperDefaultsTest, ExtendedActionsTapAggAndDeepInspectionAreRefusedWithATrace ) {
   Vesper::TraceCapture capture( "FennelHelper::AclHelper" );
   const Acl::RuleConfig rule;
   const Acl::UniqueId id( 7 );
   EXPECT_FALSE( helper_->createAclsWithExtActions() );
   EXPECT_FALSE( helper_->addAclWithExtActions( aclData_, rule, id, 0 ) );
   EXPECT_FALSE( helper_->deleteAcl( aclData_ ) );
   EXPECT_FALSE( helper_->doConfigureTapAggMode( true ) );
   EXPECT_FALSE( helper_->handleDeepInspSkipL4( true ) );
   const auto lines = capture.lines();
   ASSERT_EQ( 5u, lines.size() );
   EXPECT_EQ( "FennelHelper::AclHelper::createAclsWithExtActions: not served by this back-end",
              lines.front() );
   EXPECT_EQ( "FennelHelper::AclHelper::handleDeepInspSkipL4: not served by this back-end",
              lines.back() );
}

TEST_F( AclHelperDefaultsTest, UnsupportedHardwareIsLoggedOnTheTrace ) {
   Vesper::TraceCapture capture( "FennelHelper::AclHelper" );
   helper_->logAclUnsupportedHardware( "acl1", eth1 );
   EXPECT_THAT( capture.lines(),
                ElementsAre( "ACL acl1 is not supported by the hardware of Ethernet1" ) );
}

// Each operation that only a back-end can serve stops the process with an
// assertion that names it.
struct BackEndOnly {
   const char* name;
   std::function<void( FennelHelper::AclHelper&, const Fennel::AclData::Ptr& )> call;
};

class BackEndOnlyTest : public FennelTest::ActivityTest,
                        public ::testing::WithParamInterface<BackEndOnly> {};

TEST_P( BackEndOnlyTest, StopsNamingTheOperation ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   auto helper = FennelTest::StubBackEnd::create();
   auto aclData = Fennel::aclDataFactory( AclKey( "a", Acl::AclType::ip, Acl::AclDirection::in ) );
   const std::string pattern = std::string( "FennelHelper::AclHelper::" ) + GetParam().name +
                               ".*served by the ACL back-end, not by its generic base";
   EXPECT_DEATH( GetParam().call( *helper, aclData ), pattern );
}

using Helper = FennelHelper::AclHelper;
using Data = Fennel::AclData::Ptr;
const Acl::RuleConfig anyRule;
const Fennel::IntfPairKey pair( eth1, Pylon::IntfId() );

INSTANTIATE_TEST_SUITE_P(
    Operations, BackEndOnlyTest,
    ::testing::Values( BackEndOnly{ "hwInit", []( Helper& h, const Data& ) { h.hwInit(); } },
                       BackEndOnly{ "createIpAclSubrule",
                                    []( Helper& h, const Data& d ) {
                                       h.createIpAclSubrule(
                                           Acl::AclType::ip, anyRule, Acl::UniqueId( 1 ), d, 0, 0,
                                           0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, false, 0, 0 );
                                    } },
                       BackEndOnly{
                           "addIntfToAcl",
                           []( Helper& h, const Data& d ) { h.addIntfToAcl( pair, d, nullptr ); } },
                       BackEndOnly{ "aclRuleCountersSinceLastPoll",
                                    []( Helper& h, const Data& d ) {
                                       h.aclRuleCountersSinceLastPoll( d, 10, Acl::UniqueId( 1 ) );
                                    } } ),
    []( const ::testing::TestParamInfo<BackEndOnly>& info ) {
       return std::string( info.param.name );
    } );

}  // namespace
