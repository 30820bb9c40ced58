// Port updates and teardown of a bound list, through the generic layer as the tool drives it.
//
// BM_PortUpdate/N: one port (Ethernet2) added to or removed from the list "cb" of about N
// entries, in turn, each a pass of the machine (addIntfToAcl or removeIntfFromAcl, then
// updateAclPorts, which rewrites the port bitmap of every IFP entry).
// BM_Teardown/N: the list's last binding removed and a pass run (removeIntfFromAcl, destroyAcl,
// cleanupAcl); applying it again between iterations is not timed.
// ns_per_entry: the timed work over the entries the list holds; linear work keeps it flat from
// N to 10 N.
#include <benchmark/benchmark.h>

#include <chrono>

#include "bench/LibraryBench.h"

namespace HalyardBench {

namespace {

const Pylon::IntfId kBound = Pylon::IntfId::ethernet( 1 );
const Pylon::IntfId kOther = Pylon::IntfId::ethernet( 2 );

void bind( LibrarySwitch& sw, Pylon::IntfId intf ) {
   sw.intfConfig().intfAclIs( Acl::AclType::ip, Acl::AclDirection::in, intf,
                              Vesper::Name( kListName ) );
}

void unbind( LibrarySwitch& sw, Pylon::IntfId intf ) {
   sw.intfConfig().intfAclDel( Acl::AclType::ip, Acl::AclDirection::in, intf );
}

using Clock = std::chrono::steady_clock;

// Nanoseconds of the timed work per iteration and entry.
double nsPerEntry( Clock::duration taken, const benchmark::State& state, U32 entries ) {
   return std::chrono::duration<double, std::nano>( taken ).count() / double( state.iterations() ) /
          double( entries );
}

void BM_PortUpdate( benchmark::State& state ) {
   LibrarySwitch sw( entriesConfig( std::size_t( state.range( 0 ) ) ) );
   const U32 entries = sw.installedEntries();
   bool added = false;
   const Clock::time_point start = Clock::now();
   for ( auto _ : state ) {
      if ( added ) {
         unbind( sw, kOther );
      } else {
         bind( sw, kOther );
      }
      added = !added;
      sw.machine().runPass();
   }
   const Clock::duration taken = Clock::now() - start;
   state.counters["entries"] = entries;
   state.counters["ns_per_entry"] = nsPerEntry( taken, state, entries );
   // Both ways leave the list whole.
   if ( sw.installedEntries() != entries ) {
      state.SkipWithError( "a port update changed the list's entries" );
   }
}
BENCHMARK( BM_PortUpdate )->Arg( 100 )->Arg( 1000 )->Arg( 10000 )->Unit( benchmark::kMicrosecond );

void BM_Teardown( benchmark::State& state ) {
   LibrarySwitch sw( entriesConfig( std::size_t( state.range( 0 ) ) ) );
   const U32 entries = sw.installedEntries();
   Clock::duration taken{};
   for ( auto _ : state ) {
      state.PauseTiming();
      if ( sw.machine().acls().empty() ) {
         bind( sw, kBound );
         sw.settle();
      }
      state.ResumeTiming();
      const Clock::time_point start = Clock::now();
      unbind( sw, kBound );
      sw.machine().runPass();
      taken += Clock::now() - start;
   }
   state.counters["entries"] = entries;
   state.counters["ns_per_entry"] = nsPerEntry( taken, state, entries );
   if ( !sw.machine().acls().empty() ) {
      state.SkipWithError( "the list still stands after teardown" );
   }
}
BENCHMARK( BM_Teardown )->Arg( 100 )->Arg( 1000 )->Arg( 10000 )->Unit( benchmark::kMicrosecond );

}  // namespace

}  // namespace HalyardBench
