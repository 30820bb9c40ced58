// Ethernet, IPv4 and IPv6 addresses: text round trips, the alternative
// forms, byte order, masks, and bad input.
#include <gtest/gtest.h>

#include <cstring>

#include "platform/pylon/EthAddr.h"
#include "platform/pylon/Ip6Addr.h"
#include "platform/pylon/IpAddr.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using namespace Pylon;

TEST( EthAddrTest, ParsesBothFormsAndPrintsColons ) {
   EthAddr addr( 0x00, 0x11, 0x22, 0x33, 0x44, 0x55 );
   EXPECT_EQ( addr, strepToValue<EthAddr>( "00:11:22:33:44:55" ) );
   EXPECT_EQ( addr, strepToValue<EthAddr>( "0011.2233.4455" ) );
   EXPECT_EQ( "00:11:22:33:44:55", valueToStrep( addr ) );
   EthAddr upper = strepToValue<EthAddr>( "AA:bb:0C:d:E:F0" );
   EXPECT_EQ( "aa:bb:0c:0d:0e:f0", valueToStrep( upper ) );
   EXPECT_EQ( upper, strepToValue<EthAddr>( valueToStrep( upper ) ) );
   EXPECT_EQ( strepToValue<EthAddr>( "1.2.3" ), EthAddr( 0, 1, 0, 2, 0, 3 ) );
}

TEST( EthAddrTest, BytesAreInWireOrder ) {
   EthAddr addr;
   EXPECT_TRUE( addr.isZero() );
   addr.byteIs( 0, 0x01 );
   addr.byteIs( 5, 0xfe );
   EXPECT_EQ( "01:00:00:00:00:fe", valueToStrep( addr ) );
   EXPECT_TRUE( addr.isMulticast() );
   EXPECT_LT( EthAddr( 0, 0, 0, 0, 0, 0xff ), EthAddr( 1, 0, 0, 0, 0, 0 ) );
   EXPECT_NE( EthAddr( 0, 0, 0, 0, 0, 1 ).hash(), EthAddr( 1, 0, 0, 0, 0, 0 ).hash() );
}

class BadEthAddrTest : public testing::TestWithParam<const char*> {};

TEST_P( BadEthAddrTest, Throws ) {
   std::string message = VocabTest::parseErrorText( [] { strepToValue<EthAddr>( GetParam() ); } );
   EXPECT_EQ( "'" + std::string( GetParam() ) +
                  "' is not an Ethernet address: expected xx:xx:xx:xx:xx:xx or xxxx.xxxx.xxxx",
              message );
}

INSTANTIATE_TEST_SUITE_P( Forms, BadEthAddrTest,
                          testing::Values( "", "00:11:22:33:44", "00:11:22:33:44:555",
                                           "0011.2233.44556", "00:11:22:33:44:gg",
                                           "0011:2233.4455" ) );

TEST( IpAddrTest, ValueIsHostOrderAndBytesAreWireOrder ) {
   IpAddr addr = strepToValue<IpAddr>( "10.1.2.3" );
   EXPECT_EQ( 0x0A010203u, addr.value() );
   EXPECT_EQ( ( std::array<U8, 4>{ 10, 1, 2, 3 } ), addr.bytes() );
   EXPECT_EQ( IpAddr( 10, 1, 2, 3 ), addr );
   EXPECT_EQ( "10.1.2.3", valueToStrep( addr ) );
   EXPECT_LT( IpAddr( 9, 255, 255, 255 ), IpAddr( 10, 0, 0, 0 ) );
   // The network-order number has the wire bytes in memory, on any host.
   U32 wire = addr.valueNetworkOrder();
   EXPECT_EQ( 0, std::memcmp( &wire, addr.bytes().data(), 4 ) );
   EXPECT_EQ( addr, IpAddr::fromNetworkOrder( wire ) );
}

TEST( IpAddrTest, PrefixAndFullMaskForms ) {
   auto prefix = strepToValue<IpAddrWithMask>( "192.168.0.0/16" );
   EXPECT_EQ( 16, prefix.len() );
   EXPECT_EQ( 0xFFFF0000u, prefix.mask() );
   EXPECT_EQ( "192.168.0.0/16", valueToStrep( prefix ) );
   EXPECT_EQ( 0u, IpAddrWithMask( IpAddr(), 0 ).mask() ) << "no shift by 32";
   VocabTest::expectThrowText<Vesper::RangeException>( [] { IpAddrWithMask( IpAddr(), 33 ); },
                                                       "IpAddrWithMask::len > 32 not allowed" );

   IpAddrWithFullMask full( prefix );
   EXPECT_EQ( 0xFFFF0000u, full.mask() );
   EXPECT_EQ( "192.168.0.0/255.255.0.0", valueToStrep( full ) );
   EXPECT_EQ( full, strepToValue<IpAddrWithFullMask>( "192.168.0.0/255.255.0.0" ) );
   EXPECT_EQ( full, strepToValue<IpAddrWithFullMask>( "192.168.0.0/16" ) );
   auto odd = strepToValue<IpAddrWithFullMask>( "10.0.0.1/255.0.0.255" );
   EXPECT_EQ( 0xFF0000FFu, odd.mask() );
   EXPECT_TRUE( odd.contains( IpAddr( 10, 9, 9, 1 ) ) );
   EXPECT_FALSE( odd.contains( IpAddr( 10, 9, 9, 2 ) ) );
   EXPECT_TRUE( IpAddrWithFullMask().contains( IpAddr( 1, 2, 3, 4 ) ) );
}

