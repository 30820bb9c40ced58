// Payload matches (user-defined fields) in MAC and IPv4 lists, counted from either end of the
// list's own header: packets whose bytes match and miss get the hardware verdict and hit rule
// that the reference evaluator gives, on every chip kind that matches payload; the others refuse
// the lists.
#include <gtest/gtest.h>

#include <random>

#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/switch/GenericSwitch.h"
#include "tests/support/SwitchLayout.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Acl::PayloadStart;
using Pylon::IntfId;
using namespace FennelTest;

class PayloadOnEachChipKind : public ::testing::TestWithParam<std::string> {};

TEST_P( PayloadOnEachChipKind, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw( HalyardTest::profileOf( HalyardTest::SwitchLayout( { GetParam() } ) ) );
   // IPv4: word 4 from the header's start is the destination address; from its end, word 0 the
   // UDP ports and word 2 the first payload bytes.
   listIs( sw.config(), AclType::ip, "p4",
           { ip4( 10, deny )
                 .proto( udp )
                 .payload( PayloadStart::headerStart, { { 4, 0x0A000001, 0xFFFFFFFF } } ),
             ip4( 20, permit )
                 .proto( udp )
                 .payload( PayloadStart::headerEnd,
                           { { 0, 0x00000035, 0x0000FFFF }, { 2, 0xAB00CD00, 0xFF00FF00 } } ),
             ip4( 30, deny ).proto( udp ), ip4( 40, permit ) } );
   // MAC: from the Ethernet header's start, word 1 holds the last two bytes of the destination
   // and the first two of the source; from its end, the first IP byte.
   listIs( sw.config(), AclType::mac, "pm",
           { macRule( 10, deny )
                 .payload( PayloadStart::headerStart, { { 1, 0x00020000, 0x00FFFF00 } } ),
             macRule( 20, permit )
                 .payload( PayloadStart::headerEnd, { { 0, 0x45000000, 0xFF000000 } } ),
             macRule( 30, deny ) } );
   const IntfId v4In = HalyardTest::intfOf( 0, 1 );
   const IntfId macIn = HalyardTest::intfOf( 0, 2 );
   sw.bind( AclType::ip, "p4", v4In, AclDirection::in );
   sw.bind( AclType::mac, "pm", macIn, AclDirection::in );
   sw.settle();
   if ( !sw.agent().helper()->aclPayloadSupported() ) {
      // The chip matches no payload: both lists are refused, and nothing of them is programmed.
      for ( const auto& [key, acl] : sw.machine().acls() ) {
         EXPECT_EQ( Fennel::aclCreateNotExpressible, acl.error ) << key;
         EXPECT_EQ( "sequence 10: payload terms are not served by this switch's chips",
                    acl.errorText );
         EXPECT_EQ( 0u, acl.applications );
      }
      return;
   }
   for ( const auto& [key, acl] : sw.machine().acls() ) {
      ASSERT_TRUE( acl.committed ) << key << ": " << acl.errorText;
      ASSERT_EQ( Fennel::aclCreateSuccess, acl.error ) << key << ": " << acl.errorText;
   }
   std::mt19937 rng( 6 );
   auto byte = [&] { return static_cast<U8>( rng() % 4 == 0 ? 0xAB : rng() ); };
   for ( int i = 0; i < 400; ++i ) {
      const char* dst = rng() % 3 ? "10.0.0.1" : "10.0.0.2";
      const U16 dport = rng() % 2 ? 53 : 54;
      Fennel::Packet p = l4Packet( udp, "10.0.0.9", dst, 7, dport );
      p.payload = { byte(), byte(), static_cast<U8>( rng() % 3 ? 0xCD : 0 ), byte() };
      p.in = v4In;
      EXPECT_EQ( "", sw.disagreement( p ) ) << "packet " << i;
      if ( rng() % 2 ) {
         p = ethPacket( "00:00:00:00:00:01", rng() % 2 ? "00:00:00:00:00:02" : "00:00:00:00:01:02",
                        0x0806 );
      }
      p.in = macIn;
      EXPECT_EQ( "", sw.disagreement( p ) ) << "packet " << i;
   }
}

INSTANTIATE_TEST_SUITE_P( Catalog, PayloadOnEachChipKind,
                          ::testing::ValuesIn( HalyardTest::catalogKindNames() ),
                          []( const auto& info ) { return info.param; } );

}  // namespace
