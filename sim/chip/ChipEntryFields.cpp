// The software face of entries: qualifiers, range checkers, UDF data and actions.
#include <algorithm>

#include "sim/chip/ChipModel.h"
#include "sim/chip/ChipModelInternal.h"

namespace Sim {

namespace {

bool fits( U64 v, U8 width ) {
   return width >= 8 || ( v >> ( 8u * width ) ) == 0;
}

bool isEnumQual( QualId q ) {
   return q == QualId::IpFrag || q == QualId::IpType;
}

}  // namespace

Status ChipModel::qualifierIs( EntryId id, QualId q, U64 data, U64 mask ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   const U8 width = qualWidth( q );
   if ( width > 8 || isEnumQual( q ) || !fits( data, width ) || !fits( mask, width ) ||
        !keysOf( *e ).has( q ) ) {
      return Status::Param;
   }
   e->quals[q] = QualValue::fromU64( width, data, mask );
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::qualifierIs( EntryId id, QualId q, std::span<const U8> data,
                               std::span<const U8> mask ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   const U8 width = qualWidth( q );
   if ( isEnumQual( q ) || data.size() != width || mask.size() != width ||
        !keysOf( *e ).has( q ) ) {
      return Status::Param;
   }
   QualValue v;
   v.width = width;
   std::copy( data.begin(), data.end(), v.data.begin() );
   std::copy( mask.begin(), mask.end(), v.mask.begin() );
   e->quals[q] = v;
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::qualifierDel( EntryId id, QualId q ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !e->quals.erase( q ) ) {
      return Status::NotFound;
   }
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::qualifiersDelAll( EntryId id ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   e->quals.clear();
   e->inPorts.reset();
   releaseReferences( *e );
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<QualValue> ChipModel::qualifier( EntryId id, QualId q ) const {
   const EntryRecord* e = find( id );
   if ( !e ) {
      return std::nullopt;
   }
   auto it = e->quals.find( q );
   if ( it == e->quals.end() ) {
      return std::nullopt;
   }
   return it->second;
}

Status ChipModel::ipFragIs( EntryId id, IpFrag frag ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !keysOf( *e ).has( QualId::IpFrag ) ) {
      return Status::Param;
   }
   e->quals[QualId::IpFrag] = QualValue::fromU64( 1, static_cast<U64>( frag ), 0xFF );
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<IpFrag> ChipModel::ipFrag( EntryId id ) const {
   auto v = qualifier( id, QualId::IpFrag );
   return v ? std::optional<IpFrag>( static_cast<IpFrag>( v->dataU64() ) ) : std::nullopt;
}

Status ChipModel::ipTypeIs( EntryId id, IpType type ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !keysOf( *e ).has( QualId::IpType ) ) {
      return Status::Param;
   }
   e->quals[QualId::IpType] = QualValue::fromU64( 1, static_cast<U64>( type ), 0xFF );
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<IpType> ChipModel::ipType( EntryId id ) const {
   auto v = qualifier( id, QualId::IpType );
   return v ? std::optional<IpType>( static_cast<IpType>( v->dataU64() ) ) : std::nullopt;
}

Status ChipModel::inPortsIs( EntryId id, const PortBitmap& data, const PortBitmap& mask ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !keysOf( *e ).inPorts ) {
      return Status::Param;
   }
   e->inPorts = InPortsValue{ data, mask };
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<InPortsValue> ChipModel::inPorts( EntryId id ) const {
   const EntryRecord* e = find( id );
   return e ? e->inPorts : std::nullopt;
}

std::optional<RangeCheckerId> ChipModel::rangeCheckerCreate( const RangeChecker& c ) {
   if ( c.min > c.max ) {
      return std::nullopt;
   }
   return ranges_.create( c );
}

Status ChipModel::rangeCheckerCreateWithId( RangeCheckerId id, const RangeChecker& c ) {
   if ( c.min > c.max ) {
      return Status::Param;
   }
   return ranges_.createWithId( id, c );
}

Status ChipModel::rangeCheckerDestroy( RangeCheckerId id ) {
   return ranges_.destroy( id );
}

std::optional<RangeChecker> ChipModel::rangeChecker( RangeCheckerId id ) const {
   const RangeChecker* c = ranges_.get( id );
   return c ? std::optional<RangeChecker>( *c ) : std::nullopt;
}

Status ChipModel::rangeCheckAttach( EntryId id, RangeCheckerId checker, bool invert ) {
   EntryRecord* e = find( id );
   if ( !e || !ranges_.get( checker ) ) {
      return Status::NotFound;
   }
   if ( !keysOf( *e ).rangeChecks ) {
      return Status::Param;
   }
   auto it = std::find_if( e->ranges.begin(), e->ranges.end(),
                           [checker]( const RangeCheckRef& r ) { return r.id == checker; } );
   if ( it != e->ranges.end() ) {
      it->invert = invert;
   } else {
      e->ranges.push_back( RangeCheckRef{ checker, invert } );
      ranges_.use( checker );
   }
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::rangeCheckDetach( EntryId id, RangeCheckerId checker ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   auto it = std::find_if( e->ranges.begin(), e->ranges.end(),
                           [checker]( const RangeCheckRef& r ) { return r.id == checker; } );
   if ( it == e->ranges.end() ) {
      return Status::NotFound;
   }
   e->ranges.erase( it );
   ranges_.release( checker );
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<std::vector<RangeCheckRef> > ChipModel::rangeChecks( EntryId id ) const {
   const EntryRecord* e = find( id );
   if ( !e ) {
      return std::nullopt;
   }
   return e->ranges;
}

std::optional<UdfId> ChipModel::udfCreate( const UdfChunk& c ) {
   if ( !UdfChunks::valid( c ) ) {
      return std::nullopt;
   }
   return udfs_.create( c );
}

Status ChipModel::udfCreateWithId( UdfId id, const UdfChunk& c ) {
   if ( !UdfChunks::valid( c ) ) {
      return Status::Param;
   }
   return udfs_.createWithId( id, c );
}

Status ChipModel::udfDestroy( UdfId id ) {
   return udfs_.destroy( id );
}

std::optional<UdfChunk> ChipModel::udf( UdfId id ) const {
   const UdfChunk* c = udfs_.get( id );
   return c ? std::optional<UdfChunk>( *c ) : std::nullopt;
}

Status ChipModel::udfDataIs( EntryId id, UdfId chunk, std::span<const U8> data,
                             std::span<const U8> mask ) {
   EntryRecord* e = find( id );
   const UdfChunk* c = udfs_.get( chunk );
   if ( !e || !c ) {
      return Status::NotFound;
   }
   if ( data.size() != c->length || mask.size() != c->length || !keysOf( *e ).udf ) {
      return Status::Param;
   }
   UdfValue v;
   v.length = c->length;
   std::copy( data.begin(), data.end(), v.data.begin() );
   std::copy( mask.begin(), mask.end(), v.mask.begin() );
   auto [it, added] = e->udf.insert_or_assign( chunk, v );
   if ( added ) {
      udfs_.use( chunk );
   }
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::udfDataDel( EntryId id, UdfId chunk ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !e->udf.erase( chunk ) ) {
      return Status::NotFound;
   }
   udfs_.release( chunk );
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<UdfValue> ChipModel::udfData( EntryId id, UdfId chunk ) const {
   const EntryRecord* e = find( id );
   if ( !e ) {
      return std::nullopt;
   }
   auto it = e->udf.find( chunk );
   if ( it == e->udf.end() ) {
      return std::nullopt;
   }
   return it->second;
}

namespace {

// The one pair of actions that cannot stand on one entry: they are two values of the one
// CPU-copy field of the hardware action.
std::optional<ActionId> excludedBy( ActionId a ) {
   if ( a == ActionId::CopyToCpu ) {
      return ActionId::SwitchToCpuCancel;
   }
   if ( a == ActionId::SwitchToCpuCancel ) {
      return ActionId::CopyToCpu;
   }
   return std::nullopt;
}

}  // namespace

Status ChipModel::addAction( EntryId id, ActionId a, const ActionValue& v ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !keysOf( *e ).allows( a ) ) {
      return Status::Param;
   }
   if ( auto other = excludedBy( a ); other && e->actions.count( *other ) ) {
      return Status::Conflict;
   }
   e->actions[a] = v;
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::actionIs( EntryId id, ActionId a, U32 param1, U32 param2 ) {
   if ( isPortAction( a ) ) {
      return find( id ) ? Status::Param : Status::NotFound;
   }
   return addAction( id, a, ActionValue{ ActionParams{ param1, param2 }, PortBitmap{} } );
}

Status ChipModel::actionPortsIs( EntryId id, ActionId a, const PortBitmap& ports ) {
   if ( !isPortAction( a ) ) {
      return find( id ) ? Status::Param : Status::NotFound;
   }
   return addAction( id, a, ActionValue{ ActionParams{}, ports } );
}

Status ChipModel::actionDel( EntryId id, ActionId a ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   if ( !e->actions.erase( a ) ) {
      return Status::NotFound;
   }
   softwareChanged( *e );
   return Status::Ok;
}

Status ChipModel::actionsDelAll( EntryId id ) {
   EntryRecord* e = find( id );
   if ( !e ) {
      return Status::NotFound;
   }
   e->actions.clear();
   softwareChanged( *e );
   return Status::Ok;
}

std::optional<ActionParams> ChipModel::action( EntryId id, ActionId a ) const {
   const EntryRecord* e = find( id );
   if ( !e || isPortAction( a ) ) {
      return std::nullopt;
   }
   auto it = e->actions.find( a );
   if ( it == e->actions.end() ) {
      return std::nullopt;
   }
   return it->second.params;
}

std::optional<PortBitmap> ChipModel::actionPorts( EntryId id, ActionId a ) const {
   const EntryRecord* e = find( id );
   if ( !e || !isPortAction( a ) ) {
      return std::nullopt;
   }
   auto it = e->actions.find( a );
   if ( it == e->actions.end() ) {
      return std::nullopt;
   }
   return it->second.ports;
}

}  // namespace Sim
