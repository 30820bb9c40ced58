// Configuration changes applied as diffs by the generic machine, one pass each, with the
// back-end's own binding, port mask and teardown operations: after every pass the hardware
// agrees with the reference evaluator on random packets, lists that did not change are not
// touched, and what goes is gone from the chips.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fennel/HalyardView.h"
#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/switch/GenericSwitch.h"
#include "tests/fennel/switch/RandomAcls.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Fennel::AclKey;
using Pylon::IntfId;
using namespace FennelTest;

const IntfId eth1 = IntfId::ethernet( 1 );
const IntfId eth2 = IntfId::ethernet( 2 );
const IntfId eth3 = IntfId::ethernet( 3 );
const IntfId eth25 = IntfId::ethernet( 25 );
const IntfId eth26 = IntfId::ethernet( 26 );
// Port-Channel10 of the default switch: Ethernet21 and Ethernet22.
const IntfId po10 = IntfId::portChannel( 10 );
const IntfId eth21 = IntfId::ethernet( 21 );
const IntfId eth22 = IntfId::ethernet( 22 );

class ChangesTest : public ::testing::Test {
 protected:
   // Random packets on every port of the test, each checked against the evaluator.
   void expectAgreement( const std::string& step,
                         const std::vector<IntfId>& ports = { eth1, eth2, eth3, eth25, eth26 } ) {
      const auto mac = sw_.config()->aclConfig( AclType::mac, Vesper::Name( "m" ) );
      const auto v4 = sw_.config()->aclConfig( AclType::ip, Vesper::Name( "v4" ) );
      for ( int i = 0; i < 300; ++i ) {
         Fennel::Packet p =
             mac && random_.below( 2 ) ? random_.macPacketFor( *mac ) : random_.ipPacketFor( *v4 );
         p.in = random_.pick( ports );
         if ( random_.below( 2 ) ) {
            p.out = random_.pick( ports );
         }
         if ( p.out == p.in ) {
            p.out.reset();
         }
         EXPECT_EQ( "", sw_.disagreement( p ) ) << step << ", packet " << i;
      }
      for ( const auto& [key, acl] : sw_.machine().acls() ) {
         EXPECT_TRUE( acl.committed ) << step << ": " << key << ": " << acl.errorText;
         EXPECT_EQ( Fennel::PendingReason::none, acl.pending ) << step << ": " << key;
      }
   }
   U32 applications( const std::string& name, AclType type, AclDirection dir ) {
      const auto* acl = sw_.machine().acl( AclKey( name, type, dir ) );
      return acl ? acl->applications : 0;
   }

   Vesper::ActivityLockGuard activity_;
   GenericSwitch sw_;
   RandomAcls random_{ 11 };
};

TEST_F( ChangesTest, EachPassLeavesTheHardwareAsTheConfigurationSays ) {
   random_.macListIs( sw_.config(), "m", 60 );
   listIs( sw_.config(), AclType::ip, "v4",
           { ip4( 10, permit ).proto( tcp ).dport( range( 1000, 2000 ) ),
             ip4( 20, deny ).proto( udp ).src( "10.0.0.0/8" ), ip4( 30, permit ).proto( udp ) } );
   sw_.bind( AclType::mac, "m", eth1, AclDirection::in );
   sw_.bind( AclType::mac, "m", eth25, AclDirection::in );
   sw_.bind( AclType::ip, "v4", eth1, AclDirection::in );
   sw_.bind( AclType::ip, "v4", eth3, AclDirection::out );
   sw_.settle();
   expectAgreement( "first apply" );

   // A changed list is reapplied; the other is not touched.
   random_.macListIs( sw_.config(), "m", 40 );
   sw_.settle();
   EXPECT_EQ( 2u, applications( "m", AclType::mac, AclDirection::in ) );
   EXPECT_EQ( 1u, applications( "v4", AclType::ip, AclDirection::in ) );
   expectAgreement( "a changed MAC list" );

   // Ports come and go under a standing list.
   sw_.intfConfig()->intfAclDel( AclType::mac, AclDirection::in, eth1 );
   sw_.bind( AclType::mac, "m", eth2, AclDirection::in );
   sw_.bind( AclType::ip, "v4", eth26, AclDirection::in );
   sw_.settle();
   expectAgreement( "ports moved" );

   // A port passes straight from one list to another of its kind.
   listIs( sw_.config(), AclType::ip, "v4b", { ip4( 10, deny ).proto( tcp ), ip4( 20, permit ) } );
   sw_.bind( AclType::ip, "v4b", eth26, AclDirection::in );
   sw_.settle();
   expectAgreement( "a port to another list" );

   // A list goes from the configuration: its ACL goes from the chips.
   sw_.config()->aclConfigDel( AclType::mac, Vesper::Name( "m" ) );
   sw_.settle();
   EXPECT_EQ( nullptr, sw_.machine().acl( AclKey( "m", AclType::mac, AclDirection::in ) ) );
   EXPECT_TRUE(
       Fennel::aclUnits( *sw_.agent().helper(), AclKey( "m", AclType::mac, AclDirection::in ) )
           .empty() );
   expectAgreement( "a list removed" );

   // Nothing bound: nothing of any list stands in the back-end.
   sw_.intfConfig()->intfAclDelAll();
   sw_.settle();
   EXPECT_TRUE( sw_.machine().acls().empty() );
   EXPECT_EQ( 0u, Fennel::EntryOwners( *sw_.agent().helper() ).size() );
   EXPECT_FALSE( sw_.machine().passWanted() );
}

// A port-channel's list goes on every member port, in and out, and leaves them all.
TEST_F( ChangesTest, APortChannelsListStandsOnEveryMember ) {
   random_.macListIs( sw_.config(), "m", 30 );
   listIs( sw_.config(), AclType::ip, "v4",
           { ip4( 10, deny ).proto( udp ).dst( "10.1.0.0/16" ), ip4( 20, permit ) } );
   sw_.bind( AclType::ip, "v4", po10, AclDirection::in );
   sw_.bind( AclType::mac, "m", po10, AclDirection::out );
   sw_.settle();
   const std::vector<IntfId> ports = { eth1, eth21, eth22, po10 };
   expectAgreement( "bound to the port-channel", ports );
   const auto* acl = sw_.machine().acl( AclKey( "v4", AclType::ip, AclDirection::in ) );
   ASSERT_NE( nullptr, acl );
   EXPECT_EQ( ( std::set<IntfId>{ eth21, eth22 } ), acl->intfs );

   sw_.intfConfig()->intfAclDelAll();
   sw_.settle();
   EXPECT_TRUE( sw_.machine().acls().empty() );
   EXPECT_EQ( 0u, Fennel::EntryOwners( *sw_.agent().helper() ).size() );
}

}  // namespace
