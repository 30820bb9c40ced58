// The records shared with other agents: keyed creators hand back the member
// that stands, and reactors hear each real change exactly once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/status/AclHwStatus.h"
#include "platform/status/FennelEpochStatus.h"
#include "platform/status/L3IntfStatus.h"
#include "platform/status/L3SliceAgentStatus.h"
#include "platform/status/StatusDp.h"
#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/status/VlanTopoSliceStatus.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/vesper/Exception.h"
#include "tests/platform/tcam/TcamTestSupport.h"

namespace {

using HalyardVlanTopo::AclModSvi;
using Pylon::ModId;
using Pylon::VlanId;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using VlanTopoBlockedStatusTest = TcamTest::ActivityTest;
using AclHwStatusTest = TcamTest::ActivityTest;
using StatusDpTest = TcamTest::ActivityTest;

AclModSvi svi( U16 modId, U16 vlan ) {
   return AclModSvi( ModId( modId ), VlanId( vlan ) );
}

class SliceReactor : public HalyardVlanTopo::VlanTopoSliceStatus::NotifieeConst {
 public:
   SliceReactor( const HalyardVlanTopo::VlanTopoSliceStatus::Ptr& s, TcamTest::EventLog& log )
       : log_( log ) {
      notifierIs( s );
   }
   void onBlock( const AclModSvi& key ) override {
      log_.add( "block ", key.modId(), "/", key.vlanId() );
   }
   void onAclVlanClassIdPerChip( U16 chip ) override { log_.add( "perChip ", chip ); }

