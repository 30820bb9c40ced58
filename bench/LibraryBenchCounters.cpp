// Reading rule hit counters, and what the library keeps per entry.
//
// BM_CounterPoll/N: one poll of the generic layer (pollCounters: every configured rule of the
// list through aclRuleCountersSinceLastPoll) over a list of about N entries. The floor is the
// hardware calls that poll makes, made directly in the same order: the fragment-key query
// (bcm_field_qualify_IpFrag_get, through the SDK bracket as the library makes it) on each
// entry of an IPv4 permit rule that has an entry for later fragments, and hitsForEntry on
// every entry that counts, each through the manager that issued it, resolved beforehand.
// Finding an entry's manager (tcamManagerForEntry) is not in the floor: it is a map the
// agent keeps in memory, no call into the chip, and the library may remember its answer.
// ns_per_entry is the poll's time per entry less the floor's; floor_ratio the poll's time
// over the floor's. allocs_per_poll counts operator new calls (AllocHook.h).
//
// BM_BookkeepingBytes/N: the bytes that stand allocated after the list is applied, less those
// before (switch up, configuration parsed), per installed entry. In: the generic layer's state
// of the list, the back-end's records of its rules and entries, the TCAM managers' and the chip
// model's records of the entries. Out: the configuration records, bring-up. chip_bytes_per_entry
// is the chip model's share, measured on a bare chip programmed with the same number of entries
// of the set, so that bytes_per_entry - chip_bytes_per_entry bounds what the library keeps.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

#include "bench/AllocHook.h"
#include "bench/LibraryBench.h"
#include "platform/shim/SdkCall.h"
#include "platform/shim/SdkNames.h"
#include "platform/vesper/ActivityLock.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "HalyardBench::CounterPoll" )

namespace HalyardBench {

namespace {

using Clock = std::chrono::steady_clock;

double nanoseconds( Clock::duration d ) {
   return std::chrono::duration<double, std::nano>( d ).count();
}

// One entry as the poll reads it: whether its fragment key is asked first, and its manager.
struct FloorEntry {
   U32 entry = 0;
   bool fragmentQuery = false;
   Halyard::HalyardTcamEntryManager::Ptr manager;
};

// The entries that the poll reads, in its order: the configured rules (not the closing rule)
// in rule order, each rule's entries as its records walk them.
std::vector<FloorEntry> floorEntries( LibrarySwitch& sw ) {
   std::vector<FloorEntry> out;
   const Fennel::AclState& state = *sw.machine().acl( sw.listKey() );
   const Halyard::HalyardAclData::Ptr acl = sw.helper().halyardAclData( sw.listKey() );
   const Halyard::HalyardTcamGroupManager::Ptr gm = sw.simSwitch().groupManager();
   for ( const auto& unit : acl->unitData() ) {
      const Halyard::AclCommonUnitData::Ptr common = unit.value()->common();
      for ( U32 ruleNum = 0; ruleNum < state.rules.size(); ++ruleNum ) {
         const Halyard::AclRuleData::Ptr rule = common->aclRule( ruleNum );
         if ( state.rules[ruleNum].kind != Fennel::RuleOrigin::Kind::configured || !rule ) {
            continue;
         }
         for ( const Halyard::AclEntryList& list : rule->entryList() ) {
            for ( const auto& entry : list.entry() ) {
               out.push_back( { entry.key(), rule->hasPermitFragmentRule(),
                                gm->tcamManagerForEntry( entry.key() ) } );
            }
         }
      }
   }
   return out;
}

// The floor of one poll: the hardware calls alone, in the poll's order.
U64 floorPoll( const std::vector<FloorEntry>& entries ) {
   U64 sum = 0;
   for ( const FloorEntry& e : entries ) {
      if ( e.fragmentQuery ) {
         bcm_field_IpFrag_t ipFrag = static_cast<bcm_field_IpFrag_t>( -1 );
         SDK_NO_CHECK( bcm_field_qualify_IpFrag_get( 0, e.entry, &ipFrag ) );
         if ( ipFrag == bcmFieldIpFragNotFirst ) {
            continue;
         }
      }
      sum += e.manager->hitsForEntry( 0, e.entry );
   }
   return sum;
}

// The floor's time per entry, averaged over rounds.
double floorNsPerEntry( LibrarySwitch& sw, U32 entries, int rounds ) {
   const std::vector<FloorEntry> plan = floorEntries( sw );
   U64 sum = floorPoll( plan );  // warm, as the poll is before it is timed
   const Clock::time_point start = Clock::now();
   for ( int round = 0; round < rounds; ++round ) {
      sum += floorPoll( plan );
   }
   const Clock::duration taken = Clock::now() - start;
   benchmark::DoNotOptimize( sum );
   return nanoseconds( taken ) / ( double( rounds ) * double( entries ) );
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
   const double floorNs = floorNsPerEntry( sw, entries, int( std::max( 10.0, iterations ) ) );
   state.counters["entries"] = entries;
   state.counters["poll_ns_per_entry"] = pollNs;
   state.counters["floor_ns_per_entry"] = floorNs;
   state.counters["ns_per_entry"] = pollNs - floorNs;
   state.counters["floor_ratio"] = pollNs / floorNs;
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
