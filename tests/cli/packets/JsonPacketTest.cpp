// Packets as JSON lines: every field, the defaults, the canonical form, and the errors.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "cli/packets/PacketInput.h"
#include "sim/switch/SwitchProfile.h"
#include "tests/cli/packets/PacketCompare.h"

namespace {

using namespace HalyardCli;
using HalyardCliTest::samePacket;

PacketDefaults switchDefaults() {
   PacketDefaults d;
   d.interfaceExists = []( Pylon::IntfId intf ) { return Sim::defaultProfile().intfHas( intf ); };
   return d;
}

Fennel::Packet readOne( const std::string& line, const PacketDefaults& d = switchDefaults() ) {
   const auto packets = readJsonLines( line, "p.jsonl", d );
   EXPECT_EQ( packets.size(), 1u );
   return packets.empty() ? Fennel::Packet() : packets.front();
}

std::string errorOf( const std::string& text ) {
   try {
      readJsonLines( text, "p.jsonl", switchDefaults() );
   } catch ( const PacketError& e ) {
      return e.what();
   }
   return "(no error)";
}

TEST( JsonPacket, EveryFieldOfTheFormReadsIntoThePacket ) {
   const Fennel::Packet p = readOne(
       R"({"in":"Ethernet1", "vlan":100, "routed":true, "out":"Ethernet25",)"
       R"( "eth":{"src":"00:00:00:00:00:01", "dst":"00:00:00:00:00:02", "type":2048},)"
       R"( "ipv4":{"src":"10.0.0.1", "dst":"10.0.0.2", "proto":6, "dscp":46, "ecn":1, "ttl":9,)"
       R"( "len":1500, "frag":"first"}, "tcp":{"sport":1234, "dport":80, "flags":["syn","ack"]},)"
       R"( "payload":"0a0B0c0d"})" );
   EXPECT_EQ( p.in, Pylon::IntfId::ethernet( 1 ) );
   EXPECT_EQ( p.vlan, 100 );
   EXPECT_TRUE( p.routed );
   EXPECT_EQ( p.out, Pylon::IntfId::ethernet( 25 ) );
   EXPECT_EQ( p.eth.src, Pylon::EthAddr( 0, 0, 0, 0, 0, 1 ) );
   EXPECT_EQ( p.eth.type, 0x0800 );
   ASSERT_TRUE( p.ipv4 );
   EXPECT_EQ( p.ipv4->dst, Pylon::IpAddr( 10, 0, 0, 2 ) );
   EXPECT_EQ( p.ipv4->dscp, 46 );
   EXPECT_EQ( p.ipv4->ecn, 1 );
   EXPECT_EQ( p.ipv4->ttl, 9 );
   EXPECT_EQ( p.ipv4->len, 1500 );
   EXPECT_EQ( p.ipv4->frag, Fennel::Frag::first );
   ASSERT_TRUE( p.tcp );
   EXPECT_EQ( p.tcp->sport, 1234 );
   EXPECT_EQ( p.tcp->flags, Fennel::tcpSyn | Fennel::tcpAck );
   EXPECT_EQ( p.payload, ( std::vector<U8>{ 0x0a, 0x0b, 0x0c, 0x0d } ) );
}

TEST( JsonPacket, LeftOutFieldsTakeTheirDefaultsInTheCanonicalForm ) {
   const Fennel::Packet p = readOne( R"({"in":"Ethernet2", "ipv6":{"next":17, "len":48}})" );
   EXPECT_FALSE( p.vlan );
   EXPECT_FALSE( p.routed );
   EXPECT_FALSE( p.out );
   EXPECT_EQ( p.eth.type, 0x86DD ) << "the EtherType follows the IP header";
   ASSERT_TRUE( p.ipv6 );
   EXPECT_EQ( p.ipv6->hlim, 64 );
   EXPECT_EQ( p.ipv6->frag, Fennel::Frag::none );
   ASSERT_TRUE( p.udp ) << "a UDP packet carries its header even when the line leaves it out";
   EXPECT_EQ( p.udp->dport, 0 );
   EXPECT_FALSE( p.ipv6->len ) << "40 + 8 is what the headers give: left unset";

   const Fennel::Packet icmp = readOne( R"({"in":"Ethernet2", "ipv4":{}, "icmp":{"type":8}})" );
   EXPECT_EQ( icmp.ipv4->proto, 1 ) << "the protocol follows the layer 4 header";
   const Fennel::Packet later =
       readOne( R"({"in":"Ethernet2", "ipv4":{"proto":6, "frag":"later"}})" );
   EXPECT_FALSE( later.tcp ) << "a later fragment has no layer 4 header";
   const Fennel::Packet bare = readOne( R"({"in":"Ethernet2", "ipv6":{}})" );
   EXPECT_EQ( bare.ipv6->next, 59 ) << "no layer 4 header: no next header";
}

TEST( JsonPacket, MissingInterfacesComeFromTheDefaults ) {
   PacketDefaults d = switchDefaults();
   d.in = Pylon::IntfId::ethernet( 7 );
   d.out = Pylon::IntfId::portChannel( 10 );
   const Fennel::Packet p = readOne( R"({"eth":{"type":2054}})", d );
   EXPECT_EQ( p.in, Pylon::IntfId::ethernet( 7 ) );
   EXPECT_EQ( p.out, Pylon::IntfId::portChannel( 10 ) );
   EXPECT_FALSE( p.isIp() );
}

TEST( JsonPacket, TheExamplePacketsRoundTripThroughTheirJson ) {
   std::ifstream in( std::string( HALYARD_SOURCE_DIR ) + "/examples/packets/demo.jsonl" );
   std::ostringstream text;
   text << in.rdbuf();
   const auto packets = readJsonLines( text.str(), "demo.jsonl", switchDefaults() );
   ASSERT_GE( packets.size(), 24u );
   for ( const Fennel::Packet& p : packets ) {
      const std::string line = packetToJson( p ).dump();
      EXPECT_TRUE( samePacket( p, readOne( line ) ) );
   }
}

struct BadLine {
   const char* name;
   const char* text;
   const char* error;
};

class JsonPacketErrors : public testing::TestWithParam<BadLine> {};

TEST_P( JsonPacketErrors, NameFileLineAndWhatWasExpected ) {
   EXPECT_EQ( errorOf( GetParam().text ), GetParam().error );
}

const BadLine kBadLines[] = {
    { "MalformedJson", "\n{\"in\":\"Ethernet1\",}\n",
      "p.jsonl:2: malformed JSON at byte 19: expected one packet object a line" },
    { "NumberBeyondDouble", R"({"in":"Ethernet1", "ipv4":{"ttl":55e5555}})",
      "p.jsonl:1: a number too large to read: expected one packet object a line with numbers in "
      "their fields' ranges" },
    { "NotAnObject", "[1,2]", "p.jsonl:1: the line is not an object: expected {...}" },
    { "UnknownField", R"({"in":"Ethernet1", "ipv4":{"ttl":1, "tos":3}})",
      "p.jsonl:1: unknown field \"ipv4.tos\": expected src, dst, proto, dscp, ecn, ttl, len, "
      "frag" },
    { "OutOfRange", R"({"in":"Ethernet1", "ipv4":{"dscp":64}})",
      "p.jsonl:1: \"ipv4.dscp\" is 64: expected a number 0 to 63" },
    { "Negative", R"({"in":"Ethernet1", "vlan":-1})",
      "p.jsonl:1: \"vlan\" is -1: expected a number 1 to 4094" },
    { "BadAddress", R"({"in":"Ethernet1", "ipv6":{"src":"10.0.0.1"}})",
      "p.jsonl:1: \"ipv6.src\" is \"10.0.0.1\": expected an IPv6 address" },
    { "UnknownInterface", R"({"in":"Ethernet99"})",
      "p.jsonl:1: \"in\" is \"Ethernet99\": expected an interface of the switch" },
    { "MissingIn", R"({"eth":{}})",
      "p.jsonl:1: missing \"in\": expected the interface the packet arrives on (or --in)" },
    { "LaterFragmentWithPorts", R"({"in":"Ethernet1", "ipv4":{"frag":"later"}, "udp":{}})",
      "p.jsonl:1: a later fragment with a layer 4 header: expected none, since later fragments "
      "carry no layer 4 header" },
    { "ProtocolAgainstHeader", R"({"in":"Ethernet1", "ipv4":{"proto":17}, "tcp":{}})",
      "p.jsonl:1: \"ipv4.proto\" 17 does not match the layer 4 header: expected 6" },
    { "EtherTypeAgainstHeader", R"({"in":"Ethernet1", "eth":{"type":2054}, "ipv4":{}})",
      "p.jsonl:1: \"eth.type\" 2054 does not match the IP header: expected 2048 with \"ipv4\", "
      "34525 with \"ipv6\"" },
    { "IpEtherTypeWithoutHeader", R"({"in":"Ethernet1", "eth":{"type":34525}})",
      "p.jsonl:1: \"eth.type\" 34525 without an IP header: expected \"ipv6\" with it" },
    { "TwoIpHeaders", R"({"in":"Ethernet1", "ipv4":{}, "ipv6":{}})",
      "p.jsonl:1: both \"ipv4\" and \"ipv6\": expected one IP header at most" },
    { "NextIsAnExtensionHeader", R"({"in":"Ethernet1", "ipv6":{"next":0}})",
      "p.jsonl:1: \"ipv6.next\" is 0, an extension header: expected the protocol after the "
      "extension headers (a fragment header is \"frag\")" },
    { "BadFlag", R"({"in":"Ethernet1", "ipv4":{}, "tcp":{"flags":["syn","ece"]}})",
      "p.jsonl:1: \"tcp.flags\" holds \"ece\": expected a list of syn, ack, fin, rst, psh, urg" },
    { "ShortLength", R"({"in":"Ethernet1", "ipv4":{"len":30}, "tcp":{}})",
      "p.jsonl:1: \"ipv4.len\" 30 is shorter than the headers and payload: expected at least 40" },
    { "OddPayload", R"({"in":"Ethernet1", "payload":"abc"})",
      "p.jsonl:1: \"payload\" is not hexadecimal bytes: expected an even number of hex digits" },
};

INSTANTIATE_TEST_SUITE_P( Each, JsonPacketErrors, testing::ValuesIn( kBadLines ),
                          []( const auto& info ) { return std::string( info.param.name ); } );

}  // namespace
