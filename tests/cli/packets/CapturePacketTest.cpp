// Captures: a pcap and a pcapng file holding the packets of a JSON-lines file read to the same
// packets; the frames reach the simulated switch as the chip's own packets.
#include <gtest/gtest.h>
#include <pcap/pcap.h>

#include <cstring>
#include <fstream>

#include "cli/packets/PacketInput.h"
#include "cli/packets/SimPacket.h"
#include "sim/switch/SimSwitch.h"
#include "tests/cli/packets/PacketCompare.h"

namespace {

using namespace HalyardCli;
using HalyardCliTest::samePacket;

// One of each kind of header the form has, all in on Ethernet1 and out on Ethernet25, as a
// capture read with --in Ethernet1 --out Ethernet25 gives them.
const char* const kLines =
    R"({"in":"Ethernet1","out":"Ethernet25","eth":{"src":"02:00:00:00:00:01","dst":"02:00:00:00:00:02"},"ipv4":{"src":"10.0.0.1","dst":"10.0.1.10","dscp":10,"ecn":2,"ttl":3},"tcp":{"sport":40000,"dport":443,"flags":["syn","urg","fin"]},"payload":"deadbeef"}
{"in":"Ethernet1","out":"Ethernet25","vlan":100,"ipv4":{"src":"10.0.0.1","dst":"10.0.1.53"},"udp":{"sport":5353,"dport":53}}
{"in":"Ethernet1","out":"Ethernet25","ipv4":{"src":"192.168.1.1","dst":"10.0.0.9"},"icmp":{"type":3,"code":3},"payload":"00"}
{"in":"Ethernet1","out":"Ethernet25","ipv4":{"src":"10.0.0.1","dst":"10.0.0.2","proto":6,"frag":"later"},"payload":"0102030405060708"}
{"in":"Ethernet1","out":"Ethernet25","ipv4":{"src":"10.0.0.1","dst":"10.0.0.2","frag":"first","len":1500},"tcp":{"dport":80}}
{"in":"Ethernet1","out":"Ethernet25","ipv4":{"src":"10.0.0.1","dst":"10.0.0.2","proto":47},"payload":"000008000000"}
{"in":"Ethernet1","out":"Ethernet25","ipv6":{"src":"2001:db8::1","dst":"2001:db8:1::10","dscp":46,"ecn":3,"hlim":1},"tcp":{"sport":1,"dport":80,"flags":["ack","psh","rst"]}}
{"in":"Ethernet1","out":"Ethernet25","vlan":4094,"ipv6":{"src":"2001:db8::1","dst":"2001:db8::2","frag":"first"},"udp":{"sport":1,"dport":2},"payload":"ff"}
{"in":"Ethernet1","out":"Ethernet25","ipv6":{"src":"::","dst":"ff02::1","next":17,"frag":"later"},"payload":"aabb"}
{"in":"Ethernet1","out":"Ethernet25","ipv6":{"src":"fe80::1","dst":"ff02::1:ff00:1","hlim":255},"icmp":{"type":135,"code":0}}
{"in":"Ethernet1","out":"Ethernet25","ipv6":{"src":"2001:db8::1","dst":"2001:db8::2","len":1000},"udp":{}}
{"in":"Ethernet1","out":"Ethernet25","eth":{"src":"02:00:00:00:0b:01","dst":"ff:ff:ff:ff:ff:ff","type":2054},"payload":"0001080006040001"}
{"in":"Ethernet1","out":"Ethernet25","eth":{"type":35020}})";

PacketDefaults captureDefaults() {
   PacketDefaults d;
   d.in = Pylon::IntfId::ethernet( 1 );
   d.out = Pylon::IntfId::ethernet( 25 );
   return d;
}

class Capture : public testing::Test {
 protected:
   void SetUp() override { lines_ = readJsonLines( kLines, "lines.jsonl", {} ); }

   std::string path( const char* name ) const { return testing::TempDir() + name; }

   // The lines' packets as a pcap file, written by libpcap.
   std::string writePcap() const {
      const std::string file = path( "halyard-capture.pcap" );
      pcap_t* dead = pcap_open_dead( DLT_EN10MB, 65535 );
      pcap_dumper_t* dumper = pcap_dump_open( dead, file.c_str() );
      EXPECT_TRUE( dumper ) << pcap_geterr( dead );
      for ( const Fennel::Packet& p : lines_ ) {
         const std::vector<U8> frame = frameBytes( p );
         pcap_pkthdr header{};
         header.caplen = header.len = static_cast<U32>( frame.size() );
         pcap_dump( reinterpret_cast<u_char*>( dumper ), &header, frame.data() );
      }
      pcap_dump_close( dumper );
      pcap_close( dead );
      return file;
   }

