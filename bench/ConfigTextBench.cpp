// The tool's readers at the scale of real rule sets: the ClassBench acl1 10k filter set written in
// the configuration language and read back, and its header trace as JSON-lines packets.
#include <benchmark/benchmark.h>

#include <bit>
#include <sstream>

#include "cli/config/ConfigText.h"
#include "cli/packets/PacketInput.h"
#include "sim/chip/ClassBench.h"

namespace {

using namespace HalyardCli;
namespace ClassBench = Sim::ClassBench;

const std::string kDataDir = HALYARD_SOURCE_DIR "/../shared/data/classbench/";

std::string address( U32 addr, U32 mask ) {
   if ( mask == 0 ) {
      return "any";
   }
   return Pylon::valueToStrep( Pylon::IpAddr( addr & mask ) ) + "/" +
          std::to_string( std::countl_one( mask ) );
}

std::string ports( U16 lo, U16 hi ) {
   if ( lo == 0 && hi == 0xFFFF ) {
      return "";
   }
   return lo == hi ? " eq " + std::to_string( lo )
                   : " range " + std::to_string( lo ) + " " + std::to_string( hi );
}

// The filter set as one IPv4 list, in rule order; rules with port ranges on protocols that have
// no ports in the language are left out.
const std::string& classBenchConfig() {
   static const std::string text = [] {
      std::ostringstream out;
      out << "ip access-list acl1\n";
      U32 seq = 0;
      for ( const ClassBench::Rule& r : ClassBench::readRules( kDataDir + "acl1_10k" ) ) {
         const bool l4 = r.protoMask && ( r.proto == 6 || r.proto == 17 );
         const std::string sport = ports( r.srcPortLo, r.srcPortHi );
         const std::string dport = ports( r.dstPortLo, r.dstPortHi );
         if ( !l4 && ( !sport.empty() || !dport.empty() ) ) {
            continue;
         }
         out << "   " << ( seq += 10 ) << " permit "
             << ( r.protoMask ? std::to_string( r.proto ) : std::string( "ip" ) ) << " "
             << address( r.src, r.srcMask ) << sport << " " << address( r.dst, r.dstMask ) << dport
             << "\n";
      }
      return out.str();
   }();
   return text;
}

const std::string& classBenchPackets() {
   static const std::string text = [] {
      std::ostringstream out;
      for ( const ClassBench::Header& h : ClassBench::readTrace( kDataDir + "acl1_1k_trace" ) ) {
         out << R"({"in":"Ethernet1", "ipv4":{"src":")" << Pylon::IpAddr( h.src ) << R"(", "dst":")"
             << Pylon::IpAddr( h.dst ) << R"(", "proto":)" << int( h.proto ) << "}";
         if ( h.proto == 6 || h.proto == 17 ) {
            out << ", \"" << ( h.proto == 6 ? "tcp" : "udp" ) << R"(":{"sport":)" << h.srcPort
                << R"(, "dport":)" << h.dstPort << "}";
         }
         out << "}\n";
      }
      return out.str();
   }();
   return text;
}

void BM_ParseClassBenchConfig( benchmark::State& state ) {
   const std::string& text = classBenchConfig();
   std::size_t rules = 0;
   for ( auto _ : state ) {
      const AclSetup setup = parseConfig( text, "acl1_10k.acl" );
      rules = setup.config->aclConfig( Acl::AclType::ip, Vesper::Name( "acl1" ) )->ruleCount();
      benchmark::DoNotOptimize( rules );
   }
   state.SetItemsProcessed( static_cast<int64_t>( state.iterations() * rules ) );
   state.counters["rules"] = static_cast<double>( rules );
}
BENCHMARK( BM_ParseClassBenchConfig )->Unit( benchmark::kMillisecond );

void BM_WriteClassBenchConfig( benchmark::State& state ) {
   const AclSetup setup = parseConfig( classBenchConfig(), "acl1_10k.acl" );
   for ( auto _ : state ) {
      benchmark::DoNotOptimize( writeConfig( setup ) );
   }
}
BENCHMARK( BM_WriteClassBenchConfig )->Unit( benchmark::kMillisecond );

void BM_ReadClassBenchTraceAsJsonLines( benchmark::State& state ) {
   const std::string& text = classBenchPackets();
   std::size_t packets = 0;
   for ( auto _ : state ) {
      packets = readJsonLines( text, "acl1_1k_trace.jsonl", {} ).size();
      benchmark::DoNotOptimize( packets );
   }
   state.SetItemsProcessed( static_cast<int64_t>( state.iterations() * packets ) );
}
BENCHMARK( BM_ReadClassBenchTraceAsJsonLines )->Unit( benchmark::kMillisecond );

}  // namespace
