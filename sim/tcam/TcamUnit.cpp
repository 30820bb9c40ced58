#include "sim/tcam/TcamUnit.h"

#include <algorithm>

#include "platform/vesper/Assert.h"

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
   for ( const auto& [assignment, def] : table ) {
      const Status s = chip.groupCreate( chipGroupOf( assignment ), def.stage,
                                         static_cast<S32>( def.priority ) );
      VESPER_ASSERT( s == Status::Ok && "a TCAM group id is already taken on the chip" );
      groups_[assignment].capacity = def.capacity;
   }
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
   GroupUse& g = group( a );
   VESPER_ASSERT( g.inUse < g.capacity );
   const Status created = chip_.entryCreateWithId( chipGroupOf( a ), id );
   VESPER_ASSERT( created == Status::Ok );
   const Status placed = chip_.entryPriorityIs( id, priority );
   VESPER_ASSERT( placed == Status::Ok );
   const Status ordered = chip_.entryOrdinalIs( id, ordinal );
   VESPER_ASSERT( ordered == Status::Ok );
   TcamEntryRecord& record = entries_[id];
   record.assignment = a;
   record.description = description;
   ++g.inUse;
}

void TcamUnit::entryDel( U32 id ) {
   auto it = entries_.find( id );
   VESPER_ASSERT( it != entries_.end() );
   const Status destroyed = chip_.entryDestroy( id );
   VESPER_ASSERT( destroyed == Status::Ok );
   --group( it->second.assignment ).inUse;
   entries_.erase( it );
}

}  // namespace Sim