class BadIpTextTest : public testing::TestWithParam<const char*> {};

TEST_P( BadIpTextTest, ThrowsParseError ) {
   EXPECT_THROW( strepToValue<IpAddrWithFullMask>( GetParam() ), Vesper::ParseException );
}

INSTANTIATE_TEST_SUITE_P( Forms, BadIpTextTest,
                          testing::Values( "", "10.0.0.0", "10.0.0/8", "10.0.0.256/8",
                                           "10.0.0.0/33", "10..0.0/8", "10.0.0.0/ 8" ) );

TEST( Ip6AddrTest, PrintsCanonicalTextAndRoundTrips ) {
   struct {
      const char* in;
      const char* out;
   } cases[] = {
       { "2001:0db8:0000:0000:0000:0000:0000:0001", "2001:db8::1" },
       { "::", "::" },
       { "::1", "::1" },
       { "1::", "1::" },
       { "1:0:0:2:0:0:0:3", "1:0:0:2::3" },       // the longer run is shortened
       { "1:0:0:2:0:0:3:4", "1::2:0:0:3:4" },     // the first of equal runs
       { "1:0:2:3:4:5:6:7", "1:0:2:3:4:5:6:7" },  // a single zero group stays
       { "FE80::ABCD", "fe80::abcd" },
       { "::ffff:10.1.2.3", "::ffff:a01:203" },
   };
   for ( const auto& c : cases ) {
      Ip6Addr addr = strepToValue<Ip6Addr>( c.in );
      EXPECT_EQ( c.out, valueToStrep( addr ) ) << c.in;
      EXPECT_EQ( addr, strepToValue<Ip6Addr>( valueToStrep( addr ) ) ) << c.in;
   }
   Ip6Addr addr = strepToValue<Ip6Addr>( "2001:db8::ff" );
   EXPECT_EQ( 0x01, addr.byte( 1 ) );
   EXPECT_EQ( 0xff, addr.byte( 15 ) );
}

class BadIp6TextTest : public testing::TestWithParam<const char*> {};

TEST_P( BadIp6TextTest, ThrowsParseError ) {
   EXPECT_THROW( strepToValue<Ip6Addr>( GetParam() ), Vesper::ParseException );
}

INSTANTIATE_TEST_SUITE_P( Forms, BadIp6TextTest,
                          testing::Values( "", ":::", "1::2::3", "1:2:3:4:5:6:7",
                                           "1:2:3:4:5:6:7:8:9", "12345::", "g::", "::1.2.3",
                                           "1:2:3:4:5:6:7:8::" ) );

TEST( Ip6AddrTest, PrefixLengthOfAFullMaskIsInvalidUnlessAPrefix ) {
   auto prefix = strepToValue<Ip6AddrWithMask>( "2001:db8::/33" );
   EXPECT_EQ( 33, prefix.len().value() );
   EXPECT_EQ( "ffff:ffff:8000::", valueToStrep( prefix.mask() ) );
   EXPECT_EQ( "2001:db8::/33", valueToStrep( prefix ) );

   Ip6AddrWithFullMask full( prefix );
   EXPECT_EQ( Ip6PrefixLen( 33 ), full.prefixLen() );
   EXPECT_EQ( full, strepToValue<Ip6AddrWithFullMask>( "2001:db8::/ffff:ffff:8000::" ) );
   EXPECT_EQ( full, strepToValue<Ip6AddrWithFullMask>( "2001:db8::/33" ) );
   EXPECT_EQ( "2001:db8::/ffff:ffff:8000::", valueToStrep( full ) );

   auto holed = strepToValue<Ip6AddrWithFullMask>( "2001:db8::/ffff:0:ffff::" );
   EXPECT_TRUE( holed.prefixLen().isInvalid() );
   EXPECT_EQ( Ip6PrefixLen( 0 ), Ip6AddrWithFullMask().prefixLen() );
   EXPECT_EQ( Ip6PrefixLen( 128 ), strepToValue<Ip6AddrWithFullMask>( "::1/128" ).prefixLen() );
   // Compared with 64 by its own ordering, as the VFP eligibility test does.
   EXPECT_LT( Ip6PrefixLen( 64 ), Ip6PrefixLen( 65 ) );
   EXPECT_LT( Ip6PrefixLen( 64 ), holed.prefixLen() );
}

TEST( Ip6AddrTest, BadPrefixText ) {
   EXPECT_THROW( strepToValue<Ip6AddrWithMask>( "2001:db8::" ), Vesper::ParseException );
   EXPECT_THROW( strepToValue<Ip6AddrWithMask>( "2001:db8::/x" ), Vesper::ParseException );
   EXPECT_THROW( strepToValue<Ip6AddrWithMask>( "2001:db8::/130" ), Vesper::RangeException );
   // 129 is the marker of no prefix, never a length to write.
   EXPECT_THROW( strepToValue<Ip6AddrWithFullMask>( "::/129" ), Vesper::ParseException );
   EXPECT_THROW( strepToValue<Ip6AddrWithFullMask>( "::/ffff::g" ), Vesper::ParseException );
}

}  // namespace
