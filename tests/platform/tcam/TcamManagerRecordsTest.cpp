// What the abstract managers keep themselves: the exhaustion records and
// their notifications, the entry-to-manager map, the per-group mirroring
// records, and the ownership between a group manager and its entry managers.
// The operations are the platform's and are tested with the simulated switch.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/tcam/TcamGroupAssignment.h"
#include "tests/platform/tcam/TcamTestSupport.h"

namespace {

using Halyard::HalyardTcamEntryManager;
using Halyard::HalyardTcamGroupManager;
using TcamTest::InertEntryManager;
using TcamTest::InertGroupManager;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EntryReactor : public HalyardTcamEntryManager::NotifieeConst {
 public:
   EntryReactor( const HalyardTcamEntryManager::Ptr& em, TcamTest::EventLog& log ) : log_( log ) {
      notifierIs( em );
   }
   void onExhausted( U32 unit ) override {
      log_.add( notifier()->groupName(), " unit ", unit,
                notifier()->exhausted( unit ) ? " full" : " room" );
   }

 private:
   TcamTest::EventLog& log_;
};

class GroupReactor : public HalyardTcamGroupManager::NotifieeConst {
 public:
   GroupReactor( const HalyardTcamGroupManager::Ptr& gm, TcamTest::EventLog& log ) : log_( log ) {
      notifierIs( gm );
   }
   void onRangeCheckersExhausted( U32 unit ) override { log_.add( "rangeCheckers ", unit ); }
   void onIngressRaclSharingSupported() override { log_.add( "sharing" ); }
   void onIngressMirrorAclKeyWidthMode() override { log_.add( "keyWidth" ); }

 private:
   TcamTest::EventLog& log_;
};

class TcamManagerRecordsTest : public TcamTest::ActivityTest {
 protected:
   Vesper::Ptr<InertGroupManager> gm_ = InertGroupManager::create();
   Vesper::Ptr<InertEntryManager> ipAcl_ = InertEntryManager::create( gm_.ptr(), 3 );
   Vesper::Ptr<InertEntryManager> ipVfp_ = InertEntryManager::create( gm_.ptr(), 16 );
};

TEST_F( TcamManagerRecordsTest, ExhaustedIsToldOnEveryChangeBetweenFullAndNot ) {
   EntryReactor reactor( ipAcl_, events_ );
   EXPECT_FALSE( ipAcl_->exhausted( 0 ) ) << "absent reads false";
   ipAcl_->exhaustedIs( 0, true );
   ipAcl_->exhaustedIs( 0, true );
   ipAcl_->exhaustedIs( 1, true );
   ipAcl_->exhaustedIs( 0, false );
   EXPECT_THAT( events_.take(),
                ElementsAre( "group3 unit 0 full", "group3 unit 1 full", "group3 unit 0 room" ) );
   EXPECT_TRUE( ipAcl_->exhausted( 1 ) );
   ipAcl_->exhaustedDel( 1 );
   EXPECT_THAT( events_.take(), ElementsAre( "group3 unit 1 room" ) );
}

TEST_F( TcamManagerRecordsTest, OneManagersExhaustionIsNotAnothers ) {
   EntryReactor acl( ipAcl_, events_ );
   EntryReactor vfp( ipVfp_, events_ );
   ipVfp_->exhaustedIs( 2, true );
   EXPECT_THAT( events_.take(), ElementsAre( "group16 unit 2 full" ) );
   EXPECT_FALSE( ipAcl_->exhausted( 2 ) );
}

TEST_F( TcamManagerRecordsTest, EntryFindsTheManagerThatIssuedIt ) {
   gm_->tcamManagerForEntryIs( 40, ipAcl_ );
   gm_->tcamManagerForEntryIs( 41, ipVfp_ );
   EXPECT_EQ( gm_->tcamEntryMgr( 41 ), ipVfp_ ) << "not the first manager asked about";
   EXPECT_EQ( gm_->tcamManagerForEntry( 40 ), ipAcl_ );
   EXPECT_EQ( gm_->tcamEntryMgr( 42 ), nullptr );
   gm_->tcamManagerForEntryIs( 41, nullptr );
   EXPECT_FALSE( gm_->tcamManagerForEntryHas( 41 ) );
}

TEST_F( TcamManagerRecordsTest, GroupManagerAndItsManagersDoNotKeepEachOtherAlive ) {
   // Counted under the nearest class with a type record of its own.
   const Vesper::Type& type = InertEntryManager::fwkTypeStatic();
   const auto before = type.liveObjects();
   {
      auto gm = InertGroupManager::create();
      gm->tcamManagerForEntryIs( 1, InertEntryManager::create( gm.ptr(), 2 ) );
      EXPECT_EQ( type.liveObjects(), before + 1 );
   }
   EXPECT_EQ( type.liveObjects(), before ) << "the entry manager went with its group manager";
}

TEST( TcamGroupAssignmentTest, EveryAssignmentHasANameAndTwoAreBounded ) {
   int bounded = 0;
   for ( auto a : Halyard::tcamGroupAssignmentAll ) {
      bounded += Halyard::isBoundedAssignment( a );
      EXPECT_EQ( Vesper::sequenceToValue<Halyard::TcamGroupAssignment>( Vesper::stringValue( a ) ),
                 a );
   }
   EXPECT_EQ( bounded, 2 );
}

}  // namespace
