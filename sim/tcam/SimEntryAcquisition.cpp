// Entries: acquisition, release, what is left per unit, exhaustion and compression.
#include <algorithm>
#include <string>
#include <vector>

#include "platform/vesper/Assert.h"
#include "platform/vesper/Exception.h"
#include "sim/tcam/SimTcamEntryManager.h"
#include "sim/tcam/SimTcamGroupManager.h"
#include "sim/tcam/TcamUnit.h"

namespace Sim {

using Halyard::TcamGroupAssignment;

U32 SimTcamGroupManager::entriesAvailable( TcamGroupAssignment a, U32 unit ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? u->available( a ) : 0;
}

U32 SimTcamGroupManager::entriesInUse( TcamGroupAssignment a, U32 unit ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? u->group( a ).inUse : 0;
}

// Only a real change reaches exhaustedIs: a first write of false would add a member and
// notify, although nothing changed for the readers (absent reads false).
void SimTcamGroupManager::exhaustedUpdate( TcamGroupAssignment a, U32 unit ) {
   Halyard::HalyardTcamEntryManager* m = manager( a );
   const bool full = entriesAvailable( a, unit ) == 0;
   if ( m->exhausted( unit ) != full ) {
      m->exhaustedIs( unit, full );
   }
}

void SimTcamGroupManager::groupCapacityIs( TcamGroupAssignment a, U32 unit, U32 capacity ) {
   TcamUnit* u = tcamUnit( unit );
   const auto def = table_.find( a );
   if ( !u || def == table_.end() ) {
      throw Vesper::RangeException( "no group " + std::to_string( U32( a ) ) + " on unit " +
                                    std::to_string( unit ) );
   }
   GroupUse& g = u->group( a );
   g.capacity = std::clamp( capacity, g.inUse, def->second.capacity );
   exhaustedUpdate( a, unit );
}

// The groups of a stage share its free slices: a slice taken or given back by one changes
// what every other can still get.
void SimTcamGroupManager::stageExhaustedUpdate( Stage stage, U32 unit ) {
   for ( const auto& [a, def] : table_ ) {
      if ( def.stage == stage ) {
         exhaustedUpdate( a, unit );
      }
   }
}

U32 SimTcamGroupManager::unboundedEntryGet( TcamGroupAssignment a, U32 unit,
                                            const Vesper::String& description ) {
   TcamUnit* u = tcamUnit( unit );
   if ( !u || entriesAvailable( a, unit ) == 0 ) {
      return 0;
   }
   VESPER_ASSERT( nextEntryId_ != 0 && "the entry id space is used up" );
   const U32 id = nextEntryId_++;
   GroupUse& g = u->group( a );
   u->entryIs( id, a, table_.at( a ).priority, g.nextOrdinal++, description );
   tcamManagerForEntryIs( id, manager( a ) );
   stageExhaustedUpdate( table_.at( a ).stage, unit );
   return id;
}

U32 SimTcamGroupManager::boundedEntryGet( TcamGroupAssignment a, U32 unit, U32 index,
                                          const Vesper::String& description ) {
   TcamUnit* u = tcamUnit( unit );
   const U32 base = bounded_.at( a )->entryBase();
   if ( !u || index < base || index - base >= table_.at( a ).capacity ) {
      return 0;
   }
   if ( const TcamEntryRecord* r = u->entry( index ) ) {
      VESPER_ASSERT( r->assignment == a );
      return index;
   }
   if ( entriesAvailable( a, unit ) == 0 ) {
      return 0;  // no slice of the stage is left for the group
   }
   u->entryIs( index, a, table_.at( a ).priority, index, description );
   tcamManagerForEntryIs( index, manager( a ) );
   stageExhaustedUpdate( table_.at( a ).stage, unit );
   return index;
}

// The back-end may give an entry back through another manager of the same ACL kind than the
// one it came from (an IFP manager for a VFP entry): it goes back to its own group.
void SimTcamGroupManager::entryRelease( U32 unit, U32 entry ) {
   TcamUnit* u = tcamUnit( unit );
   const TcamEntryRecord* r = u ? u->entry( entry ) : nullptr;
   VESPER_ASSERT( r && "releaseEntry of an entry the group manager does not hold on the unit" );
   const TcamGroupAssignment a = r->assignment;
   VESPER_ASSERT( !table_.at( a ).bounded && "releaseEntry of a bounded entry" );
   u->entryDel( entry );
   tcamManagerForEntryDel( entry );
   // The entry may have held the last reference to checkers and chunks already given back.
   u->rangeCheckers().drain();
   u->udfChunks().drain();
   stageExhaustedUpdate( table_.at( a ).stage, unit );
   rangeCheckersExhaustedUpdate( unit );
}

// The entries move into the group's first slices, and the slices left empty go back to the
// stage. Ordinals only break ties among equal priorities, so renumbering them in the order they
// stand leaves every lookup as it was, and frees the counter to go on from the entry count.
void SimTcamGroupManager::entriesCompress( TcamGroupAssignment a, U32 unit ) {
   TcamUnit* u = tcamUnit( unit );
   if ( !u || table_.at( a ).bounded ) {
      return;
   }
   u->compress( a );
   stageExhaustedUpdate( table_.at( a ).stage, unit );
   ChipModel& chip = u->chip();
   std::vector<std::pair<U64, EntryId> > order;
   for ( EntryId id : chip.entries( chipGroupOf( a ) ) ) {
      order.emplace_back( chip.entryOrdinal( id ).value(), id );
   }
   std::sort( order.begin(), order.end() );
   U64 ordinal = 0;
   for ( const auto& [old, id] : order ) {
      chip.entryOrdinalIs( id, ordinal++ );
   }
   u->group( a ).nextOrdinal = ordinal;
}

U32 SimUnboundedTcamEntryManager::getEntry( U32 unit, const Vesper::String& description ) {
   return sim().unboundedEntryGet( assignment(), unit, description );
}

void SimUnboundedTcamEntryManager::releaseEntry( U32 unit, U32 entry ) {
   sim().entryRelease( unit, entry );
}

U32 SimBoundedTcamEntryManager::getEntry( U32 unit, U32 index, const Vesper::String& description ) {
   return sim().boundedEntryGet( assignment(), unit, index, description );
}

}  // namespace Sim
