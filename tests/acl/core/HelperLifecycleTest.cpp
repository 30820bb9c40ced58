// The life of AclHelper: what construction leaves, the keyed creators, the dirty flag, the
// order of destruction, and the entity that owns the generic state machine.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "acl/HalyardAclSm.h"
#include "platform/fennel/AclSm.h"
#include "platform/status/AclModSvi.h"
#include "platform/tcam/HalyardModInfo.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Exception.h"
#include "platform/vesper/Type.h"
#include "platform/vesper/ValueText.h"
#include "tests/acl/SecurityMachineTable.h"
#include "tests/support/AgentSwitch.h"
#include "tests/support/ChipReadback.h"

namespace AclCoreTest {
namespace {

using namespace Halyard;

U64 liveObjects( const char* typeName ) {
   const Vesper::Type* type = Vesper::Type::find( typeName );
   return type ? type->liveObjects() : 0;
}

class HelperLifecycleTest : public ::testing::Test {
 protected:
   Vesper::ActivityLockGuard activity_;
   HalyardTest::AgentSwitch sw_{ HalyardTest::SwitchLayout( { "trident2", "tomahawk" } ),
                                 HalyardTest::notBroughtUp() };
};

TEST_F( HelperLifecycleTest, StateMachineMadeAgainWithOtherManagersNamesTheParameter ) {
   const AclHelper::Ptr helper = sw_.makeHelper();
   HalyardAclTest::makeSecurityStateMachines( *sw_.groupManager(), helper );
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSm().size(), 6u );
   const HalyardAclTypeDirectionFeature key( Acl::mac_, Acl::in_, aclFeatureSecurity );
   const auto sm =
       helper->getHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::in_, aclFeatureSecurity );
   ASSERT_TRUE( sm );
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSm( key ), sm );
   const auto mac = sw_.manager( tcamGroupMacAcl );
   const auto macVfp = sw_.manager( tcamGroupMacAclVfp );
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSmIs( key, helper.ptr(), mac, macVfp, nullptr,
                                                          nullptr, nullptr, nullptr, nullptr ),
              sm );
   try {
      helper->halyardAclTypeDirectionFeatureSmIs( key, helper.ptr(), mac, nullptr, nullptr, nullptr,
                                                  nullptr, nullptr, nullptr );
      FAIL() << "a machine with other managers was accepted";
   } catch ( const Vesper::NameInUseException& e ) {
      EXPECT_EQ( std::string( e.what() ),
                 "Reinstantiating the pointer interface where constructor parameter attribute "
                 "_vfpEntryManager has a different value of 0x0 than the current value of " +
                     Vesper::addressText( macVfp.ptr() ) + " not allowed" );
   }
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSm( key ), sm );

   EXPECT_FALSE(
       helper->getHalyardAclTypeDirectionFeatureSm( Acl::mac_, Acl::in_, aclFeatureMirroring2 ) );
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSmDel( key ), sm );
   EXPECT_FALSE( helper->halyardAclTypeDirectionFeatureSmHas( key ) );
   EXPECT_EQ( helper->halyardAclTypeDirectionFeatureSm().size(), 5u );
}

// ---- The dirty flag.

struct DirtyWatcher : FennelHelper::AclHelper::NotifieeConst {
   explicit DirtyWatcher( const AclHelper::Ptr& helper ) { notifierIs( helper ); }
   void onDirty() override { ++calls; }
   int calls = 0;
};

TEST_F( HelperLifecycleTest, DirtyFalseWhileFalseLeavesUnitMarks ) {
   const AclHelper::Ptr helper = sw_.makeHelper();
   DirtyWatcher watcher( helper );
   helper->unitDirtyIs( 0, true );
   helper->dirtyIs( false );
   EXPECT_EQ( watcher.calls, 0 );
   EXPECT_TRUE( helper->unitDirty( 0 ) );
   EXPECT_EQ( helper->unitDirty().size(), 1u );
}

