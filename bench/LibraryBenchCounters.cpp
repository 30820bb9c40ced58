// Reading rule hit counters, and what the library keeps per entry.
//
// BM_CounterPoll/N: one poll of the generic layer (pollCounters: every configured rule of the
// list through aclRuleCountersSinceLastPoll) over a list of about N entries. ns_per_entry is
// the poll's time per entry less the managers' own cost: hitsForEntry called on the same
// entries, each through the manager that issued it, resolved beforehand (so that finding the
// manager counts as the library's). allocs_per_poll counts operator new calls (AllocHook.h).
//
// BM_BookkeepingBytes/N: the bytes that stand allocated after the list is applied, less those
// before (switch up, configuration parsed), per installed entry. In: the generic layer's state
// of the list, the back-end's records of its rules and entries, the TCAM managers' and the chip
// model's records of the entries. Out: the configuration records, bring-up. chip_bytes_per_entry
// is the chip model's share, measured on a bare chip programmed with the same number of entries
// of the set, so that bytes_per_entry - chip_bytes_per_entry bounds what the library keeps.
#include <benchmark/benchmark.h>

#include <chrono>

#include "bench/AllocHook.h"
#include "bench/LibraryBench.h"
#include "platform/vesper/ActivityLock.h"

namespace HalyardBench {

namespace {

using Clock = std::chrono::steady_clock;

double nanoseconds( Clock::duration d ) {
   return std::chrono::duration<double, std::nano>( d ).count();
}

// The managers' cost per entry: hitsForEntry alone, over `entries`, averaged over rounds.
double hitsForEntryNs( LibrarySwitch& sw, const std::vector<U32>& entries ) {
   std::vector<Halyard::HalyardTcamEntryManager::Ptr> managers;
   for ( U32 entry : entries ) {
      managers.push_back( sw.simSwitch().groupManager()->tcamManagerForEntry( entry ) );
   }
   constexpr int kRounds = 50;
   U64 sum = 0;
   const Clock::time_point start = Clock::now();
   for ( int round = 0; round < kRounds; ++round ) {
      for ( std::size_t i = 0; i < entries.size(); ++i ) {
         sum += managers[i]->hitsForEntry( 0, entries[i] );
      }
   }
   const Clock::duration taken = Clock::now() - start;
   benchmark::DoNotOptimize( sum );
   return nanoseconds( taken ) / ( double( kRounds ) * double( entries.size() ) );
}

void BM_CounterPoll( benchmark::State& state ) {
   LibrarySwitch sw( entriesConfig( std::size_t( state.range( 0 ) ) ) );
   const U32 entries = sw.installedEntries();
   Fennel::GenericAclSm& machine = sw.machine();
   machine.pollCounters();  // the first read of each rule sets its base
   const AllocCounts before = allocCounts();
   const Clock::time_point start = Clock::now();
   for ( auto _ : state ) {
      machine.pollCounters();
   }
   const Clock::duration taken = Clock::now() - start;
   const AllocCounts after = allocCounts();
   const double iterations = double( state.iterations() );
   const double pollNs = nanoseconds( taken ) / iterations / double( entries );
   const double hitsNs = hitsForEntryNs( sw, sw.entryIds() );
   state.counters["entries"] = entries;
   state.counters["poll_ns_per_entry"] = pollNs;
   state.counters["hits_ns_per_entry"] = hitsNs;
   state.counters["ns_per_entry"] = pollNs - hitsNs;
   state.counters["allocs_per_poll"] =
       double( after.allocations - before.allocations ) / iterations;
}
BENCHMARK( BM_CounterPoll )->Arg( 1000 )->Arg( 10000 )->Unit( benchmark::kMicrosecond );

// Live bytes of a bare chip model holding about `entries` entries of acl1_10k, per entry.
double chipBytesPerEntry( std::size_t entries ) {
   const auto& rules = classBenchRules( "acl1_10k" );
   const Sim::ChipKind& kind = *Sim::chipKindByName( "tomahawk" );
   const AllocCounts before = allocCounts();
   Sim::ChipModel chip( kind.chipConfig( 1 ) );
   (void)chip.groupCreate( 1, Sim::Stage::Ifp, 1 );
   const Sim::ClassBench::Programmed programmed =
       Sim::ClassBench::program( chip, 1, rules, U32( entries ) );
   const AllocCounts after = allocCounts();
   return double( after.liveBytes - before.liveBytes ) / double( programmed.entries );
}

void BM_BookkeepingBytes( benchmark::State& state ) {
   const std::size_t size = std::size_t( state.range( 0 ) );
   double bytes = 0;
   U32 entries = 0;
   for ( auto _ : state ) {
      LibrarySwitch sw( entriesConfig( size ), false );
      const AllocCounts before = allocCounts();
      sw.settle();
      const AllocCounts after = allocCounts();
      entries = sw.installedEntries();
      bytes = double( after.liveBytes - before.liveBytes );
   }
   state.counters["entries"] = entries;
   state.counters["bytes_per_entry"] = bytes / entries;
   Vesper::ActivityLockGuard lock;
   state.counters["chip_bytes_per_entry"] = chipBytesPerEntry( entries );
}
BENCHMARK( BM_BookkeepingBytes )
    ->Arg( 1000 )
    ->Arg( 10000 )
    ->Iterations( 1 )
    ->Unit( benchmark::kMillisecond );

}  // namespace

}  // namespace HalyardBench
