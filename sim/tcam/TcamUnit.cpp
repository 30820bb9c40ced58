#include "sim/tcam/TcamUnit.h"

#include <algorithm>

#include "platform/vesper/Assert.h"
#include "sim/tcam/GroupKeys.h"

namespace Sim {

namespace {

// A limit above the chip's pool could never be reached: the chip would refuse first, and the
// managers would not see the pool as full.
UnitLimits withinChip( UnitLimits limits, const ChipModel& chip ) {
   limits.rangeCheckers = std::min( limits.rangeCheckers, chip.config().rangeCheckers );
   limits.udfChunks = std::min( limits.udfChunks, chip.config().udfChunks );
   return limits;
}

}  // namespace

std::optional<RangeChecker> chipRangeChecker( const Halyard::RangeCheckerDesc& desc ) {
   RangeChecker c{ RangeType::SrcPort, desc.low(), desc.high() };
   switch ( desc.type() ) {
      case Halyard::rangeCheckerSrcPort:
         break;
      case Halyard::rangeCheckerDstPort:
         c.type = RangeType::DstPort;
         break;
      case Halyard::rangeCheckerIpLength:
         c.type = RangeType::IpLength;
         break;
      default:
         return std::nullopt;
   }
   return c;
}

TcamUnit::TcamUnit( ChipModel& chip, const GroupTable& table, const UnitLimits& limits )
    : chip_( chip ),
      limits_( withinChip( limits, chip ) ),
      rangeCheckers_(
          limits_.rangeCheckers,
          [&chip]( const Halyard::RangeCheckerDesc& desc ) -> std::optional<U32> {
             std::optional<RangeChecker> c = chipRangeChecker( desc );
             return c ? chip.rangeCheckerCreate( *c ) : std::nullopt;
          },
          [&chip]( U32 id ) { return chip.rangeCheckerDestroy( id ) == Status::Ok; } ),
      udfChunks_(
          limits_.udfChunks,
          [&chip]( const UdfKey& key ) {
             const auto& [base, offset, length] = key;
             return chip.udfCreate( UdfChunk{ base, offset, length } );
          },
          [&chip]( U32 id ) { return chip.udfDestroy( id ) == Status::Ok; } ) {
   for ( std::size_t stage = 0; stage < kStageCount; ++stage ) {
      for ( U32 narrow : chip.config().slices[stage].narrowEntries ) {
         slices_[stage].push_back( SliceUse{ narrow, std::nullopt, 0 } );
      }
   }
   for ( const auto& [assignment, def] : table ) {
      const Status s = chip.groupCreate( chipGroupOf( assignment ), def.stage,
                                         static_cast<S32>( def.priority ) );
      VESPER_ASSERT( s == Status::Ok && "a TCAM group id is already taken on the chip" );
      const Status keyed =
          chip.groupKeySetIs( chipGroupOf( assignment ), groupKeySet( assignment, def.stage ) );
      VESPER_ASSERT( keyed == Status::Ok );
      GroupUse& g = groups_[assignment];
      g.stage = def.stage;
      g.wide = def.wide;
      g.capacity = def.capacity;
   }
}

U32 TcamUnit::freeSlices( Stage s ) const {
   const auto& pool = slices( s );
   return static_cast<U32>(
       std::count_if( pool.begin(), pool.end(), []( const SliceUse& u ) { return !u.owner; } ) );
}

U32 TcamUnit::available( Halyard::TcamGroupAssignment a ) const {
   const GroupUse& g = group( a );
   const U32 left = g.capacity - g.inUse;
   const auto& pool = slices( g.stage );
   if ( pool.empty() ) {
      return left;
   }
   U32 room = 0;
   for ( const SliceUse& s : pool ) {
      if ( !s.owner || *s.owner == a ) {
         room += perSlice( g, s ) - s.used;
      }
   }
   return std::min( left, room );
}

U32 TcamUnit::slicePlace( Halyard::TcamGroupAssignment a ) {
   GroupUse& g = group( a );
   auto& pool = stageSlices( g.stage );
   for ( U32 i : g.slices ) {
      if ( pool[i].used < perSlice( g, pool[i] ) ) {
         return i;
      }
   }
   for ( U32 i = 0; i < pool.size(); ++i ) {
      if ( !pool[i].owner && perSlice( g, pool[i] ) > 0 ) {
         pool[i].owner = a;
         g.slices.insert( std::upper_bound( g.slices.begin(), g.slices.end(), i ), i );
         return i;
      }
   }
   VESPER_ASSERT( false && "no slice has room for the entry" );
   return 0;
}

void TcamUnit::sliceLeave( Halyard::TcamGroupAssignment a, U32 slice ) {
   GroupUse& g = group( a );
   SliceUse& s = stageSlices( g.stage )[slice];
   VESPER_ASSERT( s.owner == a && s.used > 0 );
   if ( --s.used == 0 ) {
      s.owner.reset();
      g.slices.erase( std::find( g.slices.begin(), g.slices.end(), slice ) );
   }
}

void TcamUnit::compress( Halyard::TcamGroupAssignment a ) {
   GroupUse& g = group( a );
   auto& pool = stageSlices( g.stage );
   if ( pool.empty() ) {
      return;
   }
   for ( U32 i : g.slices ) {
      pool[i].used = 0;
   }
   std::size_t next = 0;
   for ( EntryId id : chip_.entries( chipGroupOf( a ) ) ) {
      auto it = entries_.find( id );
      VESPER_ASSERT( it != entries_.end() &&
                     "a chip entry of a TCAM group that no manager issued" );
      while ( pool[g.slices[next]].used == perSlice( g, pool[g.slices[next]] ) ) {
         ++next;
      }
      ++pool[g.slices[next]].used;
      it->second.slice = g.slices[next];
   }
   std::erase_if( g.slices, [&]( U32 i ) {
      if ( pool[i].used ) {
         return false;
      }
      pool[i].owner.reset();
      return true;
   } );
}

TcamEntryRecord* TcamUnit::entry( U32 id ) {
   auto it = entries_.find( id );
   return it == entries_.end() ? nullptr : &it->second;
}

const TcamEntryRecord* TcamUnit::entry( U32 id ) const {
   auto it = entries_.find( id );
   return it == entries_.end() ? nullptr : &it->second;
}

// Ids come from the group manager's one id space, so the chip never holds one already; a
// refusal here is a broken invariant, not a shortage.
void TcamUnit::entryIs( U32 id, Halyard::TcamGroupAssignment a, U32 priority, U64 ordinal,
                        const Vesper::String& description ) {
   VESPER_ASSERT( available( a ) > 0 );
   GroupUse& g = group( a );
   std::optional<U32> slice;
   if ( !slices( g.stage ).empty() ) {
      slice = slicePlace( a );
      ++stageSlices( g.stage )[*slice].used;
   }
   const Status created = chip_.entryCreateWithId( chipGroupOf( a ), id );
   VESPER_ASSERT( created == Status::Ok );
   const Status placed = chip_.entryPriorityIs( id, priority );
   VESPER_ASSERT( placed == Status::Ok );
   const Status ordered = chip_.entryOrdinalIs( id, ordinal );
   VESPER_ASSERT( ordered == Status::Ok );
   TcamEntryRecord& record = entries_[id];
   record.assignment = a;
   record.slice = slice;
   record.description = description;
   ++g.inUse;
}

void TcamUnit::entryDel( U32 id ) {
   auto it = entries_.find( id );
   VESPER_ASSERT( it != entries_.end() );
   const Status destroyed = chip_.entryDestroy( id );
   VESPER_ASSERT( destroyed == Status::Ok );
   --group( it->second.assignment ).inUse;
   if ( it->second.slice ) {
      sliceLeave( it->second.assignment, *it->second.slice );
   }
   entries_.erase( it );
}

}  // namespace Sim