TEST_F( HelperLifecycleTest, DirtyFalseAfterTrueEmptiesUnitMarks ) {
   const AclHelper::Ptr helper = sw_.makeHelper();
   DirtyWatcher watcher( helper );
   helper->dirtyIs( true );
   helper->unitDirtyIs( 0, true );
   helper->unitDirtyIs( 1, false );
   EXPECT_FALSE( helper->unitDirty( 1 ) );
   EXPECT_FALSE( helper->unitDirty( 7 ) ) << "a unit not in the map is not dirty";
   helper->dirtyIs( true );
   EXPECT_EQ( watcher.calls, 1 );
   EXPECT_EQ( helper->unitDirty().size(), 2u ) << "true again changes nothing";

   helper->dirtyIs( false );
   EXPECT_EQ( watcher.calls, 2 );
   EXPECT_FALSE( helper->dirty() );
   EXPECT_TRUE( helper->unitDirty().empty() );
   EXPECT_FALSE( helper->unitDirty( 0 ) );
}

// ---- Destruction.

// A group manager that notes, as it dies, how many objects of the helper's kinds live. The
// helper's records hold the last counted pointer to it.
class ProbeGroupManager : public HalyardTcamGroupManager {
 public:
   explicit ProbeGroupManager( std::vector<U64>& seen ) : seen_( seen ) {}
   ~ProbeGroupManager() override {
      for ( const char* name : probedTypes ) {
         seen_.push_back( liveObjects( name ) );
      }
   }
   static constexpr const char* probedTypes[] = {
       "Halyard::SharedRaclMgmtSm",     "Halyard::HalyardAclTypeDirectionFeatureSm",
       "Halyard::HalyardAclData",       "Halyard::VfpAclTypeForPort",
       "Halyard::HalyardIntfClassData", "Halyard::VlanBlockedSm",
       "Halyard::IngressRaclData" };

   HalyardBoundedTcamEntryManager::Ptr entryManager( TcamGroupAssignment ) const override {
      return nullptr;
   }
   HalyardUnboundedTcamEntryManager::Ptr unboundedEntryManager(
       TcamGroupAssignment ) const override {
      return nullptr;
   }
   bool allocateEtherTypeClassId( U32, U16, U8 ) override { return false; }
   bool allocateIpProtocolClassId( U32, U16, U8 ) override { return false; }
   bool allocateL4SrcPortClassId( U32, U16, U8 ) override { return false; }
   bool allocateL4DstPortClassId( U32, U16, U8 ) override { return false; }
   bool allocateDstIpClassId( U32, const Pylon::IpAddrWithFullMask&, U64 ) override {
      return false;
   }
   bool allocateDstIp6ClassId( U32, const Pylon::Ip6AddrWithFullMask&, U64 ) override {
      return false;
   }

 private:
   std::vector<U64>& seen_;
};

TEST_F( HelperLifecycleTest, DestructionRemovesOwnedObjectsInTheStatedOrder ) {
   std::vector<U64> before;
   for ( const char* name : ProbeGroupManager::probedTypes ) {
      before.push_back( liveObjects( name ) );
   }
   std::vector<U64> seen;
   {
      AclHelper::Ptr helper = sw_.makeHelper();
      HalyardAclTest::makeSecurityStateMachines( *sw_.groupManager(), helper );
      ASSERT_EQ( liveObjects( ProbeGroupManager::probedTypes[1] ), before[1] + 6 );
      helper->halyardIntfClassDataIs( 0 );
      helper->halyardIntfClassDataIs( 1 );
      helper->halyardAclDataIs( Fennel::AclKey( "acl1", Acl::ip_, Acl::in_ ) )
          ->unitDataIs( 0, Acl::ip_, Acl::in_, helper.ptr() )
          ->commonIs( aclCommonUnitDataFactory(
              0, Acl::ip_, sw_.sim().hcsd(),
              HalyardTcamGroupManager::Ptr( new ProbeGroupManager( seen ) ) ) );
      ASSERT_TRUE( seen.empty() );
      helper = nullptr;
   }
   // The probe died with the ACL records: after the sharing manager and the state machines,
   // before the per-unit records, the VLAN blocked machine and the store.
   const std::vector<U64> expected = { before[0],     before[1],     before[2] + 1, before[3] + 2,
                                       before[4] + 2, before[5] + 1, before[6] + 1 };
   EXPECT_EQ( seen, expected );
   for ( size_t i = 0; i < before.size(); ++i ) {
      EXPECT_EQ( liveObjects( ProbeGroupManager::probedTypes[i] ), before[i] )
          << ProbeGroupManager::probedTypes[i] << " outlived the helper";
   }
}

