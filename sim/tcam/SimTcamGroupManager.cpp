// Setting up: the entry managers, the units and their groups, and what the records show.
#include "sim/tcam/SimTcamGroupManager.h"

#include "platform/vesper/Assert.h"
#include "sim/probe/HardwareCalls.h"
#include "sim/tcam/SimTcamEntryManager.h"
#include "sim/tcam/TcamUnit.h"

namespace Sim {

using Halyard::TcamGroupAssignment;

SimTcamGroupManager::Ptr SimTcamGroupManager::create( const GroupTable& table,
                                                      const SdkCodes& codes ) {
   Ptr gm( new SimTcamGroupManager( table, codes ) );
   gm->managersIs();
   gm->mirroringGroupsIs();
   gm->hasNotificationActiveIs( true );
   return gm;
}

SimTcamGroupManager::SimTcamGroupManager( const GroupTable& table, const SdkCodes& codes )
    : table_( table ), codes_( codes ) {}

SimTcamGroupManager::~SimTcamGroupManager() = default;

// Bounded ranges are laid out first, from 1, so that no id is 0 and unbounded ids, issued
// after them, never fall into one.
void SimTcamGroupManager::managersIs() {
   for ( const auto& [a, def] : table_ ) {
      VESPER_ASSERT( def.priority <= ChipModel::kMaxPriority );
      if ( def.bounded ) {
         Vesper::Ptr<SimBoundedTcamEntryManager> m(
             new SimBoundedTcamEntryManager( this, a, def, nextEntryId_ ) );
         m->hasNotificationActiveIs( true );
         bounded_[a] = m;
         nextEntryId_ += def.capacity;
      }
   }
   for ( const auto& [a, def] : table_ ) {
      if ( !def.bounded ) {
         Vesper::Ptr<SimUnboundedTcamEntryManager> m(
             new SimUnboundedTcamEntryManager( this, a, def ) );
         m->hasNotificationActiveIs( true );
         unbounded_[a] = m;
      }
   }
}

void SimTcamGroupManager::mirroringGroupsIs() {
   for ( TcamGroupAssignment a :
         { Halyard::tcamGroupMirroringAcl1, Halyard::tcamGroupMirroringAcl2,
           Halyard::tcamGroupMirroringAcl3, Halyard::tcamGroupMirroringAcl4 } ) {
      if ( table_.count( a ) ) {
         groupMirroringAclValidIs( static_cast<U8>( a ), true );
         groupMirroringAclTypeIs( static_cast<U8>( a ), Halyard::groupMirroringAclTypeNone );
      }
   }
}

void SimTcamGroupManager::unitIs( U32 unit, ChipModel& chip, const UnitLimits& limits ) {
   VESPER_ASSERT( !unitHas( unit ) );
   units_.emplace( unit, std::make_unique<TcamUnit>( chip, table_, limits ) );
   // A group without room on the unit starts exhausted.
   for ( const auto& [a, def] : table_ ) {
      exhaustedUpdate( a, unit );
   }
   rangeCheckersExhaustedUpdate( unit );
}

TcamUnit* SimTcamGroupManager::tcamUnit( U32 unit ) const {
   hardwareCallSeen( "TCAM manager" );  // every manager operation comes here first
   auto it = units_.find( unit );
   return it == units_.end() ? nullptr : it->second.get();
}

ChipModel* SimTcamGroupManager::chip( U32 unit ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? &u->chip() : nullptr;
}

std::optional<UnitLimits> SimTcamGroupManager::unitLimits( U32 unit ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? std::optional<UnitLimits>( u->limits() ) : std::nullopt;
}

Halyard::HalyardTcamEntryManager* SimTcamGroupManager::manager( TcamGroupAssignment a ) const {
   if ( auto it = bounded_.find( a ); it != bounded_.end() ) {
      return it->second.ptr();
   }
   auto it = unbounded_.find( a );
   return it == unbounded_.end() ? nullptr : it->second.ptr();
}

Halyard::HalyardBoundedTcamEntryManager::Ptr SimTcamGroupManager::entryManager(
    TcamGroupAssignment a ) const {
   auto it = bounded_.find( a );
   return it == bounded_.end() ? nullptr : it->second;
}

Halyard::HalyardUnboundedTcamEntryManager::Ptr SimTcamGroupManager::unboundedEntryManager(
    TcamGroupAssignment a ) const {
   auto it = unbounded_.find( a );
   return it == unbounded_.end() ? nullptr : it->second;
}

std::optional<U32> SimTcamGroupManager::rangeCheckerId(
    U32 unit, const Halyard::RangeCheckerDesc& desc ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? u->rangeCheckers().id( desc ) : std::nullopt;
}

U32 SimTcamGroupManager::rangeCheckerUses( U32 unit, const Halyard::RangeCheckerDesc& desc ) const {
   TcamUnit* u = tcamUnit( unit );
   return u ? u->rangeCheckers().uses( desc ) : 0;
}

Vesper::String SimTcamGroupManager::entryDescription( U32 unit, U32 entry ) const {
   TcamUnit* u = tcamUnit( unit );
   const TcamEntryRecord* r = u ? u->entry( entry ) : nullptr;
   return r ? r->description : Vesper::String();
}

std::optional<UnitUsage> SimTcamGroupManager::unitUsage( U32 unit ) const {
   TcamUnit* u = tcamUnit( unit );
   if ( !u ) {
      return std::nullopt;
   }
   UnitUsage usage;
   for ( const auto& [a, g] : u->groups() ) {
      usage.groups.push_back( GroupUsage{ a, g.stage, g.wide, g.inUse, g.inUse + u->available( a ),
                                          static_cast<U32>( g.slices.size() ) } );
   }
   for ( std::size_t s = 0; s < kStageCount; ++s ) {
      const Stage stage = static_cast<Stage>( s );
      usage.stages[s] =
          StageUsage{ static_cast<U32>( u->slices( stage ).size() ), u->freeSlices( stage ) };
   }
   usage.rangeCheckersUsed = static_cast<U32>( u->rangeCheckers().slots() );
   usage.rangeCheckerCapacity = u->rangeCheckers().limit();
   usage.udfChunksUsed = static_cast<U32>( u->udfChunks().slots() );
   usage.udfChunkCapacity = u->udfChunks().limit();
   return usage;
}

}  // namespace Sim