 private:
   TcamTest::EventLog& log_;
};

class VlanTopoSliceStatusTest : public TcamTest::ActivityTest {
 protected:
   HalyardVlanTopo::VlanTopoSliceStatus::Ptr status_ =
       HalyardVlanTopo::vlanTopoSliceStatusFactory();
   SliceReactor reactor_{ status_, events_ };
};

TEST_F( VlanTopoSliceStatusTest, BlockRequestsNotifyPerChipAndVlan ) {
   status_->blockIs( svi( 1, 100 ), true );
   status_->blockIs( svi( 2, 100 ), true );
   status_->blockIs( svi( 1, 100 ), true );
   EXPECT_THAT( events_.take(), ElementsAre( "block 1/100", "block 2/100" ) );
   EXPECT_FALSE( status_->block( svi( 2, 101 ) ) ) << "absent: not asked";

   status_->blockDel( svi( 1, 100 ) );
   status_->blockDel( svi( 1, 100 ) );
   EXPECT_THAT( events_.take(), ElementsAre( "block 1/100" ) );
   EXPECT_FALSE( status_->blockHas( svi( 1, 100 ) ) );
}

TEST_F( VlanTopoSliceStatusTest, BlockDelAllDropsEveryRequestOneByOne ) {
   for ( U16 vlan : { 10, 20, 30 } ) {
      status_->blockIs( svi( 1, vlan ), true );
   }
   events_.take();
   status_->blockDelAll();
   EXPECT_EQ( events_.take().size(), 3u );
   EXPECT_TRUE( status_->block().empty() );
}

TEST_F( VlanTopoSliceStatusTest, PerChipCreatorReturnsTheMemberStanding ) {
   auto first = status_->aclVlanClassIdPerChipIs( 3 );
   first->vlanClassIdIs( 100, 0x10 );
   auto again = status_->aclVlanClassIdPerChipIs( 3 );
   EXPECT_EQ( again, first );
   EXPECT_EQ( again->vlanClassId( 100 ), 0x10 ) << "state kept";
   EXPECT_THAT( events_.take(), ElementsAre( "perChip 3" ) ) << "only the creation is a change";

   EXPECT_EQ( status_->aclVlanClassIdPerChipDel( 3 ), first );
   EXPECT_EQ( status_->aclVlanClassIdPerChip( 3 ), nullptr );
   EXPECT_THAT( events_.take(), ElementsAre( "perChip 3" ) );
}

TEST_F( VlanTopoBlockedStatusTest, BlockedAnswersReadAbsentAsNotBlocked ) {
   class BlockedReactor : public HalyardVlanTopo::VlanTopoBlockedStatus::NotifieeConst {
    public:
      explicit BlockedReactor( TcamTest::EventLog& log ) : log_( log ) {}
      void onBlocked( const AclModSvi& key ) override {
         log_.add( "blocked ", key.modId(), "/", key.vlanId(), " ",
                   notifier()->blocked( key ) ? "yes" : "no" );
      }

    private:
      TcamTest::EventLog& log_;
   };
   auto status = HalyardVlanTopo::vlanTopoBlockedStatusFactory();
   BlockedReactor reactor( events_ );
   reactor.notifierIs( status );

   EXPECT_FALSE( status->blocked( svi( 1, 7 ) ) );
   status->blockedIs( svi( 1, 7 ), true );
   status->blockedIs( svi( 1, 7 ), true );
   status->blockedIs( svi( 1, 7 ), false );
   status->blockedDelAll();
   EXPECT_THAT( events_.take(),
                ElementsAre( "blocked 1/7 yes", "blocked 1/7 no", "blocked 1/7 no" ) );
   EXPECT_FALSE( status->blockedHas( svi( 1, 7 ) ) );
}

// Requests and responses of L3 classes have one shape; one suite runs both.
struct RequestSide {
   using Status = HalyardL3::L3SliceAgentStatus;
   static Status::Ptr make() { return HalyardL3::l3SliceAgentStatusFactory(); }
   static auto is( Status& s, ModId m ) { return s.intfClassIdPerChipRequestIs( m ); }
   static auto get( Status& s, ModId m ) { return s.intfClassIdPerChipRequest( m ); }
   static void delAll( Status& s ) { s.intfClassIdPerChipRequestDelAll(); }
   struct Reactor : Status::NotifieeConst {
      TcamTest::EventLog* log;
      void onIntfClassIdPerChipRequest( ModId m ) override { log->add( "chip ", m ); }
   };
};
struct ResponseSide {
   using Status = HalyardL3::L3IntfStatus;
   static Status::Ptr make() { return HalyardL3::l3IntfStatusFactory(); }
   static auto is( Status& s, ModId m ) { return s.intfClassIdPerChipResponseIs( m ); }
   static auto get( Status& s, ModId m ) { return s.intfClassIdPerChipResponse( m ); }
   static void delAll( Status& s ) { s.intfClassIdPerChipResponseDelAll(); }
   struct Reactor : Status::NotifieeConst {
      TcamTest::EventLog* log;
      void onIntfClassIdPerChipResponse( ModId m ) override { log->add( "chip ", m ); }
   };
};

template <class Side>
class L3StatusTest : public TcamTest::ActivityTest {
 protected:
   void SetUp() override {
      reactor_.log = &events_;
      reactor_.notifierIs( status_ );
   }
   typename Side::Status::Ptr status_ = Side::make();
   typename Side::Reactor reactor_;
};

using Sides = ::testing::Types<RequestSide, ResponseSide>;
TYPED_TEST_SUITE( L3StatusTest, Sides );

TYPED_TEST( L3StatusTest, PerChipCreatorReturnsTheMemberStanding ) {
   auto& status = *this->status_;
   auto chip = TypeParam::is( status, ModId( 4 ) );
   EXPECT_EQ( chip->modId(), ModId( 4 ) );
   EXPECT_EQ( TypeParam::is( status, ModId( 4 ) ), chip );
   EXPECT_EQ( TypeParam::get( status, ModId( 5 ) ), nullptr );
   EXPECT_THAT( this->events_.take(), ElementsAre( "chip 4" ) );
   TypeParam::is( status, ModId( 5 ) );
   EXPECT_THAT( this->events_.take(), ElementsAre( "chip 5" ) );
   TypeParam::delAll( status );
   EXPECT_THAT( this->events_.take(), UnorderedElementsAre( "chip 4", "chip 5" ) );
   EXPECT_EQ( TypeParam::get( status, ModId( 4 ) ), nullptr );
}

TYPED_TEST( L3StatusTest, ClassZeroIsARealMember ) {
   struct ClassReactor : HalyardL3::IntfClassIdPerChip::NotifieeConst {
      TcamTest::EventLog* log;
      void onIntfClassId( U32 vlan ) override { log->add( "vlan ", vlan ); }
   };
   auto chip = TypeParam::is( *this->status_, ModId( 1 ) );
   ClassReactor reactor;
   reactor.log = &this->events_;
   reactor.notifierIs( chip );
   this->events_.take();

   chip->intfClassIdIs( 100, 0 );
   EXPECT_TRUE( chip->intfClassIdHas( 100 ) );
   EXPECT_FALSE( chip->intfClassIdHas( 101 ) );
   EXPECT_EQ( chip->intfClassId( 101 ), 0 ) << "absent also reads 0";
   chip->intfClassIdIs( 100, 0 );
   chip->intfClassIdIs( 100, ( 3 << 2 ) | ( 1 << 7 ) );
   chip->intfClassIdDel( 100 );
   EXPECT_THAT( this->events_.take(), ElementsAre( "vlan 100", "vlan 100", "vlan 100" ) );
   EXPECT_FALSE( chip->intfClassIdHas( 100 ) );
}

TEST_F( AclHwStatusTest, HardwareStatusNotifiesEachFactOnce ) {
   struct Reactor : HalyardCentral::AclHwStatus::NotifieeConst {
      TcamTest::EventLog* log;
      void onInitialized() override { log->add( "initialized" ); }
      void onRaclIdBits() override { log->add( "raclIdBits" ); }
      void onIngressRaclSharingSupported() override { log->add( "sharing" ); }
   };
   auto hw = HalyardCentral::aclHwStatusFactory();
   Reactor reactor;
   reactor.log = &events_;
   reactor.notifierIs( hw );
   hw->raclIdBitsIs( 10 );
   hw->raclIdBitsIs( 10 );
   hw->ingressRaclSharingSupportedIs( true );
   hw->initializedIs( true );
   hw->initializedIs( true );
   EXPECT_THAT( events_.take(), ElementsAre( "raclIdBits", "sharing", "initialized" ) );
}

TEST_F( StatusDpTest, TcamStatusCreatorReturnsTheRecordStanding ) {
   struct Reactor : Acl::StatusDp::NotifieeConst {
      TcamTest::EventLog* log;
      void onTcamStatus( const Vesper::Name& name ) override { log->add( "tcamStatus ", name ); }
   };
   auto status = Acl::statusDpFactory();
   Reactor reactor;
   reactor.log = &events_;
   reactor.notifierIs( status );

   // Bring-up names the record after the chip of the unit's mod info.
   const Halyard::HalyardModInfo info( 0, Pylon::ModId( 1 ), HalyardCentral::ChipInfo( 7, 1 ),
                                       "chip0" );
   auto chip0 = status->tcamStatusIs( info.chipName() );
   EXPECT_EQ( status->tcamStatusIs( "chip0" ), chip0 );
   status->tcamStatusIs( "chip1" );
   EXPECT_THAT( events_.take(), ElementsAre( "tcamStatus chip0", "tcamStatus chip1" ) );
   EXPECT_EQ( status->tcamStatus().size(), 2u );
   status->tcamStatusDelAll();
   EXPECT_EQ( events_.take().size(), 2u );
   EXPECT_FALSE( status->tcamStatusHas( "chip0" ) );
}

class EpochStatusTest : public TcamTest::ActivityTest {
 protected:
   void TearDown() override { Fennel::fennelEpochStatusIs( nullptr ); }
};

TEST_F( EpochStatusTest, InstalledRecordStandsUntilResetAndKnowsNoEpochAtFirst ) {
   auto mine = Fennel::fennelEpochStatusFactory();
   EXPECT_FALSE( mine->aclSupported( "epoch1" ) );
   mine->aclSupportedIs( "epoch1", true );
   Fennel::fennelEpochStatusIs( mine );
   EXPECT_TRUE( Fennel::fennelEpochStatus()->aclSupported( "epoch1" ) );
   EXPECT_FALSE( Fennel::fennelEpochStatus()->aclSupported( "epoch2" ) );
   Fennel::fennelEpochStatusIs( nullptr );
   ASSERT_NE( Fennel::fennelEpochStatus(), nullptr );
   EXPECT_FALSE( Fennel::fennelEpochStatus()->aclSupported( "epoch1" ) );
}

TEST_F( EpochStatusTest, ReactorHearsEachRealChange ) {
   struct Reactor : Fennel::FennelEpochStatus::NotifieeConst {
      TcamTest::EventLog* log;
      void onAclSupported( const Vesper::Name& name ) override {
         log->add( name, " ", notifier()->aclSupported( name ) );
      }
   };
   auto epochs = Fennel::fennelEpochStatus();
   Reactor reactor;
   reactor.log = &events_;
   reactor.notifierIs( epochs );
   epochs->aclSupportedIs( "e", true );
   epochs->aclSupportedIs( "e", true );
   epochs->aclSupportedDel( "e" );
   EXPECT_THAT( events_.take(), ElementsAre( "e 1", "e 0" ) );
}

}  // namespace