// ---- AclSmEntity.

struct AclSmWatcher : AclSmEntity::NotifieeConst {
   explicit AclSmWatcher( const AclSmEntity::Ptr& entity ) { notifierIs( entity ); }
   void onAclSm() override {
      ++calls;
      const Fennel::AclSm::Ptr& sm = notifier()->aclSm();
      machineActiveAtCall = sm && sm->hasNotificationActive();
   }
   int calls = 0;
   bool machineActiveAtCall = false;
};

class AclSmEntityTest : public HelperLifecycleTest {
 protected:
   Fennel::AclSm::Ptr aclSmIs( const Fennel::AclSmInputs& in ) {
      return entity_->aclSmIs( in.fcsd, in.mainConfig, in.aclParamConfig, in.intfConfigDir,
                               in.intfConfigCli, in.hwConfigDir, in.status, in.aclCauseStatus,
                               in.lagInputConfig, in.aclHelper, in.clock, in.brConfig,
                               in.subIntfStatusDir, in.subIntfConfigDir );
   }

   const AclHelper::Ptr helper_ = sw_.makeHelper();
   const AclSmEntity::Ptr entity_ = aclSmEntityFactory();
   AclSmWatcher watcher_{ entity_ };
   const Fennel::AclSmInputs inputs_{ Fennel::fennelCommonSmDataFactory(),
                                      sw_.config(),
                                      sw_.paramConfig(),
                                      Vesper::dirFactory( "intf" ),
                                      Acl::intfConfigFactory(),
                                      Vesper::dirFactory( "hw" ),
                                      sw_.sim().statusDp(),
                                      Errdisable::causeStatusFactory(),
                                      Lag::Input::configFactory(),
                                      helper_,
                                      Vesper::clockFactory(),
                                      Bridging::configFactory(),
                                      Interface::subIntfStatusDirFactory( "subIntfStatus" ),
                                      Interface::subIntfConfigDirFactory( "subIntfConfig" ) };
};

TEST_F( AclSmEntityTest, SameInputsTwiceKeepTheMachineAndStaySilent ) {
   const Fennel::AclSm::Ptr first = aclSmIs( inputs_ );
   ASSERT_TRUE( first );
   EXPECT_EQ( watcher_.calls, 1 );
   EXPECT_FALSE( watcher_.machineActiveAtCall ) << "the machine is switched on last";
   EXPECT_TRUE( first->hasNotificationActive() );
   EXPECT_TRUE( first->builtFrom( inputs_ ) );
   EXPECT_EQ( helper_->intfConfig(), inputs_.intfConfigCli );

   EXPECT_EQ( aclSmIs( inputs_ ), first );
   EXPECT_EQ( entity_->aclSm(), first );
   EXPECT_EQ( watcher_.calls, 1 );
}

TEST_F( AclSmEntityTest, OneChangedInputReplacesTheMachineWithOneNotification ) {
   const Fennel::AclSm::Ptr first = aclSmIs( inputs_ );
   Fennel::AclSmInputs changed = inputs_;
   changed.clock = Vesper::clockFactory();
   const Fennel::AclSm::Ptr second = aclSmIs( changed );
   EXPECT_NE( second, first );
   EXPECT_EQ( entity_->aclSm(), second );
   EXPECT_EQ( watcher_.calls, 2 );
   EXPECT_TRUE( second->builtFrom( changed ) );
   EXPECT_TRUE( second->hasNotificationActive() );
}

TEST_F( AclSmEntityTest, DelDropsNotifiesAndSwitchesTheMachineOff ) {
   const Fennel::AclSm::Ptr first = aclSmIs( inputs_ );
   const Fennel::AclSm::Ptr removed = entity_->aclSmDel();
   EXPECT_EQ( removed, first );
   EXPECT_FALSE( entity_->aclSm() );
   EXPECT_EQ( watcher_.calls, 2 );
   EXPECT_FALSE( removed->hasNotificationActive() );
}

}  // namespace
}  // namespace AclCoreTest
