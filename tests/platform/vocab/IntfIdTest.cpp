// Interface names: every kind parses, answers its kind queries and prints
// back; bad names fail with one clear message; order and hash.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "platform/pylon/IntfId.h"
#include "tests/platform/vocab/VocabTestUtil.h"

namespace {

using Pylon::IntfId;

IntfId parse( std::string_view text ) {
   return Pylon::strepToValue<IntfId>( text );
}

struct KindCase {
   const char* text;
   IntfId::Kind kind;
   bool ethernet, portChannel, vlan, sub;
   U32 number, lane, subId;
   const char* parent;
};

void PrintTo( const KindCase& c, std::ostream* os ) {
   *os << c.text;
}

class IntfIdKindTest : public testing::TestWithParam<KindCase> {};

TEST_P( IntfIdKindTest, ParsesAnswersAndPrintsBack ) {
   const KindCase& c = GetParam();
   IntfId intf = parse( c.text );
   EXPECT_EQ( c.kind, intf.kind() );
   EXPECT_EQ( c.ethernet, intf.isEthernet() );
   EXPECT_EQ( c.portChannel, intf.isPortChannel() );
   EXPECT_EQ( c.vlan, intf.isVlan() );
   EXPECT_EQ( c.sub, intf.isSubIntf() );
   EXPECT_EQ( c.sub && c.kind == IntfId::Kind::ethernet, intf.isEthernetSubIntf() );
   EXPECT_EQ( c.sub && c.kind == IntfId::Kind::portChannel, intf.isPortChannelSubIntf() );
   EXPECT_EQ( c.number, intf.number() );
   EXPECT_EQ( c.lane, intf.lane() );
   EXPECT_EQ( c.subId, intf.subIntfId() );
   EXPECT_EQ( c.parent, valueToStrep( intf.parent() ) );
   EXPECT_EQ( c.text, valueToStrep( intf ) );
   EXPECT_EQ( c.vlan, Pylon::VlanIntfId::isVlanIntfId( intf ) );
   EXPECT_FALSE( intf.isNull() );
}

using K = IntfId::Kind;
INSTANTIATE_TEST_SUITE_P(
    Kinds, IntfIdKindTest,
    testing::Values(
        KindCase{ "Ethernet1", K::ethernet, true, false, false, false, 1, 0, 0, "Ethernet1" },
        KindCase{ "Ethernet3/4", K::ethernet, true, false, false, false, 3, 4, 0, "Ethernet3/4" },
        KindCase{ "Ethernet65535", K::ethernet, true, false, false, false, 65535, 0, 0,
                  "Ethernet65535" },
        KindCase{ "Port-Channel5", K::portChannel, false, true, false, false, 5, 0, 0,
                  "Port-Channel5" },
        KindCase{ "Vlan100", K::vlan, false, false, true, false, 100, 0, 0, "Vlan100" },
        KindCase{ "Vlan4094", K::vlan, false, false, true, false, 4094, 0, 0, "Vlan4094" },
        KindCase{ "Ethernet1.100", K::ethernet, false, false, false, true, 1, 0, 100, "Ethernet1" },
        KindCase{ "Ethernet2/1.7", K::ethernet, false, false, false, true, 2, 1, 7, "Ethernet2/1" },
        KindCase{ "Port-Channel5.10", K::portChannel, false, false, false, true, 5, 0, 10,
                  "Port-Channel5" } ) );

class IntfIdBadNameTest : public testing::TestWithParam<const char*> {};

TEST_P( IntfIdBadNameTest, FailsWithTheAcceptedForms ) {
   std::string message = VocabTest::parseErrorText( [] { parse( GetParam() ); } );
   EXPECT_EQ( "'" + std::string( GetParam() ) +
                  "' is not an interface name: expected EthernetN, EthernetN/M, Port-ChannelN, "
                  "VlanN, or a sub-interface EthernetN.S, EthernetN/M.S, Port-ChannelN.S",
              message );
}

INSTANTIATE_TEST_SUITE_P( Names, IntfIdBadNameTest,
                          testing::Values( "Ethernet", "Ethernet0", "Ethernet01", "Ethernet65536",
                                           "Ethernet1/", "Ethernet1/0", "Ethernet1.", "Ethernet1.0",
                                           "Ethernet1.100.2", "Ethernet1/1/1", "ethernet1", "Et1",
                                           "Port-Channel", "Port-Channel1/1", "Vlan0", "Vlan4095",
                                           "Vlan100.1", "Loopback0", " Ethernet1", "Ethernet1 ",
                                           "Ethernet-1" ) );

TEST( IntfIdTest, FactoriesMatchParsedNamesAndCheckRanges ) {
   EXPECT_EQ( parse( "Ethernet7/2" ), IntfId::ethernet( 7, 2 ) );
   EXPECT_EQ( parse( "Port-Channel5.10" ), IntfId::portChannel( 5 ).subIntf( 10 ) );
   EXPECT_EQ( parse( "Vlan9" ), IntfId::vlan( Pylon::VlanId( 9 ) ) );
   VocabTest::expectThrowText<Vesper::RangeException>( [] { IntfId::ethernet( 0 ); },
                                                       "IntfId::port < 1 or > 65535 not allowed" );
   VocabTest::expectThrowText<Vesper::RangeException>(
       [] { IntfId::portChannel( 70000 ); }, "IntfId::portChannel < 1 or > 65535 not allowed" );
   VocabTest::expectThrowText<Vesper::RangeException>(
       [] { IntfId::vlan( Pylon::VlanId( 5 ) ).subIntf( 1 ); },
       "IntfId::subIntf of Vlan5 not allowed" );
   VocabTest::expectThrowText<Vesper::RangeException>(
       [] { IntfId::ethernet( 1 ).subIntf( 1 ).subIntf( 2 ); },
       "IntfId::subIntf of Ethernet1.1 not allowed" );
}

TEST( IntfIdTest, OrdersNumericallyWithSubInterfacesAfterTheirParent ) {
   std::vector<std::string> names = { "Vlan2",     "Ethernet10",     "Port-Channel1",
                                      "Ethernet2", "Ethernet2.5",    "Ethernet2/1",
                                      "Ethernet1", "Port-Channel1.3" };
   std::vector<IntfId> ids;
   for ( const auto& n : names ) {
      ids.push_back( parse( n ) );
   }
   std::sort( ids.begin(), ids.end() );
   std::vector<std::string> sorted;
   for ( IntfId id : ids ) {
      sorted.push_back( valueToStrep( id ) );
   }
   EXPECT_EQ(
       ( std::vector<std::string>{ "Ethernet1", "Ethernet2", "Ethernet2.5", "Ethernet2/1",
                                   "Ethernet10", "Port-Channel1", "Port-Channel1.3", "Vlan2" } ),
       sorted );
}

}  // namespace
