// Pushing a packet through the stages: VFP, IFP, then EFP for each port it leaves by.
#include <algorithm>
#include <string>

#include "platform/vesper/Exception.h"
#include "sim/chip/ChipModel.h"
#include "sim/chip/ChipModelInternal.h"
#include "sim/chip/PacketKey.h"

namespace Sim {

struct ChipModel::StageContext {
   explicit StageContext( const Packet& p ) : packet( p ), udf( p ) {}
   const Packet& packet;
   Key key;
   U64 rangeHolds = 0;
   UdfReader udf;
};

namespace {

// The combined actions of one stage's hits, family by family.
struct StageResult {
   bool drop = false;
   ActionImage::Cpu cpu = ActionImage::Cpu::None;
   std::optional<U32> cpuMatchId;
   std::optional<U32> cpuQueue;
   std::optional<U32> internalPriority;
   std::optional<U32> mirror;
   std::optional<U32> sourceClass;
   PortBitmap egressMask;
};

// Hits arrive in order of group precedence, so the first hit that sets a family decides it;
// drops and egress masks add up over all hits.
void merge( StageResult& r, const ActionImage& a ) {
   r.drop = r.drop || a.drop;
   if ( r.cpu == ActionImage::Cpu::None && a.cpu != ActionImage::Cpu::None ) {
      r.cpu = a.cpu;
      r.cpuMatchId = a.cpuMatchId;
   }
   if ( !r.cpuQueue ) {
      r.cpuQueue = a.cpuQueue;
   }
   if ( !r.internalPriority ) {
      r.internalPriority = a.internalPriority;
   }
   if ( !r.mirror ) {
      r.mirror = a.mirror;
   }
   if ( !r.sourceClass ) {
      r.sourceClass = a.sourceClass;
   }
   if ( a.egressMask ) {
      r.egressMask |= *a.egressMask;
   }
}

// A later stage overrides what an earlier one decided, family by family; a drop stays.
void apply( const StageResult& r, Verdict& v, std::optional<U32> egressPort ) {
   if ( r.drop ) {
      if ( egressPort ) {
         v.egressPorts.clear( *egressPort );
         v.egressDropped.set( *egressPort );
      } else {
         v.dropped = true;
      }
   }
   if ( r.cpu == ActionImage::Cpu::Copy ) {
      v.copyToCpu = true;
      v.cpuMatchId = r.cpuMatchId;
   } else if ( r.cpu == ActionImage::Cpu::Cancel ) {
      v.copyToCpu = false;
      v.cpuMatchId.reset();
   }
   if ( r.cpuQueue ) {
      v.cpuQueue = r.cpuQueue;
   }
   if ( r.internalPriority ) {
      v.internalPriority = r.internalPriority;
   }
   if ( r.mirror ) {
      v.mirror = r.mirror;
   }
   if ( r.sourceClass ) {
      v.sourceClass = *r.sourceClass;
   }
   v.egressPorts.remove( r.egressMask );
}

void resetVerdict( Verdict& v ) {
   v.dropped = false;
   v.stpDiscarded = false;
   v.egressPorts.clearAll();
   v.egressDropped.clearAll();
   v.copyToCpu = false;
   v.cpuMatchId.reset();
   v.cpuQueue.reset();
   v.internalPriority.reset();
   v.mirror.reset();
   v.sourceClass = 0;
   v.hits.clear();
}

}  // namespace

void ChipModel::rebuildTable( GroupRecord& g ) {
   std::sort( g.members.begin(), g.members.end(), lookupBefore );
   g.slots.clear();
   g.slotEntries.clear();
   g.terms.clear();
   for ( EntryRecord* e : g.members ) {
      if ( !e->installed || !e->enabled || e->image->neverMatches ) {
         continue;
      }
      const EntryImage& img = *e->image;
      LookupSlot s{};
      if ( !img.terms.empty() ) {
         s.mask0 = img.terms.front().mask;
         s.value0 = img.terms.front().value;
         s.word0 = img.terms.front().word;
         s.restBegin = static_cast<U32>( g.terms.size() );
         s.restCount = static_cast<U16>( img.terms.size() - 1 );
         g.terms.insert( g.terms.end(), img.terms.begin() + 1, img.terms.end() );
      }
      s.plain = !img.refusedPorts && img.rangeRequired == 0 && img.udf.empty();
      g.slots.push_back( s );
      g.slotEntries.push_back( e );
   }
   g.tableDirty = false;
}

namespace {

bool extrasMatch( const EntryImage& img, const Packet& p, U64 holds, UdfReader& udf ) {
   if ( img.refusedPorts && img.refusedPorts->test( p.ingressPort ) ) {
      return false;
   }
   if ( ( ( holds ^ img.rangeInvert ) & img.rangeRequired ) != img.rangeRequired ) {
      return false;
   }
   for ( const UdfTerm& t : img.udf ) {
      if ( !udf.matches( t ) ) {
         return false;
      }
   }
   return true;
}

bool termsMatch( const LookupSlot& s, const std::vector<MatchTerm>& terms, const Key& key ) {
   if ( ( key.words[s.word0] & s.mask0 ) != s.value0 ) {
      return false;
   }
   const MatchTerm* t = terms.data() + s.restBegin;
   for ( U16 i = 0; i < s.restCount; ++i, ++t ) {
      if ( ( key.words[t->word] & t->mask ) != t->value ) {
         return false;
      }
   }
   return true;
}

}  // namespace

// The first entry of the group that matches, walking its entries in lookup order.
EntryRecord* ChipModel::scanFirstMatch( GroupRecord& g, StageContext& ctx ) {
   if ( g.tableDirty ) {
      rebuildTable( g );
   }
   for ( std::size_t i = 0; i < g.slots.size(); ++i ) {
      const LookupSlot& s = g.slots[i];
      if ( termsMatch( s, g.terms, ctx.key ) &&
           ( s.plain ||
             extrasMatch( *g.slotEntries[i]->image, ctx.packet, ctx.rangeHolds, ctx.udf ) ) ) {
         return g.slotEntries[i];
      }
   }
   return nullptr;
}

EntryRecord* ChipModel::firstMatch( GroupRecord& g, StageContext& ctx ) {
   if ( config_.lookup == LookupMethod::Scan ) {
      return scanFirstMatch( g, ctx );
   }
   if ( !g.indexPending.empty() ) {
      indexFlush( g );
   }
   return g.index.firstMatch(
       IndexProbe{ ctx.key, ctx.rangeHolds, ctx.packet.ingressPort, ctx.udf } );
}

void ChipModel::runStage( Stage s, StageContext& ctx, Verdict& out,
                          std::optional<U32> egressPort ) {
   const auto& groups = stageGroups_[static_cast<std::size_t>( s )];
   if ( groups.empty() ) {
      return;
   }
   StageResult result;
   bool anyHit = false;
   for ( GroupRecord* g : groups ) {
      EntryRecord* found = firstMatch( *g, ctx );
      if ( !found ) {
         continue;
      }
      EntryRecord& hit = *found;
      ++hit.hits;
      out.hits.push_back( StageHit{ s, g->id, hit.id, egressPort } );
      merge( result, hit.image->actions );
      anyHit = true;
   }
   // A stage without a hit changes nothing.
   if ( anyHit ) {
      apply( result, out, egressPort );
   }
}

Verdict ChipModel::lookup( const Packet& p ) {
   Verdict v;
   lookup( p, v );
   return v;
}

void ChipModel::lookup( const Packet& p, Verdict& out ) {
   if ( !ports_.valid( p.ingressPort ) ) {
      throw Vesper::RangeException( "ingress port " + std::to_string( p.ingressPort ) +
                                    " is not a port of this chip" );
   }
   if ( PortBitmap( p.egressPorts ).remove( ports_.allPorts() ).any() ) {
      throw Vesper::RangeException( "egress ports " + p.egressPorts.text() +
                                    " are not all ports of this chip" );
   }
   resetVerdict( out );
   out.egressPorts = p.egressPorts & ports_.localEgressMask( p.ingressPort );
   out.copyToCpu = p.toCpu;
   out.sourceClass = p.srcClass;
   out.stpDiscarded = ports_.stpState( p.ingressPort ) != StpState::Forward;

   const ChipView view{ ports_, vlans_, classes_ };
   StageContext ctx( p );
   buildIngressKey( p, view, ctx.key );
   ctx.rangeHolds = rangeHolds( p, ctx.key, ranges_ );

   runStage( Stage::Vfp, ctx, out, std::nullopt );
   // IFP sees the class that VFP set as the packet's source class.
   ctx.key.put( KeyField::SrcClass, out.sourceClass );
   runStage( Stage::Ifp, ctx, out, std::nullopt );
   if ( out.dropped || out.stpDiscarded ) {
      out.egressPorts.clearAll();
   }
   if ( stageGroups_[static_cast<std::size_t>( Stage::Efp )].empty() ) {
      return;
   }
   ctx.key.put( KeyField::SrcClass, out.sourceClass );
   const PortBitmap leaving = out.egressPorts;
   leaving.forEach( [&]( U32 port ) {
      egressKeyIs( ctx.key, p, view, port );
      runStage( Stage::Efp, ctx, out, port );
   } );
}

}  // namespace Sim
