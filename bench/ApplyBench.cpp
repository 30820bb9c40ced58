// Apply of a configuration through the generic layer, the back-end and the simulated switch,
// bring-up excluded, measured against its floor: the replay of the same run's hardware calls
// on a fresh identical switch (sim/record).
//
//   BM_ApplyClassBench/<set>: a ClassBench set whole, on the default switch (ApplyBench.h);
//     rules_per_second, and floor_ratio = apply time / replay time.
//   BM_ApplyScaling/<N>: the first N rules of acl1_10k on a switch that holds them;
//     ns_per_rule.
//
// Each iteration builds a fresh switch and brings it up untimed, then times the apply alone
// (manual time). The floor is recorded once per benchmark on a switch of its own, and each
// iteration replays it on another fresh switch, so that apply and floor come from the same run.
#include <benchmark/benchmark.h>

#include <chrono>
#include <map>
#include <memory>

#include "bench/ApplyBench.h"

namespace HalyardBench {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince( Clock::time_point start ) {
   return std::chrono::duration<double>( Clock::now() - start ).count();
}

// Workloads are parsed once per process.
const ApplyWorkload& classBench( const std::string& set ) {
   static std::map<std::string, std::unique_ptr<ApplyWorkload> > cache;
   auto& w = cache[set];
   if ( !w ) {
      w = std::make_unique<ApplyWorkload>( classBenchWorkload( set ) );
   }
   return *w;
}

const ApplyWorkload& scaling( std::size_t count ) {
   static std::map<std::size_t, std::unique_ptr<ApplyWorkload> > cache;
   auto& w = cache[count];
   if ( !w ) {
      w = std::make_unique<ApplyWorkload>( scalingWorkload( count ) );
   }
   return *w;
}

// The hardware calls of one apply of the workload.
std::unique_ptr<Sim::CallRecorder> recordedApply( const ApplyWorkload& w ) {
   auto recorder = std::make_unique<Sim::CallRecorder>();
   ApplySwitch sw( w, recorder.get() );
   sw.apply();
   sw.checkInstalled();
   return recorder;
}

// One timed apply on a fresh switch; answers its seconds.
double timedApply( const ApplyWorkload& w ) {
   ApplySwitch sw( w );
   const Clock::time_point start = Clock::now();
   sw.apply();
   const double seconds = secondsSince( start );
   sw.checkInstalled();
   return seconds;
}

// One timed replay of `log` on a fresh switch; answers its seconds.
double timedReplay( const ApplyWorkload& w, const Sim::CallLog& log ) {
   ApplySwitch sw( w );
   const Sim::ReplayTarget target = sw.replayTarget( log );
   const Clock::time_point start = Clock::now();
   log.replay( target );
   return secondsSince( start );
}

void BM_ApplyClassBench( benchmark::State& state, const std::string& set ) {
   const ApplyWorkload& w = classBench( set );
   const auto recorder = recordedApply( w );
   double applySeconds = 0;
   double floorSeconds = 0;
   for ( auto _ : state ) {
      const double seconds = timedApply( w );
      state.SetIterationTime( seconds );
      applySeconds += seconds;
      floorSeconds += timedReplay( w, recorder->log() );
   }
   const double runs = static_cast<double>( state.iterations() );
   state.counters["rules_per_second"] = static_cast<double>( w.rules ) * runs / applySeconds;
   state.counters["floor_ratio"] = applySeconds / floorSeconds;
}

void BM_ApplyScaling( benchmark::State& state ) {
   const ApplyWorkload& w = scaling( static_cast<std::size_t>( state.range( 0 ) ) );
   double applySeconds = 0;
   for ( auto _ : state ) {
      const double seconds = timedApply( w );
      state.SetIterationTime( seconds );
      applySeconds += seconds;
   }
   const double runs = static_cast<double>( state.iterations() );
   state.counters["ns_per_rule"] = applySeconds * 1e9 / runs / static_cast<double>( w.rules );
}

}  // namespace

BENCHMARK_CAPTURE( BM_ApplyClassBench, acl1_1k, std::string( "acl1_1k" ) )
    ->Name( "BM_ApplyClassBench/acl1_1k" )
    ->UseManualTime()
    ->Unit( benchmark::kMillisecond );
BENCHMARK_CAPTURE( BM_ApplyClassBench, fw1_1k, std::string( "fw1_1k" ) )
    ->Name( "BM_ApplyClassBench/fw1_1k" )
    ->UseManualTime()
    ->Unit( benchmark::kMillisecond );
BENCHMARK_CAPTURE( BM_ApplyClassBench, ipc1_1k, std::string( "ipc1_1k" ) )
    ->Name( "BM_ApplyClassBench/ipc1_1k" )
    ->UseManualTime()
    ->Unit( benchmark::kMillisecond );
BENCHMARK( BM_ApplyScaling )
    ->Arg( 100 )
    ->Arg( 1000 )
    ->Arg( 10000 )
    ->UseManualTime()
    ->Unit( benchmark::kMillisecond );

}  // namespace HalyardBench
