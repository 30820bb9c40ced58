// Packets: text forms, derived lengths, and the wire image the UDFs read.
#include <gtest/gtest.h>

#include <array>

#include "platform/vesper/Exception.h"
#include "sim/chip/Packet.h"

namespace Sim {
namespace {

TEST( PacketText, AddressesParseAndRejectMalformedText ) {
   EXPECT_EQ( 0x0A000102u, ip4( "10.0.1.2" ) );
   EXPECT_THROW( ip4( "10.0.1" ), Vesper::ParseException );
   EXPECT_THROW( ip4( "10.0.1.256" ), Vesper::ParseException );
   const Ip6Addr a = ip6( "2001:db8::1" );
   EXPECT_EQ( 0x20u, a[0] );
   EXPECT_EQ( 0xB8u, a[3] );
   EXPECT_EQ( 0x01u, a[15] );
   EXPECT_EQ( Ip6Addr{}, ip6( "::" ) );
   EXPECT_THROW( ip6( "1:2:3:4:5:6:7" ), Vesper::ParseException );
   EXPECT_THROW( ip6( "1::2::3" ), Vesper::ParseException );
   EXPECT_EQ( ( MacAddr{ 0, 0x1c, 0x73, 0xaa, 0xbb, 0xcc } ), mac( "00:1c:73:aa:bb:cc" ) );
   EXPECT_THROW( mac( "00:1c:73:aa:bb" ), Vesper::ParseException );
}

TEST( PacketLength, ComputedFromHeadersUnlessGiven ) {
   Packet p = Packet::tcp4( 1, 2, 3, 4 ).payloadIs( std::vector<U8>( 10 ) );
   EXPECT_EQ( 50u, p.ipLength() );
   EXPECT_EQ( 8u, Packet::udp6( {}, {}, 1, 2 ).ipLength() - 40u );
   EXPECT_EQ( 56u, Packet::udp6( {}, {}, 1, 2 ).ip6ExtensionHeaderIs( 0 ).ipLength() );
   EXPECT_EQ( 1500u, p.ipTotalLengthIs( 1500 ).ipLength() );
   EXPECT_EQ( 0u, Packet::ethernet( kEtherTypeArp ).ipLength() );
}

TEST( PacketWire, TaggedTcpLaysOutItsHeaders ) {
   Packet p = Packet::tcp4( ip4( "10.0.0.1" ), ip4( "10.0.0.2" ), 1024, 80, kTcpSyn )
                  .taggedIs( 100, 5 )
                  .payloadIs( { 0xDE, 0xAD } );
   std::array<U8, 128> buf{};
   HeaderOffsets off;
   EXPECT_EQ( 18u + 20u + 20u + 2u, p.wireImage( buf, off ) );
   EXPECT_EQ( 18u, off.l3 );
   EXPECT_EQ( 38u, off.l4 );
   EXPECT_EQ( 58u, off.l4Payload );
   EXPECT_EQ( 0x81u, buf[12] );
   EXPECT_EQ( 0xA0u, buf[14] );  // PCP 5, VID 100
   EXPECT_EQ( 100u, buf[15] );
   EXPECT_EQ( 0x08u, buf[16] );
   EXPECT_EQ( 0x45u, buf[18] );
   EXPECT_EQ( 42u, buf[18 + 3] );  // total length: 20 + 20 + 2
   EXPECT_EQ( kProtoTcp, buf[18 + 9] );
   EXPECT_EQ( 80u, buf[38 + 3] );
   EXPECT_EQ( kTcpSyn, buf[38 + 13] );
   EXPECT_EQ( 0xDEu, buf[58] );
}

TEST( PacketWire, LaterFragmentsHaveNoLayer4HeaderAndIpv6GetsAFragmentHeader ) {
   std::array<U8, 128> buf{};
   HeaderOffsets off;
   Packet v4 = Packet::udp4( 1, 2, 3, 4 ).fragmentIs( true, 100 );
   v4.wireImage( buf, off );
   // Past the first fragment the chip parses no layer 4: no base for UDFs either.
   EXPECT_EQ( 14u, off.l3 );
   EXPECT_EQ( std::nullopt, off.l4 );
   EXPECT_EQ( std::nullopt, off.l4Payload );
   EXPECT_EQ( 0x20u, buf[14 + 6] & 0xE0 );  // more-fragments flag
   EXPECT_FALSE( v4.hasL4Header() );

   Packet v6 = Packet::udp6( {}, {}, 3, 4 ).fragmentIs( false, 0 );
   EXPECT_EQ( std::nullopt, v6.ip6ExtensionHeader );
   v6.fragmentIs( false, 9 );
   EXPECT_EQ( kIp6ExtFragment, v6.ip6ExtensionHeader );
   v6.wireImage( buf, off );
   EXPECT_EQ( kIp6ExtFragment, buf[14 + 6] );  // next header of the fixed header
   EXPECT_EQ( kProtoUdp, buf[54] );            // next header of the fragment header
   EXPECT_EQ( 9u << 3, ( buf[56] << 8 ) | buf[57] );
   EXPECT_EQ( std::nullopt, off.l4 );
   v6.fragmentIs( true, 0 );
   v6.wireImage( buf, off );
   EXPECT_EQ( 62u, off.l4 );
   EXPECT_EQ( 70u, off.l4Payload );
   v6.fragmentIs( false, 0 );
   EXPECT_EQ( std::nullopt, v6.ip6ExtensionHeader );
}

}  // namespace
}  // namespace Sim
