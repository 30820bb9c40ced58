// The generic layer's records that the back-end reads or writes: the ACL
// record and its status, the common data, the verification sink, and the
// neighbouring agents' records the machine is wired to.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "platform/fennel/AclData.h"
#include "platform/fennel/AclDataStatus.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/fennel/VerifyData.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclKey;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Pylon::IntfId vlan10 = Pylon::IntfId::vlan( Pylon::VlanId( 10 ) );
const Pylon::IntfId vlan20 = Pylon::IntfId::vlan( Pylon::VlanId( 20 ) );

AclKey sharedKey() {
   return AclKey( "r", Acl::AclType::ipv6, Acl::AclDirection::in, false,
                  Fennel::AclVlanIdOrNone( Fennel::AclVlanIdOrNone::vlanSharingId() ) );
}

using AclDataTest = FennelTest::ActivityTest;

TEST_F( AclDataTest, ANewRecordHasNoConfigurationYet ) {
   const Fennel::AclData::Ptr data = Fennel::aclDataFactory( sharedKey(), 4 );
   EXPECT_EQ( Fennel::AclData::aclVersionNone, data->aclVersion() );
   EXPECT_EQ( 0xFFFFFFFFu, data->aclVersion() );
   EXPECT_FALSE( data->installed() );
   EXPECT_EQ( nullptr, data->aclConfig() );
   EXPECT_TRUE( data->vlanId().isShared() ) << "the key's fields read through";
}

TEST_F( AclDataTest, ActiveInterfacesAreCountedAsTheyComeAndGo ) {
   const Fennel::AclData::Ptr data = Fennel::aclDataFactory( sharedKey() );
   data->activeIntfIs( vlan10, true );
   data->activeIntfIs( vlan20, false );
   data->activeIntfIs( vlan10, true );
   EXPECT_EQ( 2u, data->activeIntfCount() );
   EXPECT_TRUE( data->activeIntf( vlan10 ) );
   EXPECT_FALSE( data->activeIntf( vlan20 ) );
   EXPECT_TRUE( data->activeIntfHas( vlan20 ) );
   data->activeIntfDel( vlan10 );
   EXPECT_EQ( 1u, data->activeIntfCount() );
   EXPECT_FALSE( data->activeIntfHas( vlan10 ) );
   data->activeIntfDelAll();
   EXPECT_EQ( 0u, data->activeIntfCount() );
}

TEST_F( AclDataTest, RecordsCompareByEveryAttribute ) {
   const Fennel::AclData::Ptr a = Fennel::aclDataFactory( sharedKey(), 1 );
   const Fennel::AclData::Ptr b = Fennel::aclDataFactory( sharedKey(), 1 );
   EXPECT_EQ( *a, *b );
   a->activeIntfIs( vlan10, true );
   EXPECT_NE( *a, *b );
   b->activeIntfIs( vlan10, false );
   EXPECT_NE( *a, *b );
   b->activeIntfIs( vlan10, true );
   EXPECT_EQ( *a, *b );
   a->aclVersionIs( 7 );
   EXPECT_NE( *a, *b );
   b->aclVersionIs( 7 );
   b->aclConfigIs( Acl::aclConfigFactory( "r", Acl::AclType::ipv6 ) );
   EXPECT_NE( *a, *b );
   a->aclConfigIs( b->aclConfig() );
   a->installedIs( true );
   EXPECT_NE( *a, *b );
   b->installedIs( true );
   b->deferClassIdUpdateIs( true );
   EXPECT_NE( *a, *b );
   a->deferClassIdUpdateIs( true );
   EXPECT_EQ( *a, *b );
}

class StatusReactor : public Fennel::AclDataStatus::NotifieeConst {
 public:
   StatusReactor( const Fennel::AclDataStatus::Ptr& s, FennelTest::EventLog& log ) : log_( log ) {
      notifierIs( s );
   }
   void onCreateError() override { log_.add( "createError ", notifier()->createError() ); }

 private:
   FennelTest::EventLog& log_;
};

TEST_F( AclDataTest, StatusTellsEachChangeOfTheCreateError ) {
   const Fennel::AclDataStatus::Ptr status = Fennel::aclDataStatusFactory( sharedKey() );
   StatusReactor reactor( status, events_ );
   EXPECT_EQ( sharedKey(), status->key() );
   EXPECT_EQ( Fennel::aclCreateSuccess, status->createError() );
   status->createErrorIs( Fennel::aclCreateSuccess );
   status->createErrorIs( Fennel::aclCreateNoEntries );
   status->createErrorIs( Fennel::aclCreateNoEntries );
   status->createErrorIs( Fennel::aclCreateSuccess );
   EXPECT_THAT( events_.take(),
                ElementsAre( "createError aclCreateNoEntries", "createError aclCreateSuccess" ) );
}

