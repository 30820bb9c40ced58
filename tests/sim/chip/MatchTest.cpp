// Each qualifier matches the packet field it names, and only that packet: one case per
// qualifier form, each with a packet that must hit and a near neighbour that must not.
#include <functional>
#include <vector>

#include "tests/sim/chip/ChipFixture.h"

namespace Sim {
namespace {

struct MatchCase {
   const char* name;
   std::function<Status( ChipModel&, EntryId )> program;
   Packet hit;
   Packet miss;
   std::function<void( ChipModel& )> prepare = {};
};

auto qual( QualId q, U64 data, U64 mask ) {
   return [=]( ChipModel& c, EntryId e ) { return c.qualifierIs( e, q, data, mask ); };
}

template <std::size_t N>
auto qualBytes( QualId q, std::array<U8, N> data, std::array<U8, N> mask ) {
   return [=]( ChipModel& c, EntryId e ) { return c.qualifierIs( e, q, data, mask ); };
}

auto ipType( IpType t ) {
   return [=]( ChipModel& c, EntryId e ) { return c.ipTypeIs( e, t ); };
}

Packet at( Packet p ) {
   return p.ingressPortIs( 1 ).egressPortIs( 2 );
}

const U32 kA = ip4( "10.1.2.3" );
const U32 kB = ip4( "10.2.0.1" );
const Ip6Addr kA6 = ip6( "2001:db8:0:1::1" );
const Ip6Addr kB6 = ip6( "2001:db8:0:2::1" );

Packet tcp4( U16 sport = 1024, U16 dport = 80, U8 flags = 0 ) {
   return at( Packet::tcp4( kA, kB, sport, dport, flags ) );
}
Packet tcp6() {
   return at( Packet::tcp6( kA6, kB6, 1024, 80 ) );
}
Packet arp() {
   return at( Packet::ethernet( kEtherTypeArp ) );
}

std::vector<MatchCase> cases() {
   const Ip6Addr all6 = ip6( "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff" );
   return {
       { "SrcIpPrefix", qual( QualId::SrcIp, ip4( "10.1.0.0" ), 0xFFFF0000 ), tcp4(),
         at( Packet::tcp4( kB, kB, 1, 2 ) ) },
       { "DstIpHost", qual( QualId::DstIp, kB, 0xFFFFFFFF ), tcp4(),
         at( Packet::tcp4( kA, kA, 1, 2 ) ) },
       { "SrcIp6", qualBytes( QualId::SrcIp6, kA6, all6 ), tcp6(),
         at( Packet::tcp6( kB6, kB6, 1, 2 ) ) },
       { "DstIp6", qualBytes( QualId::DstIp6, kB6, all6 ), tcp6(),
         at( Packet::tcp6( kA6, kA6, 1, 2 ) ) },
       { "SrcMac",
         qualBytes( QualId::SrcMac, mac( "00:11:22:33:44:55" ), mac( "ff:ff:ff:ff:ff:ff" ) ),
         tcp4().srcMacIs( mac( "00:11:22:33:44:55" ) ),
         tcp4().srcMacIs( mac( "00:11:22:33:44:56" ) ) },
       { "DstMacOui",
         qualBytes( QualId::DstMac, mac( "00:1c:73:00:00:00" ), mac( "ff:ff:ff:00:00:00" ) ),
         tcp4().dstMacIs( mac( "00:1c:73:12:34:56" ) ),
         tcp4().dstMacIs( mac( "00:1c:74:12:34:56" ) ) },
       { "EtherType", qual( QualId::EtherType, kEtherTypeIpv6, 0xFFFF ), tcp6(), tcp4() },
       { "IpProtocol", qual( QualId::IpProtocol, kProtoUdp, 0xFF ),
         at( Packet::udp4( kA, kB, 53, 53 ) ), tcp4() },
       { "L4SrcPort", qual( QualId::L4SrcPort, 1024, 0xFFFF ), tcp4( 1024 ), tcp4( 1025 ) },
       { "L4DstPortBlock", qual( QualId::L4DstPort, 80, 0xFFF0 ), tcp4( 1, 95 ), tcp4( 1, 96 ) },
       { "L4SrcPortIcmpTypeCode", qual( QualId::L4SrcPort, 0x0800, 0xFF00 ),
         at( Packet::icmp4( kA, kB, 8, 0 ) ), at( Packet::icmp4( kA, kB, 0, 0 ) ) },
       { "DscpIgnoresEcn", qual( QualId::Dscp, 0xB8, 0xFC ), tcp4().tosIs( 0xB9 ),
         tcp4().tosIs( 0x00 ) },
       { "Ip6TrafficClass", qual( QualId::Ip6TrafficClass, 0x20, 0xFF ), tcp6().tosIs( 0x20 ),
         tcp6().tosIs( 0x21 ) },
       { "Ttl", qual( QualId::Ttl, 1, 0xFF ), tcp4().ttlIs( 1 ), tcp4().ttlIs( 64 ) },
       { "Ip6HopLimit", qual( QualId::Ip6HopLimit, 255, 0xFF ), tcp6().ttlIs( 255 ),
         tcp6().ttlIs( 254 ) },
       { "TcpControlSyn", qual( QualId::TcpControl, kTcpSyn, kTcpSyn ),
         tcp4( 1, 80, kTcpSyn | kTcpAck ), tcp4( 1, 80, kTcpAck ) },
       { "OuterVlanIdTagged", qual( QualId::OuterVlanId, 100, 0xFFF ), tcp4().taggedIs( 100 ),
         tcp4().taggedIs( 200 ) },
       { "OuterVlanIdUntaggedIsPortVlan", qual( QualId::OuterVlanId, 100, 0xFFF ),
         tcp4().vlanIs( 100 ), tcp4().vlanIs( 101 ) },
       { "ForwardingVlanId", qual( QualId::ForwardingVlanId, 30, 0xFFF ), tcp4().vlanIs( 30 ),
         tcp4().vlanIs( 31 ) },
       { "VxlanNetworkId", qual( QualId::VxlanNetworkId, 5000, 0xFFFFFF ), tcp4().vniIs( 5000 ),
         tcp4() },
       { "HiGig", qual( QualId::HiGig, 1, 1 ), tcp4().higigIs(), tcp4() },
       { "L3Routable", qual( QualId::L3Routable, 1, 1 ), tcp4().routedIs(), tcp4() },
       { "MyStationHit", qual( QualId::MyStationHit, 1, 1 ), tcp4().myStationHitIs(), tcp4() },
       { "DstClassL2SkipBitClear", qual( QualId::DstClassL2, 0, 0x40 ), tcp4().dstL2ClassIs( 0x3 ),
         tcp4().dstL2ClassIs( 0x43 ) },
       { "DstClassField", qual( QualId::DstClassField, 3, 0xF ), tcp4().dstL3ClassIs( 3 ),
         tcp4().dstL3ClassIs( 4 ) },
       { "InterfaceClassL2", qual( QualId::InterfaceClassL2, 0x04, 0x04 ), tcp4().vlanIs( 10 ),
         tcp4().vlanIs( 11 ), []( ChipModel& c ) { c.vlans().l2ClassIs( 10, 0x04 ); } },
       { "InterfaceClassL3", qual( QualId::InterfaceClassL3, 0x200, 0x3E0 ), tcp4().vlanIs( 10 ),
         tcp4().vlanIs( 11 ), []( ChipModel& c ) { c.vlans().l3ClassIs( 10, 0x200 ); } },
       { "EgressClassL3Interface", qual( QualId::EgressClassL3Interface, 10, 0xFFF ),
         tcp4().routedIs().egressVlanIs( 10 ), tcp4().routedIs().egressVlanIs( 11 ),
         []( ChipModel& c ) {
            c.vlans().egressL3ClassIs( 10, 10 );
            c.vlans().egressL3ClassIs( 11, 11 );
         } },
       { "ExtensionHeaderTypeIsIpv4Protocol", qual( QualId::ExtensionHeaderType, 141, 0xFF ),
         at( Packet::ipv4( kA, kB, 141 ) ), tcp4() },
       { "ExtensionHeaderTypeIpv6", qual( QualId::ExtensionHeaderType, 43, 0xFF ),
         tcp6().ip6ExtensionHeaderIs( 43 ), tcp6() },
       { "IngressStpState", qual( QualId::IngressStpState, 1, 0xFF ), tcp4(),
         tcp4().ingressPortIs( 3 ),
         []( ChipModel& c ) { c.ports().stpStateIs( 1, StpState::Block ); } },
       { "InterfaceClassPort", qual( QualId::InterfaceClassPort, 7, 0xFF ), tcp4(),
         tcp4().ingressPortIs( 3 ),
         []( ChipModel& c ) { c.ports().portClassIs( 1, PortClassKind::FieldIngress, 7 ); } },
       { "IpTypeIpv4Any", ipType( IpType::Ipv4Any ), tcp4(), tcp6() },
       { "IpTypeIpv6", ipType( IpType::Ipv6 ), tcp6(), tcp4() },
       { "IpTypeIp", ipType( IpType::Ip ), tcp6(), arp() },
       { "IpTypeNonIp", ipType( IpType::NonIp ), arp(), tcp4() },
       { "IpTypeArp", ipType( IpType::Arp ), arp(), at( Packet::ethernet( 0x88CC ) ) },
       { "IpTypeIpv6NoExtHdr", ipType( IpType::Ipv6NoExtHdr ), tcp6(),
         tcp6().ip6ExtensionHeaderIs( 0 ) },
       { "IpTypeIpv6OneExtHdr", ipType( IpType::Ipv6OneExtHdr ), tcp6().ip6ExtensionHeaderIs( 0 ),
         tcp6() },
   };
}

class QualifierMatch : public ChipTest, public ::testing::WithParamInterface<MatchCase> {};

TEST_P( QualifierMatch, HitsTheMatchingPacketOnly ) {
   const MatchCase& c = GetParam();
   if ( c.prepare ) {
      c.prepare( chip );
   }
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, c.program( chip, e ) );
   ASSERT_EQ( Status::Ok, chip.actionIs( e, ActionId::Drop, 0, 0 ) );
   install( e );