   // The same as pcapng: a section header, one Ethernet interface, an enhanced packet block a
   // frame (libpcap reads pcapng but does not write it).
   std::string writePcapng() const {
      std::vector<U8> bytes;
      auto u32 = [&]( U32 v ) { bytes.insert( bytes.end(), (U8*)&v, (U8*)&v + 4 ); };
      auto u16 = [&]( U16 v ) { bytes.insert( bytes.end(), (U8*)&v, (U8*)&v + 2 ); };
      u32( 0x0A0D0D0A ), u32( 28 ), u32( 0x1A2B3C4D ), u16( 1 ), u16( 0 ), u32( ~0u ), u32( ~0u ),
          u32( 28 );
      u32( 1 ), u32( 20 ), u16( DLT_EN10MB ), u16( 0 ), u32( 0 ), u32( 20 );
      for ( const Fennel::Packet& p : lines_ ) {
         std::vector<U8> frame = frameBytes( p );
         const U32 caplen = static_cast<U32>( frame.size() );
         frame.resize( ( frame.size() + 3 ) / 4 * 4 );
         const U32 total = 32 + static_cast<U32>( frame.size() );
         u32( 6 ), u32( total ), u32( 0 ), u32( 0 ), u32( 0 ), u32( caplen ), u32( caplen );
         bytes.insert( bytes.end(), frame.begin(), frame.end() );
         u32( total );
      }
      const std::string file = path( "halyard-capture.pcapng" );
      std::ofstream( file, std::ios::binary )
          .write( (const char*)bytes.data(), (std::streamsize)bytes.size() );
      return file;
   }

   void expectSameAsLines( const std::vector<Fennel::Packet>& read ) const {
      ASSERT_EQ( read.size(), lines_.size() );
      for ( std::size_t i = 0; i < read.size(); ++i ) {
         EXPECT_TRUE( samePacket( lines_[i], read[i] ) ) << "packet " << i + 1;
      }
   }

   std::vector<Fennel::Packet> lines_;
};

TEST_F( Capture, PcapOfTheLinesReadsToTheSamePackets ) {
   expectSameAsLines( readPacketFile( writePcap(), captureDefaults() ) );
}

TEST_F( Capture, PcapngOfTheLinesReadsToTheSamePackets ) {
   expectSameAsLines( readPacketFile( writePcapng(), captureDefaults() ) );
}

TEST_F( Capture, ACaptureNeedsAnIngressInterface ) {
   const std::string file = writePcap();
   try {
      readPacketFile( file, {} );
      FAIL() << "read a capture without --in";
   } catch ( const PacketError& e ) {
      EXPECT_EQ( std::string( e.what() ),
                 file + ": a capture carries no interfaces: expected --in INTERFACE" );
   }
}

TEST_F( Capture, ABadFrameIsNamedByItsNumber ) {
   std::vector<U8> frame = frameBytes( lines_[0] );
   frame.resize( 14 + 20 + 10 );  // the TCP header cut short
   const std::string file = path( "halyard-short.pcap" );
   pcap_t* dead = pcap_open_dead( DLT_EN10MB, 65535 );
   pcap_dumper_t* dumper = pcap_dump_open( dead, file.c_str() );
   pcap_pkthdr header{};
   for ( const auto& f : { frameBytes( lines_[1] ), frame } ) {
      header.caplen = header.len = static_cast<U32>( f.size() );
      pcap_dump( reinterpret_cast<u_char*>( dumper ), &header, f.data() );
   }
   pcap_dump_close( dumper );
   pcap_close( dead );
   try {
      readPacketFile( file, captureDefaults() );
      FAIL() << "read a truncated frame";
   } catch ( const PacketError& e ) {
      EXPECT_EQ( std::string( e.what() ),
                 file + ": packet 2: truncated TCP header: expected 20 bytes, found 10" );
   }
}

TEST_F( Capture, ThePacketsReachTheSwitchAsTheChipsOwnPackets ) {
   const Sim::Packet tcp = toSimPacket( lines_[0] );
   EXPECT_EQ( tcp.l3, Sim::L3Kind::Ipv4 );
   EXPECT_EQ( tcp.srcIp4, Sim::ip4( "10.0.0.1" ) );
   EXPECT_EQ( tcp.tos, 10 << 2 | 2 );
   EXPECT_EQ( tcp.tcpFlags, Sim::kTcpSyn | Sim::kTcpUrg | Sim::kTcpFin );
   EXPECT_TRUE( tcp.hasL4Header() );
   const Sim::Packet tagged = toSimPacket( lines_[1] );
   ASSERT_TRUE( tagged.outerTag );
   EXPECT_EQ( tagged.outerTag->vid, 100 );
   EXPECT_TRUE( toSimPacket( lines_[3] ).isLaterFragment() );
   EXPECT_FALSE( toSimPacket( lines_[3] ).hasL4Header() );
   const Sim::Packet v6frag = toSimPacket( lines_[7] );
   EXPECT_EQ( v6frag.ip6ExtensionHeader, Sim::kIp6ExtFragment );
   EXPECT_TRUE( v6frag.moreFragments );

   // With no ACLs, forwarding's choice stands: in on unit 0, out on Ethernet25, port 1 of unit 1.
   Sim::SimSwitch simSwitch;
   const Sim::SwitchVerdict v = inject( simSwitch, lines_[0] );
   EXPECT_FALSE( v.dropped() );
   ASSERT_EQ( v.delivered.size(), 1u );
   EXPECT_EQ( v.delivered[0].unit(), 1u );
   EXPECT_EQ( v.delivered[0].port(), 1u );
}

}  // namespace