class FcsdReactor : public Fennel::FennelCommonSmData::NotifieeConst {
 public:
   FcsdReactor( const Fennel::FennelCommonSmData::Ptr& d, FennelTest::EventLog& log )
       : log_( log ) {
      notifierIs( d );
   }
   void onIntf( Pylon::IntfId intf ) override {
      log_.add( intf, " ", notifier()->intfHas( intf ), notifier()->intf( intf ) );
   }

 private:
   FennelTest::EventLog& log_;
};

TEST_F( AclDataTest, CommonDataKnowsInterfacesThatTakeNoAcls ) {
   const auto fcsd = Fennel::fennelCommonSmDataFactory();
   FcsdReactor reactor( fcsd, events_ );
   const Pylon::IntfId mgmt = Pylon::IntfId::ethernet( 49 );
   EXPECT_FALSE( fcsd->intf( mgmt ) );
   fcsd->intfIs( mgmt, true );
   fcsd->intfIs( mgmt, true );
   fcsd->intfIs( vlan10, false );
   EXPECT_TRUE( fcsd->intf( mgmt ) );
   fcsd->intfDelAll();
   EXPECT_THAT( fcsd->intf(), IsEmpty() );
   const auto events = events_.take();
   ASSERT_EQ( 4u, events.size() );
   EXPECT_EQ( "Ethernet49 11", events[0] );
   EXPECT_EQ( "Vlan10 10", events[1] );
}

class SinkReactor : public Fennel::VerifyData::NotifieeConst {
 public:
   SinkReactor( const Fennel::VerifyData::Ptr& d, FennelTest::EventLog& log ) : log_( log ) {
      notifierIs( d );
   }
   void onCliVerifyOutput() override { log_.add( "cli ", notifier()->cliVerifyOutput().size() ); }
   void onVerifyOutput() override { log_.add( "sim ", notifier()->verifyOutput().size() ); }

 private:
   FennelTest::EventLog& log_;
};

TEST_F( AclDataTest, VerificationSinkKeepsFindingsOfEachFormInOrder ) {
   const auto sink = Fennel::verifyDataFactory();
   SinkReactor reactor( sink, events_ );
   sink->updateCliVerifyOutput( "void f()", "ACL a is dirty and installed" );
   sink->verifyOutputIs(
       Fennel::VerifyOutput( "Check.cpp", 42, "void g()", "ACL b drop-all rule has no entry", 3 ) );
   sink->updateCliVerifyOutput( "void f()", "ACL c is not dirty and not installed" );
   EXPECT_EQ( 3u, sink->findingCount() );
   EXPECT_EQ( "ACL c is not dirty and not installed", sink->cliVerifyOutput()[1].message );
   const Fennel::VerifyOutput& output = sink->verifyOutput()[0];
   EXPECT_EQ( 42u, output.line() );
   EXPECT_EQ( 3u, output.severity() );
   std::ostringstream text;
   text << output;
   EXPECT_EQ( "Check.cpp:42: void g(): ACL b drop-all rule has no entry (severity 3)", text.str() );
   EXPECT_THAT( events_.take(), ElementsAre( "cli 1", "sim 1", "cli 2" ) );

   sink->cliVerifyOutputDelAll();
   sink->cliVerifyOutputDelAll();
   sink->verifyOutputDelAll();
   EXPECT_EQ( 0u, sink->findingCount() );
   EXPECT_THAT( events_.take(), ElementsAre( "cli 0", "sim 0" ) );
}

TEST_F( AclDataTest, NeighbouringRecordsAreDistinctCountedObjects ) {
   const auto status = Interface::subIntfStatusDirFactory( "subIntfStatus" );
   EXPECT_EQ( "Interface::SubIntfStatusDir", status->fwkType().name() );
   EXPECT_EQ( "subIntfStatus", status->name() );
   EXPECT_TRUE( status->hasNotificationActive() );
   const auto root = Vesper::dirFactory( "agent" );
   const auto config = Interface::subIntfConfigDirFactory( "subIntfConfig" );
   config->parentIs( root.ptr(), "subIntfConfig" );
   EXPECT_EQ( "agent/subIntfConfig", config->fullName() );
   EXPECT_EQ( config.ptr(), root->entity( "subIntfConfig" ) );
}

TEST( ClockTest, TheAgentClockNeverGoesBackward ) {
   const Vesper::Clock::Ptr clock = Vesper::clockFactory();
   const double first = clock->now();
   const double second = clock->now();
   EXPECT_LE( first, second );
}

}  // namespace
