// What entries of a unit share: range checkers and user-defined field chunks.
#include <algorithm>
#include <string>

#include "platform/vesper/Exception.h"

#include "sim/tcam/SimTcamGroupManager.h"
#include "sim/tcam/TcamUnit.h"

namespace Sim {

namespace {

// Where a field of the back-end's numbering starts, in the chip's numbering. The back-end
// counts from the start of a header (its first byte) or from its end; the chip from the first
// byte of the frame, after the EtherType, after the IP header(s), or after the layer 4 header.
// The end of the Ethernet header and the start of the IP header are the same byte.
std::optional<UdfBase> chipUdfBase( Halyard::UdfOffsetBase base ) {
   switch ( base ) {
      case Halyard::udfOffsetBaseL2Header:
         return UdfBase::L2Header;
      case Halyard::udfOffsetBaseL2Payload:
      case Halyard::udfOffsetBaseL3Header:
         return UdfBase::L3Header;
      case Halyard::udfOffsetBaseL3Payload:
         return UdfBase::L4Header;
      default:
         return std::nullopt;
   }
}

}  // namespace

U32 SimTcamGroupManager::rangeCheckerGet( U32 unit, const Halyard::RangeCheckerDesc& desc ) {
   if ( !chipRangeChecker( desc ) ) {
      throw Vesper::RangeException( "RangeCheckerDesc::type " + std::to_string( desc.type() ) +
                                    " is not a range the chip compares" );
   }
   TcamUnit* u = tcamUnit( unit );
   if ( !u ) {
      return 0;
   }
   const std::optional<U32> id = u->rangeCheckers().acquire( desc );
   rangeCheckersExhaustedUpdate( unit );
   return id.value_or( 0 );
}

void SimTcamGroupManager::rangeCheckerRelease( U32 unit, const Halyard::RangeCheckerDesc& desc ) {
   if ( TcamUnit* u = tcamUnit( unit ) ) {
      u->rangeCheckers().release( desc );
      rangeCheckersExhaustedUpdate( unit );
   }
}

int SimTcamGroupManager::rangeCheckerAttach( U32 unit, U32 entry, U32 rangeCheckerId ) {
   TcamUnit* u = tcamUnit( unit );
   if ( !u || !u->entry( entry ) ) {
      return codes_.notFound;
   }
   ChipModel& chip = u->chip();
   const std::vector<RangeCheckRef> attached = chip.rangeChecks( entry ).value();
   const bool again = std::any_of( attached.begin(), attached.end(), [&]( const RangeCheckRef& r ) {
      return r.id == rangeCheckerId;
   } );
   if ( !again && attached.size() >= u->limits().rangeCheckersPerEntry ) {
      return codes_.resource;
   }
   return codes_.of( chip.rangeCheckAttach( entry, rangeCheckerId ) );
}

// As for entries, only a real change reaches the record, so that no first write of false
// notifies.
void SimTcamGroupManager::rangeCheckersExhaustedUpdate( U32 unit ) {
   const bool full = tcamUnit( unit )->rangeCheckers().full();
   if ( rangeCheckersExhausted( unit ) != full ) {
      rangeCheckersExhaustedIs( unit, full );
   }
}

Halyard::QualIdList SimTcamGroupManager::udfGet( U32 unit, Halyard::UdfOffsetBase base, U8 offset,
                                                 U8 length ) {
   TcamUnit* u = tcamUnit( unit );
   const std::optional<UdfBase> chipBase = chipUdfBase( base );
   if ( !u || !chipBase ) {
      return {};
   }
   const std::optional<U32> id = u->udfChunks().acquire( UdfKey{ *chipBase, offset, length } );
   return id ? Halyard::QualIdList{ *id } : Halyard::QualIdList{};
}

void SimTcamGroupManager::udfRelease( U32 unit, Halyard::UdfOffsetBase base, U8 offset,
                                      U8 length ) {
   TcamUnit* u = tcamUnit( unit );
   const std::optional<UdfBase> chipBase = chipUdfBase( base );
   if ( u && chipBase ) {
      u->udfChunks().release( UdfKey{ *chipBase, offset, length } );
   }
}

U32 SimTcamGroupManager::udfChunkUses( U32 unit, Halyard::UdfOffsetBase base, U8 offset,
                                       U8 length ) const {
   TcamUnit* u = tcamUnit( unit );
   const std::optional<UdfBase> chipBase = chipUdfBase( base );
   return u && chipBase ? u->udfChunks().uses( UdfKey{ *chipBase, offset, length } ) : 0;
}

}  // namespace Sim
