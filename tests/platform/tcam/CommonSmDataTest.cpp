// The agent's shared data: what each collection reads when a member is
// absent, how keyed maps tell units apart, and the walk order of fabric ports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/tcam/HalyardCommonSmData.h"
#include "tests/platform/tcam/TcamTestSupport.h"

namespace {

using Halyard::HalyardCommonSmData;
using HalyardTypes::HalyardPort;
using Pylon::IntfId;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Reactor : public HalyardCommonSmData::NotifieeConst {
 public:
   Reactor( const HalyardCommonSmData::Ptr& hcsd, TcamTest::EventLog& log ) : log_( log ) {
      notifierIs( hcsd );
   }
   void onHalyardIntfToPort( IntfId intf ) override { log_.add( "intfToPort ", intf ); }
   void onHalyardIntfToPortCache( IntfId intf ) override { log_.add( "intfToPortCache ", intf ); }
   void onHalyardPortToIntf( HalyardPort p ) override {
      log_.add( "portToIntf ", p.unit(), "/", p.port() );
   }
   void onHalyardModId( U16 unit ) override { log_.add( "modId ", unit ); }
   void onPortBlockTcamGroup( U32 entry ) override { log_.add( "portBlockTcamGroup ", entry ); }
   void onHalyardPortToFabricIntf( HalyardPort p ) override {
      log_.add( "fabric ", p.unit(), "/", p.port() );
   }
   void onAclRuleIndexConsistencyCheck() override { log_.add( "aclRuleIndexConsistencyCheck" ); }
   void onAclHwInitBypass() override { log_.add( "aclHwInitBypass" ); }
   void onVfiForwarding() override { log_.add( "vfiForwarding" ); }
   void onVlanBlockBypass() override { log_.add( "vlanBlockBypass" ); }
   void onVlanSliceBlockEnabled() override { log_.add( "vlanSliceBlockEnabled" ); }
   void onLinecardName() override { log_.add( "linecardName" ); }
   void onEpochName() override { log_.add( "epochName" ); }
   void onRestartAgent() override { log_.add( "restartAgent" ); }

 private:
   TcamTest::EventLog& log_;
};

class CommonSmDataTest : public TcamTest::ActivityTest {
 protected:
   HalyardCommonSmData::Ptr hcsd_ = Halyard::halyardCommonSmDataFactory();
   Reactor reactor_{ hcsd_, events_ };
   const IntfId eth1_ = IntfId::ethernet( 1 );
   const IntfId eth2_ = IntfId::ethernet( 2 );
};

TEST_F( CommonSmDataTest, AbsentInterfaceReadsAsTheInvalidPort ) {
   const HalyardPort port = hcsd_->halyardIntfToPort( eth1_ );
   EXPECT_EQ( port.unit(), 0xFFFFu );
   EXPECT_EQ( port.port(), 0x3FFu );
   EXPECT_EQ( hcsd_->halyardIntfToPortCache( eth1_ ), HalyardCommonSmData::invalidPort );
   EXPECT_THAT( events_.take(), IsEmpty() );
}

TEST_F( CommonSmDataTest, PortKeyedMapTellsUnitsApart ) {
   // The same port number on two units: two members.
   hcsd_->halyardPortToIntfIs( HalyardPort( 0, 5 ), eth1_ );
   hcsd_->halyardPortToIntfIs( HalyardPort( 1, 5 ), eth2_ );
   EXPECT_THAT( events_.take(), ElementsAre( "portToIntf 0/5", "portToIntf 1/5" ) );
   EXPECT_EQ( hcsd_->halyardPortToIntf( HalyardPort( 0, 5 ) ), eth1_ );
   EXPECT_EQ( hcsd_->halyardPortToIntf( HalyardPort( 1, 5 ) ), eth2_ );
   EXPECT_TRUE( hcsd_->halyardPortToIntf( HalyardPort( 5, 0 ) ).isNull() )
       << "unit and port are not interchangeable";
   EXPECT_EQ( hcsd_->halyardPortToIntf().size(), 2u );
}

TEST_F( CommonSmDataTest, FabricPortsWalkInRisingOrder ) {
   hcsd_->halyardPortToFabricIntfIs( HalyardPort( 2, 1 ), "Fabric3/1" );
   hcsd_->halyardPortToFabricIntfIs( HalyardPort( 1, 7 ), "Fabric2/7" );
   hcsd_->halyardPortToFabricIntfIs( HalyardPort( 1, 3 ), "Fabric2/3" );
   hcsd_->halyardPortToFabricIntfIs( HalyardPort( 1, 3 ), "Fabric2/3" );
   EXPECT_EQ( events_.take().size(), 3u ) << "the repeated set is silent";

   std::vector<std::string> walk;
   for ( const auto& [port, name] : hcsd_->halyardPortToFabricIntf() ) {
      walk.push_back( name.str() );
   }
   EXPECT_THAT( walk, ElementsAre( "Fabric2/3", "Fabric2/7", "Fabric3/1" ) );

   hcsd_->halyardPortToFabricIntfIs( HalyardPort( 1, 3 ), "Fabric9/9" );
   EXPECT_THAT( events_.take(), ElementsAre( "fabric 1/3" ) );
   hcsd_->halyardPortToFabricIntfDelAll();
   EXPECT_THAT( events_.take(), ElementsAre( "fabric 1/3", "fabric 1/7", "fabric 2/1" ) );
   EXPECT_EQ( hcsd_->halyardPortToFabricIntf( HalyardPort( 1, 3 ) ), Vesper::Name() );
}

TEST_F( CommonSmDataTest, PortBlockGroupsKeepFalseMembers ) {
   hcsd_->portBlockTcamGroupIs( 4096, false );
   EXPECT_THAT( events_.take(), ElementsAre( "portBlockTcamGroup 4096" ) )
       << "a new member is a change even when it reads as the default";
   EXPECT_TRUE( hcsd_->portBlockTcamGroupHas( 4096 ) );
   hcsd_->portBlockTcamGroupIs( 4096, true );
   EXPECT_FALSE( hcsd_->portBlockTcamGroup( 8192 ) );
}

}  // namespace
