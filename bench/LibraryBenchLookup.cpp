// Packets through the whole switch: BM_Lookup/SET pushes the header trace of acl1_1k through a
// switch brought up by the back-end (its management entries in VFP, IFP and EFP) with the set
// applied through the generic layer as the list "cb" in on Ethernet1, each packet from
// Ethernet1 to Ethernet2, so that it meets VFP and IFP on the way in and EFP on the way out.
// Port ranges go in as the tool programs them: range checkers while the unit has them, then
// aligned blocks. acl1_10k has no trace of its own; most of the acl1_1k trace misses it and
// meets the closing rule after the whole list.
#include <benchmark/benchmark.h>

#include "bench/LibraryBench.h"

namespace HalyardBench {

namespace {

void BM_Lookup( benchmark::State& state, const char* set ) {
   const auto& rules = classBenchRules( set );
   LibrarySwitch sw( classBenchConfig( rules, rules.size(), true ) );
   std::vector<Sim::Packet> packets;
   for ( const auto& h : Sim::ClassBench::readTrace( classBenchPath( "acl1_1k_trace" ) ) ) {
      packets.push_back( Sim::ClassBench::packetOf( h, 1, 2 ) );
   }
   if ( packets.empty() ) {
      state.SkipWithError( "no packets in acl1_1k_trace" );
      return;
   }
   const U32 entries = sw.installedEntries();
   std::size_t i = 0;
   U64 dropped = 0;
   for ( auto _ : state ) {
      const Sim::SwitchVerdict v = sw.simSwitch().inject( "Ethernet1", packets[i], "Ethernet2" );
      dropped += v.dropped();
      i = i + 1 == packets.size() ? 0 : i + 1;
   }
   state.counters["entries"] = entries;
   state.counters["packets_per_second"] =
       benchmark::Counter( 1, benchmark::Counter::kIsIterationInvariantRate );
   state.counters["drop_rate"] = double( dropped ) / double( state.iterations() );
}
BENCHMARK_CAPTURE( BM_Lookup, acl1_1k, "acl1_1k" );
BENCHMARK_CAPTURE( BM_Lookup, acl1_10k, "acl1_10k" );

}  // namespace

}  // namespace HalyardBench
