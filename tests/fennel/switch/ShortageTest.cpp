// A unit without room for an ACL: the generic layer commits what the back-end could build, the
// unit that had no room stays dirty with its error published and serves nothing of the ACL, the
// other unit serves it whole, and the ACL waits; when room comes back the back-end asks for a
// pass, and that pass puts the ACL in on both units.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fennel/HalyardView.h"
#include "platform/tcam/TcamGroupAssignment.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/switch/GenericSwitch.h"
#include "tests/fennel/switch/RandomAcls.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Pylon::IntfId;
using namespace FennelTest;

TEST( ShortOfEntriesOnOneUnit, TheOtherUnitServesTheAclUntilRoomComesBack ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw;
   sw.machine().start();  // bring-up first: its hidden entries need their room
   // Unit 0's MAC groups are full with entries of nobody's ACL.
   std::vector<std::pair<Halyard::HalyardUnboundedTcamEntryManager::Ptr, U32>> fillers;
   for ( auto group : { Halyard::tcamGroupMacAclVfp, Halyard::tcamGroupMacAcl } ) {
      const auto manager = sw.agent().manager( group );
      while ( U32 entry = manager->getEntry( 0, Vesper::String( "filler" ) ) ) {
         fillers.emplace_back( manager, entry );
      }
   }
   RandomAcls random( 5 );
   const auto list = random.macListIs( sw.config(), "m", 20 );
   sw.bind( AclType::mac, "m", IntfId::ethernet( 1 ), AclDirection::in );
   sw.bind( AclType::mac, "m", IntfId::ethernet( 25 ), AclDirection::in );
   sw.runPass();

   const Fennel::AclKey key( "m", AclType::mac, AclDirection::in );
   const Fennel::AclState& acl = *sw.machine().acl( key );
   EXPECT_TRUE( acl.committed );
   EXPECT_EQ( Fennel::aclCreateNoEntries, acl.error );
   EXPECT_THAT( acl.errorText, ::testing::HasSubstr( "no TCAM entries" ) );
   EXPECT_EQ( Fennel::PendingReason::resources, acl.pending );
   EXPECT_TRUE( sw.machine().passWanted() );
   const auto& helper = *sw.agent().helper();
   EXPECT_TRUE( helper.dirty() );
   EXPECT_EQ( Fennel::aclCreateNoEntries, helper.unitError( Vesper::Name( "chip0" ) ) );
   EXPECT_TRUE( helper.publishUnitError( Vesper::Name( "chip0" ) ) );
   EXPECT_EQ( Fennel::aclCreateSuccess, helper.unitError( Vesper::Name( "chip1" ) ) );
   const auto units = Fennel::aclUnits( helper, key );
   ASSERT_EQ( 2u, units.size() );
   EXPECT_TRUE( units[0].dirty );
   EXPECT_FALSE( units[0].installed );
   EXPECT_FALSE( units[1].dirty );
   EXPECT_TRUE( units[1].installed );

   for ( U32 i = 0; i < 300; ++i ) {
      Fennel::Packet p = random.macPacketFor( *list );
      p.in = IntfId::ethernet( 25 );
      EXPECT_EQ( "", sw.disagreement( p ) ) << "packet " << i;
      // Unit 0 serves nothing of the ACL: no entry of it is hit there.
      p.in = IntfId::ethernet( 1 );
      EXPECT_TRUE( sw.inject( p ).hits.empty() ) << "packet " << i;
   }

   // Room comes back: the back-end asks for the pass that will put the ACL in.
   EXPECT_FALSE( helper.needsDeferredUpdate() );
   for ( const auto& [manager, entry] : fillers ) {
      manager->releaseEntry( 0, entry );
   }
   EXPECT_TRUE( helper.needsDeferredUpdate() );
   EXPECT_TRUE( sw.machine().passWanted() );

   // The next pass puts the ACL in on both units.
   sw.runPass();
   EXPECT_EQ( Fennel::aclCreateSuccess, acl.error ) << acl.errorText;
   EXPECT_EQ( Fennel::PendingReason::none, acl.pending );
   EXPECT_FALSE( helper.dirty() );
   for ( const Fennel::AclUnitView& unit : Fennel::aclUnits( helper, key ) ) {
      EXPECT_TRUE( unit.installed ) << "unit " << unit.unit;
      EXPECT_FALSE( unit.dirty ) << "unit " << unit.unit;
   }
   for ( U32 i = 0; i < 300; ++i ) {
      Fennel::Packet p = random.macPacketFor( *list );
      p.in = IntfId::ethernet( i % 2 ? 1 : 25 );
      EXPECT_EQ( "", sw.disagreement( p ) ) << "packet " << i;
   }
   EXPECT_FALSE( sw.machine().passWanted() );
}

}  // namespace