   Verdict hit = chip.lookup( c.hit );
   EXPECT_TRUE( hit.dropped ) << hit.text();
   EXPECT_EQ( e, hit.hitIn( kIfp ) );
   EXPECT_FALSE( hit.forwarded() );

   Verdict miss = chip.lookup( c.miss );
   EXPECT_FALSE( miss.dropped ) << miss.text();
   EXPECT_EQ( std::nullopt, miss.hitIn( kIfp ) );
   EXPECT_EQ( PortBitmap{ 2 }, miss.egressPorts );
   EXPECT_EQ( 1u, chip.entryHits( e ) );
}

INSTANTIATE_TEST_SUITE_P( Qualifiers, QualifierMatch, ::testing::ValuesIn( cases() ),
                          []( const auto& info ) { return std::string( info.param.name ); } );

TEST_F( ChipTest, QualifiersSharingAKeyFieldMustAgree ) {
   // DSCP and Ip6TrafficClass read the one TOS field: an entry asking two values never hits.
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::Dscp, 0x20, 0xFF ) );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::Ip6TrafficClass, 0x40, 0xFF ) );
   install( e );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp().tosIs( 0x20 ) ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp().tosIs( 0x40 ) ).hitIn( kIfp ) );
}

TEST_F( ChipTest, FieldsOfAbsentHeadersAreZero ) {
   // An ARP packet has no IP addresses or ports; the key holds zeros in their place.
   EntryId e = entry( kIfp );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::SrcIp, 0, 0xFFFFFFFF ) );
   ASSERT_EQ( Status::Ok, chip.qualifierIs( e, QualId::L4DstPort, 0, 0xFFFF ) );
   install( e );
   EXPECT_EQ( e, chip.lookup( arp() ).hitIn( kIfp ) );
   EXPECT_EQ( std::nullopt, chip.lookup( tcp4() ).hitIn( kIfp ) );
}

}  // namespace
}  // namespace Sim
