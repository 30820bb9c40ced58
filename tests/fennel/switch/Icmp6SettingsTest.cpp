// The ICMPv6 permits at the end of an IPv6 list, under each setting of the switch: the closing
// entries' permit (defaultTypes), the generic layer's neighbour discovery permits
// (neighborDiscovery), or none. Hardware and evaluator agree on ICMPv6 of every type, and on
// fragments of it.
#include <gtest/gtest.h>

#include "platform/vesper/ActivityLock.h"
#include "tests/fennel/common/Rules.h"
#include "tests/fennel/switch/GenericSwitch.h"

namespace {

using Acl::AclDirection;
using Acl::AclType;
using Acl::PermitIcmp6TypesConfig;
using Pylon::IntfId;
using namespace FennelTest;

class Icmp6Settings : public ::testing::TestWithParam<PermitIcmp6TypesConfig> {};

TEST_P( Icmp6Settings, HardwareAgreesWithTheReference ) {
   Vesper::ActivityLockGuard activity;
   GenericSwitch sw;
   sw.paramConfig()->permitIcmp6TypesConfigIs( GetParam() );
   listIs( sw.config(), AclType::ipv6, "v6",
           { ip6( 10, deny ).proto( icmp6 ).icmpType( 128 ), ip6( 20, permit ).proto( tcp ) } );
   sw.bind( AclType::ipv6, "v6", IntfId::ethernet( 1 ), AclDirection::in );
   sw.bind( AclType::ipv6, "v6", IntfId::ethernet( 25 ), AclDirection::in );
   sw.settle();
   const auto* acl = sw.machine().acl( Fennel::AclKey( "v6", AclType::ipv6, AclDirection::in ) );
   ASSERT_TRUE( acl && acl->committed );
   // Two configured rules, four neighbour discovery permits when asked for, the closing rule.
   EXPECT_EQ( GetParam() == PermitIcmp6TypesConfig::neighborDiscovery ? 7u : 3u,
              acl->rules.size() );

   U32 permitted = 0;
   for ( IntfId in : { IntfId::ethernet( 1 ), IntfId::ethernet( 25 ) } ) {
      for ( U8 type : { 1, 128, 129, 133, 134, 135, 136, 137 } ) {
         for ( Fennel::Frag frag :
               { Fennel::Frag::none, Fennel::Frag::first, Fennel::Frag::later } ) {
            Fennel::Packet p = icmpPacket( "2001:db8::1", "2001:db8::2", type, 0, frag );
            p.in = in;
            EXPECT_EQ( "", sw.disagreement( p ) )
                << "type " << int( type ) << " frag " << int( frag );
            permitted += sw.reference( p ).permit ? 1 : 0;
         }
      }
      Fennel::Packet udpPacket = l4Packet( udp, "2001:db8::1", "2001:db8::2", 1, 2 );
      udpPacket.in = in;
      EXPECT_EQ( "", sw.disagreement( udpPacket ) );
      EXPECT_FALSE( sw.reference( udpPacket ).permit );
   }
   switch ( GetParam() ) {
      case PermitIcmp6TypesConfig::defaultTypes:
         EXPECT_EQ( 2u * ( 8 * 3 - 2 ), permitted );  // all but echo requests, whole or first
         break;
      case PermitIcmp6TypesConfig::neighborDiscovery:
         EXPECT_EQ( 2u * 4 * 2, permitted );  // the four types, whole or first fragment
         break;
      case PermitIcmp6TypesConfig::none:
         EXPECT_EQ( 0u, permitted );
         break;
   }
}

INSTANTIATE_TEST_SUITE_P( Settings, Icmp6Settings,
                          ::testing::Values( PermitIcmp6TypesConfig::defaultTypes,
                                             PermitIcmp6TypesConfig::neighborDiscovery,
                                             PermitIcmp6TypesConfig::none ),
                          []( const auto& info ) { return Vesper::stringValue( info.param ); } );

}  // namespace
