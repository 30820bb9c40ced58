// Class compression: the lookup maps values and destination prefixes to classes, and entries
// match the classes.
#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

struct ExactCase {
   const char* name;
   ExactClassTable table;
   QualId qual;
   U16 value;
   Packet hit;
   Packet miss;
};

class ExactCompression : public ChipTest, public ::testing::WithParamInterface<ExactCase> {};

TEST_P( ExactCompression, EntryMatchesTheClassOfTheValue ) {
   const ExactCase& c = GetParam();
   chip.classTables().exactClassIs( c.table, c.value, 5 );
   EXPECT_EQ( 5u, chip.classTables().exactClass( c.table, c.value ) );
   EntryId e = dropOn( kIfp, c.qual, 5, 0xFF );
   EXPECT_EQ( e, chip.lookup( c.hit ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( c.miss ).hitIn( kIfp ) );
   // Unbound, the value has class 0 again.
   EXPECT_TRUE( chip.classTables().exactClassDel( c.table, c.value ) );
   EXPECT_EQ( std::nullopt, chip.lookup( c.hit ).hitIn( kIfp ) );
}

Packet tcpTo( U16 sport, U16 dport ) {
   return Packet::tcp4( 1, 2, sport, dport ).ingressPortIs( 1 ).egressPortIs( 2 );
}

INSTANTIATE_TEST_SUITE_P(
    Tables, ExactCompression,
    ::testing::Values(
        ExactCase{ "EtherType", ExactClassTable::EtherType, QualId::EtherTypeClass, kEtherTypeArp,
                   Packet::ethernet( kEtherTypeArp ).ingressPortIs( 1 ), tcpTo( 1, 2 ) },
        ExactCase{ "IpProtocol", ExactClassTable::IpProtocol, QualId::IpProtocolClass, kProtoUdp,
                   Packet::udp4( 1, 2, 3, 4 ).ingressPortIs( 1 ), tcpTo( 3, 4 ) },
        ExactCase{ "L4SrcPort", ExactClassTable::L4SrcPort, QualId::L4SrcPortClass, 179,
                   tcpTo( 179, 1 ), tcpTo( 1, 179 ) },
        ExactCase{ "L4DstPort", ExactClassTable::L4DstPort, QualId::L4DstPortClass, 179,
                   tcpTo( 1, 179 ), tcpTo( 179, 1 ) } ),
    []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ChipTest, DstIpClassIsTheNibbleOfTheLongestPrefix ) {
   auto& t = chip.classTables();
   t.dstIp4ClassIs( ip4( "10.0.0.0" ), 0xFF000000, U64{ 1 } << 32 );
   t.dstIp4ClassIs( ip4( "10.1.0.0" ), 0xFFFF0000, U64{ 2 } << 32 );
   EXPECT_EQ( U64{ 2 } << 32, t.dstIp4Class( ip4( "10.1.9.9" ), 0xFFFF0000 ) );
   EntryId one = dropOn( kIfp, QualId::DstIpClassMsbNibble, 1, 0xF, 1 );
   EntryId two = dropOn( kIfp, QualId::DstIpClassMsbNibble, 2, 0xF, 2 );
   auto to = []( const char* d ) { return Packet::udp4( 1, ip4( d ), 1, 1 ).ingressPortIs( 1 ); };
   EXPECT_EQ( two, chip.lookup( to( "10.1.2.3" ) ).hitIn( kIfp ) );
   EXPECT_EQ( one, chip.lookup( to( "10.2.2.3" ) ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( to( "11.0.0.1" ) ).hitIn( kIfp ) );
   // Binding the prefix again replaces its class.
   t.dstIp4ClassIs( ip4( "10.1.0.0" ), 0xFFFF0000, U64{ 1 } << 32 );
   EXPECT_EQ( one, chip.lookup( to( "10.1.2.3" ) ).hitIn( kIfp ) );
   EXPECT_TRUE( t.dstIp4ClassDel( ip4( "10.0.0.0" ), 0xFF000000 ) );
   EXPECT_FALSE( t.dstIp4ClassDel( ip4( "10.0.0.0" ), 0xFF000000 ) );
}

TEST_F( ChipTest, DstIp6ClassAndTheLowBitsOfAWideClass ) {
   const Ip6Addr mask48 = ip6( "ffff:ffff:ffff::" );
   // Bits below 32 are not part of the nibble the entry sees.
   chip.classTables().dstIp6ClassIs( ip6( "2001:db8:5::" ), mask48, ( U64{ 3 } << 32 ) | 0x77 );
   EntryId e = dropOn( kIfp, QualId::DstIp6ClassMsbNibble, 3, 0xF );
   auto to = []( const char* d ) {
      return Packet::udp6( ip6( "::1" ), ip6( d ), 1, 1 ).ingressPortIs( 1 );
   };
   EXPECT_EQ( e, chip.lookup( to( "2001:db8:5::9" ) ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( to( "2001:db8:6::9" ) ).hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
