// The generic layer's records whose behaviour the back-end relies on: the ACL
// record compares by every attribute (a reapply is decided on it), and the
// verification sink keeps findings in order with their stated text.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "platform/fennel/AclData.h"
#include "platform/fennel/VerifyData.h"
#include "tests/platform/fennel/FennelTestSupport.h"

namespace {

using Fennel::AclKey;
using ::testing::ElementsAre;

const Pylon::IntfId vlan10 = Pylon::IntfId::vlan( Pylon::VlanId( 10 ) );

AclKey sharedKey() {
   return AclKey( "r", Acl::AclType::ipv6, Acl::AclDirection::in, false,
                  Fennel::AclVlanIdOrNone( Fennel::AclVlanIdOrNone::vlanSharingId() ) );
}

using AclDataTest = FennelTest::ActivityTest;

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

}  // namespace
