// The call recorder: an apply through the generic layer and the back-end, recorded on one
// switch and replayed on a fresh one brought up the same way, leaves the same chips behind;
// a replay on a switch that is not the one recorded stops at the first answer that differs.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "acl/HalyardAclSm.h"
#include "cli/config/ConfigText.h"
#include "fennel/GenericAclSm.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/wiring/AgentRecords.h"
#include "sim/record/CallRecorder.h"
#include "sim/switch/SimSwitch.h"
#include "tests/support/ChipReadback.h"

namespace {

// Port lists, ranges (a checker each, then blocks when the checkers run out), a MAC list and
// rules on both units: every kind of call the back-end makes while it applies.
const char* const kConfig = R"(
ip access-list web
   10 permit tcp 10.0.0.0/8 any eq 80 443
   20 deny udp any range 1000 2000 192.168.1.0/24
   30 permit tcp any gt 1023 any lt 1024
   40 deny ip host 10.1.1.1 any
   50 permit icmp any any 8 0
mac access-list frames
   10 permit host 00:00:00:00:00:01 any 0x0806
interface Ethernet1
   ip access-group web in
   mac access-group frames in
interface Ethernet25
   ip access-group web in
)";

// A default switch with the back-end and the generic machine wired on it, and brought up;
// through the recorder's manager decorator when there is a recorder.
class WiredSwitch {
 public:
   WiredSwitch( const HalyardCli::AclSetup& setup, Sim::CallRecorder* recorder )
       : recorder_( recorder ) {
      Fennel::registerGenericAclSm();
      Halyard::HalyardTcamGroupManager::Ptr gm = sw_.groupManager();
      if ( recorder ) {
         gm = recorder->groupManagerOver( gm );
      }
      helper_ = Halyard::aclHelperFactory(
          sw_.vlanTopoSliceStatus(), sw_.vlanTopoBlockedStatus(), sw_.hcsd(), gm, setup.config,
          setup.paramConfig, sw_.statusDp(), sw_.aclHwStatus(), sw_.l3SliceAgentStatus(),
          sw_.l3IntfStatus(), sw_.hasFabric() );
      entity_ = Halyard::aclSmEntityFactory();
      entity_->aclSmIs( Fennel::fennelCommonSmDataFactory(), setup.config, setup.paramConfig,
                        Vesper::dirFactory( "intfConfig" ), setup.intfConfig,
                        Vesper::dirFactory( "hwConfig" ), sw_.statusDp(),
                        Errdisable::causeStatusFactory(), sw_.lagInputConfig(), helper_,
                        Vesper::clockFactory(), Bridging::configFactory(),
                        Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                        Interface::subIntfConfigDirFactory( "subIntfConfig" ) );
      machine_ = Fennel::GenericAclSm::from( entity_->aclSm() );
      helper_->hwInit();
      machine_->markStarted();
   }
   ~WiredSwitch() {
      machine_ = nullptr;
      entity_->aclSmDel();
      entity_ = nullptr;
      helper_ = nullptr;
      Fennel::aclSmFactoryIs( {} );
   }

   void apply() {
      auto sdk = recorder_->sdkOver( sw_.sdk() );
      Shim::SdkInstall install( *sdk );
      recorder_->recordingIs( true );
      machine_->settle( 4 );
      recorder_->recordingIs( false );
   }
   void replay( const Sim::CallLog& log ) {
      log.replay( Sim::replayTargetOf( log, sw_.sdk(), *sw_.groupManager() ) );
   }

   // Every entry of every unit, as the chip dumps it.
   std::map<U32, std::string> chips() const {
      std::map<U32, std::string> text;
      for ( U32 unit : sw_.units() ) {
         for ( U32 entry : HalyardTest::chipEntries( sw_.chip( unit ) ) ) {
            text[entry] += HalyardTest::entryText( sw_.chip( unit ), entry );
         }
      }
      return text;
   }

 private:
   Vesper::ActivityLockGuard lock_;
   Sim::SimSwitch sw_;
   Sim::CallRecorder* recorder_;
   Halyard::AclHelper::Ptr helper_;
   Halyard::AclSmEntity::Ptr entity_;
   Fennel::GenericAclSm::Ptr machine_;
};

class RecordReplay : public ::testing::Test {
 protected:
   RecordReplay() : setup_( HalyardCli::parseConfig( kConfig, "record.acl" ) ) {}

   // Records the apply; answers the chips it left.
   std::map<U32, std::string> recordApply() {
      WiredSwitch sw( setup_, &recorder_ );
      sw.apply();
      return sw.chips();
   }

   HalyardCli::AclSetup setup_;
   Sim::CallRecorder recorder_;
};

TEST_F( RecordReplay, ReplayOnAFreshSwitchLeavesTheChipsTheApplyLeft ) {
   const std::map<U32, std::string> applied = recordApply();
   ASSERT_GT( recorder_.log().calls(), 100u );
   ASSERT_FALSE( recorder_.log().managers().empty() );

   WiredSwitch fresh( setup_, nullptr );
   const std::map<U32, std::string> before = fresh.chips();
   EXPECT_NE( before, applied );
   fresh.replay( recorder_.log() );
   EXPECT_EQ( fresh.chips(), applied );
}

TEST_F( RecordReplay, NothingIsRecordedWhileRecordingIsOff ) {
   WiredSwitch sw( setup_, &recorder_ );
   EXPECT_EQ( 0u, recorder_.log().calls() );  // bring-up went through the decorators
}

using RecordReplayDeathTest = RecordReplay;

TEST_F( RecordReplayDeathTest, AReplayOnASwitchThatIsNotTheOneRecordedStopsLoudly ) {
   recordApply();
   EXPECT_DEATH(
       {
          WiredSwitch fresh( setup_, nullptr );
          fresh.replay( recorder_.log() );
          // The second run is handed other entry ids than the recording had.
          fresh.replay( recorder_.log() );
       },
       "call replay: call [0-9]+ of [0-9]+ answered [0-9]+ where the recording had [0-9]+" );
}

}  // namespace
