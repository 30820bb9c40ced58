// The cost of one SDK call as the library makes it: a qualifier write and an action add
// through SDK_CHECK on the simulated SDK (activity lock given up and taken back, the call
// gate, the chip model's write), with tracing off. BM_ChipQualifierWrite of
// ChipLookupBench.cpp is the bare chip model write to compare with.
#include <benchmark/benchmark.h>

#include "platform/shim/SdkCall.h"
#include "platform/vesper/ActivityLock.h"
#include "sim/catalog/ChipCatalog.h"
#include "sim/chip/ChipModel.h"
#include "sim/sdk/SimSdk.h"

// The callable names come last: they rewrite every later use of the SDK's names.
#include "platform/shim/SdkNames.h"

VESPER_TRACE_HANDLE( "Bench::SdkQualifier" )

namespace {

using namespace Sim;

constexpr int kUnit = 0;
constexpr GroupId kGroup = 1;

// One Tomahawk-class unit behind Shim::sdk_, with one IFP entry, on an activity thread.
struct SdkBench {
   SdkBench() : kind( *chipKindByName( "tomahawk" ) ), chip( kind.chipConfig( 0 ) ) {
      sim.unitIs( kUnit, chip, kind );
      (void)chip.groupCreate( kGroup, Stage::Ifp, 1 );
      entry = *chip.entryCreate( kGroup );
   }

   Vesper::ActivityLockGuard activity;
   const ChipKind& kind;
   ChipModel chip;
   SimSdk sim;
   Shim::SdkInstall install{ sim };
   EntryId entry = 0;
};

void BM_QualifierWriteChecked( benchmark::State& state ) {
   SdkBench b;
   const EntryId e = b.entry;
   bcm_ip_t ip = 0x0a000000;
   for ( auto _ : state ) {
      benchmark::DoNotOptimize( SDK_CHECK( bcm_field_qualify_DstIp( kUnit, e, ip, 0xffffff00 ) ) );
      ++ip;
   }
   state.SetItemsProcessed( state.iterations() );
}
BENCHMARK( BM_QualifierWriteChecked );

void BM_ActionAddChecked( benchmark::State& state ) {
   SdkBench b;
   const EntryId e = b.entry;
   U32 queue = 0;
   for ( auto _ : state ) {
      benchmark::DoNotOptimize(
          SDK_CHECK( bcm_field_action_add( kUnit, e, bcmFieldActionCosQCpuNew, queue, 0 ) ) );
      queue = ( queue + 1 ) & 0x3f;
   }
   state.SetItemsProcessed( state.iterations() );
}
BENCHMARK( BM_ActionAddChecked );

}  // namespace
