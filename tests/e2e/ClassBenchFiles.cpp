#include "tests/e2e/ClassBenchFiles.h"

#include <pcap/pcap.h>

#include <bit>
#include <fstream>

#include "cli/packets/PacketInput.h"
#include "cli/packets/SimPacket.h"
#include "platform/pylon/ValueText.h"
#include "sim/chip/ClassBench.h"

namespace HalyardE2e {

namespace {

using Sim::ClassBench::Header;
using Sim::ClassBench::Rule;

const std::string kDataDir = HALYARD_SOURCE_DIR "/../shared/data/classbench/";

constexpr U8 kIcmp = 1;
constexpr U8 kTcp = 6;
constexpr U8 kUdp = 17;

std::string addressTerm( U32 addr, U32 mask ) {
   if ( mask == 0 ) {
      return "any";
   }
   const std::string text = Pylon::valueToStrep( Pylon::IpAddr( addr & mask ) );
   if ( mask == 0xFFFFFFFF ) {
      return "host " + text;
   }
   return text + "/" + std::to_string( std::popcount( mask ) );
}

std::string portTerm( U16 lo, U16 hi ) {
   if ( lo == 0 && hi == 0xFFFF ) {
      return "";
   }
   if ( lo == hi ) {
      return " eq " + std::to_string( lo );
   }
   return " range " + std::to_string( lo ) + " " + std::to_string( hi );
}

std::string protoTerm( const Rule& r ) {
   if ( r.protoMask == 0 ) {
      return "ip";
   }
   switch ( r.proto ) {
      case kTcp:
         return "tcp";
      case kUdp:
         return "udp";
      case kIcmp:
         return "icmp";
   }
   return std::to_string( r.proto );
}

std::string ruleLine( const Rule& r, std::size_t i ) {
   const bool ports = r.protoMask != 0 && ( r.proto == kTcp || r.proto == kUdp );
   std::string line = "   " + std::to_string( 10 * ( i + 1 ) ) +
                      ( i % 3 == 0 ? " deny " : " permit " ) + protoTerm( r ) + " " +
                      addressTerm( r.src, r.srcMask );
   line += ports ? portTerm( r.srcPortLo, r.srcPortHi ) : "";
   line += " " + addressTerm( r.dst, r.dstMask );
   line += ports ? portTerm( r.dstPortLo, r.dstPortHi ) : "";
   return line + "\n";
}

Fennel::Packet packetOf( const Header& h, std::size_t i ) {
   Fennel::Packet p;
   p.in = Pylon::IntfId::ethernet( i % 2 == 0 ? 1 : 25 );
   p.eth.type = 0x0800;
   p.ipv4.emplace();
   p.ipv4->src = Pylon::IpAddr( h.src );
   p.ipv4->dst = Pylon::IpAddr( h.dst );
   p.ipv4->proto = h.proto;
   const Fennel::PacketL4Ports ports{ h.srcPort, h.dstPort, 0 };
   if ( h.proto == kTcp ) {
      p.tcp = ports;
   } else if ( h.proto == kUdp ) {
      p.udp = ports;
   } else if ( h.proto == kIcmp ) {
      p.icmp = Fennel::PacketIcmp{ static_cast<U8>( h.srcPort >> 8 ),
                                   static_cast<U8>( h.srcPort & 0xFF ) };
   }
   HalyardCli::canonicalise( p );
   return p;
}

void writePcap( const std::string& path, const std::vector<Fennel::Packet>& packets ) {
   pcap_t* dead = pcap_open_dead( DLT_EN10MB, 65535 );
   pcap_dumper_t* dumper = pcap_dump_open( dead, path.c_str() );
   for ( const Fennel::Packet& p : packets ) {
      const std::vector<U8> frame = HalyardCli::frameBytes( p );
      pcap_pkthdr header{};
      header.caplen = header.len = static_cast<U32>( frame.size() );
      pcap_dump( reinterpret_cast<u_char*>( dumper ), &header, frame.data() );
   }
   pcap_dump_close( dumper );
   pcap_close( dead );
}

}  // namespace

std::string classBenchConfig( const std::vector<std::string>& names, std::size_t* rules ) {
   std::string text = "! ClassBench";
   std::vector<Rule> all;
   for ( const std::string& name : names ) {
      text += " " + name;
      const std::vector<Rule> set = Sim::ClassBench::readRules( kDataDir + name );
      all.insert( all.end(), set.begin(), set.end() );
   }
   text += ": rule i is sequence 10 (i + 1); every third denies\nip access-list cb\n";
   for ( std::size_t i = 0; i < all.size(); ++i ) {
      text += ruleLine( all[i], i );
   }
   text +=
       "interface Ethernet1\n   ip access-group cb in\n"
       "interface Ethernet25\n   ip access-group cb in\n";
   if ( rules ) {
      *rules = all.size();
   }
   return text;
}

ClassBenchFiles writeClassBenchFiles( const std::string& name, const std::string& dir ) {
   ClassBenchFiles files;
   files.config = dir + "/" + name + ".acl";
   files.jsonl = dir + "/" + name + ".jsonl";
   files.pcap = dir + "/" + name + ".pcap";

   std::ofstream( files.config ) << classBenchConfig( { name }, &files.rules );

   const std::vector<Header> trace = Sim::ClassBench::readTrace( kDataDir + name + "_trace" );
   std::vector<Fennel::Packet> packets;
   std::ofstream jsonl( files.jsonl );
   for ( std::size_t i = 0; i < trace.size(); ++i ) {
      packets.push_back( packetOf( trace[i], i ) );
      jsonl << HalyardCli::packetToJson( packets.back() ).dump() << "\n";
   }
   writePcap( files.pcap, packets );
   files.packets = packets.size();
   return files;
}

}  // namespace HalyardE2e
