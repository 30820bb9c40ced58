// Packet lookup on the simulated chip with real rule sets: ClassBench acl1 rules as IFP
// entries, header traces as packets; and the cost of one qualifier write.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sim/chip/ChipModel.h"
#include "sim/chip/ClassBench.h"

namespace {

using namespace Sim;

const std::string kDataDir = HALYARD_SOURCE_DIR "/../shared/data/classbench/";
constexpr GroupId kGroup = 1;

// The rules that no header of the trace matches.
std::vector<ClassBench::Rule> missedBy( const std::vector<ClassBench::Rule>& rules,
                                        const std::vector<ClassBench::Header>& trace ) {
   std::vector<ClassBench::Rule> missed;
   for ( const ClassBench::Rule& r : rules ) {
      const std::vector<ClassBench::Rule> one{ r };
      if ( std::none_of( trace.begin(), trace.end(), [&]( const ClassBench::Header& h ) {
              return ClassBench::firstMatch( one, h ).has_value();
           } ) ) {
         missed.push_back( r );
      }
   }
   return missed;
}

// A rule set, the packets of a trace, and chips built from the rules, one per entry count and
// lookup method. With `missOnly` the rules that some packet matches are left out, so that
// every packet misses the whole group.
struct Workload {
   Workload( const std::string& rulesFile, const std::string& traceFile, bool missOnly = false )
       : rules( ClassBench::readRules( kDataDir + rulesFile ) ) {
      const auto trace = ClassBench::readTrace( kDataDir + traceFile );
      for ( const auto& h : trace ) {
         packets.push_back( ClassBench::packetOf( h, 1, 2 ) );
      }
      if ( missOnly ) {
         rules = missedBy( rules, trace );
      }
   }
   ChipModel& chip( U32 entries, LookupMethod method ) {
      auto& c = chips[{ entries, method }];
      if ( !c ) {
         // A Tomahawk3-class pool of 64 range checkers.
         c = std::make_unique<ChipModel>( ChipConfig{ 64, 0, 64, 16, method } );
         (void)c->groupCreate( kGroup, Stage::Ifp, 1 );
         ClassBench::program( *c, kGroup, rules, entries );
      }
      return *c;
   }

   std::vector<ClassBench::Rule> rules;
   std::vector<Packet> packets;
   std::map<std::pair<U32, LookupMethod>, std::unique_ptr<ChipModel> > chips;
};

// Arguments: the entry count, and 1 to walk the group's entries (the reference scan) rather
// than use its index.
void runLookups( benchmark::State& state, Workload& w ) {
   if ( w.rules.empty() || w.packets.empty() ) {
      state.SkipWithError( "ClassBench data not found" );
      return;
   }
   const LookupMethod method = state.range( 1 ) ? LookupMethod::Scan : LookupMethod::Indexed;
   ChipModel& chip = w.chip( U32( state.range( 0 ) ), method );
   Verdict v;
   std::size_t i = 0;
   U64 hits = 0;
   for ( auto _ : state ) {
      chip.lookup( w.packets[i], v );
      hits += v.hits.size();
      i = i + 1 == w.packets.size() ? 0 : i + 1;
   }
   state.SetItemsProcessed( state.iterations() );
   state.counters["hitRate"] = double( hits ) / double( state.iterations() );
}

// The acl1_1k trace was generated from another seed's rules, so most of acl1_10k misses it;
// the few rules that some packet matches (wide ones near the end) are left out, and every
// packet misses every entry: the worst case of the scan, which visits them all.
void BM_ChipLookupAcl10k( benchmark::State& state ) {
   static Workload w( "acl1_10k", "acl1_1k_trace", true );
   runLookups( state, w );
}
BENCHMARK( BM_ChipLookupAcl10k )
    ->Args( { 1000, 0 } )
    ->Args( { 10000, 0 } )
    ->Args( { 1000, 1 } )
    ->Args( { 10000, 1 } );

// Rules and trace of one seed: every packet hits, usually well before the end of the group.
void BM_ChipLookupAcl1k( benchmark::State& state ) {
   static Workload w( "acl1_1k", "acl1_1k_trace" );
   runLookups( state, w );
}
BENCHMARK( BM_ChipLookupAcl1k )->Args( { 1000, 0 } )->Args( { 1000, 1 } );

void BM_ChipQualifierWrite( benchmark::State& state ) {
   ChipModel chip( ChipConfig{ 64, 0, 32, 16 } );
   (void)chip.groupCreate( kGroup, Stage::Ifp, 1 );
   const EntryId e = *chip.entryCreate( kGroup );
   U32 addr = 0;
   for ( auto _ : state ) {
      benchmark::DoNotOptimize( chip.qualifierIs( e, QualId::DstIp, ++addr, 0xFFFFFF00 ) );
   }
   state.SetItemsProcessed( state.iterations() );
}
BENCHMARK( BM_ChipQualifierWrite );

// A write that the hardware must see: the qualifier, then the reinstall that compiles it.
void BM_ChipQualifierWriteAndInstall( benchmark::State& state ) {
   ChipModel chip( ChipConfig{ 64, 0, 32, 16 } );
   (void)chip.groupCreate( kGroup, Stage::Ifp, 1 );
   const EntryId e = *chip.entryCreate( kGroup );
   (void)chip.ipTypeIs( e, IpType::Ipv4Any );
   (void)chip.qualifierIs( e, QualId::SrcIp, 0x0A000000, 0xFF000000 );
   (void)chip.actionIs( e, ActionId::Drop, 0, 0 );
   U32 addr = 0;
   for ( auto _ : state ) {
      (void)chip.qualifierIs( e, QualId::DstIp, ++addr, 0xFFFFFF00 );
      benchmark::DoNotOptimize( chip.entryInstall( e ) );
   }
   state.SetItemsProcessed( state.iterations() );
}
BENCHMARK( BM_ChipQualifierWriteAndInstall );

}  // namespace
