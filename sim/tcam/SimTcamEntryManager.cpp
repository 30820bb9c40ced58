// The per-entry operations that the two kinds of entry manager share.
#include "sim/tcam/SimTcamEntryManager.h"

#include <string>

#include "platform/vesper/Assert.h"
#include "platform/vesper/Exception.h"
#include "sim/tcam/TcamUnit.h"

namespace Sim {

template <class Base>
Vesper::String SimTcamEntryManagerOps<Base>::groupName( Halyard::TcamGroupAssignment a ) {
   return Vesper::String( Vesper::stringValue( a ) );
}

template <class Base>
U32 SimTcamEntryManagerOps<Base>::capacity() const {
   return sim_->groupTable().at( assignment_ ).capacity;
}

template <class Base>
TcamEntryRecord* SimTcamEntryManagerOps<Base>::record( U32 unit, U32 entry ) const {
   TcamUnit* u = sim_->tcamUnit( unit );
   return u ? u->entry( entry ) : nullptr;
}

template <class Base>
TcamEntryRecord& SimTcamEntryManagerOps<Base>::heldRecord( U32 unit, U32 entry,
                                                           const char* operation ) const {
   TcamEntryRecord* r = record( unit, entry );
   if ( !r ) {
      const std::string what = std::string( operation ) + " of entry " + std::to_string( entry ) +
                               " that the group manager does not hold on unit " +
                               std::to_string( unit );
      Vesper::assertionFailed( what.c_str(), __FILE__, __LINE__, __PRETTY_FUNCTION__ );
   }
   return *r;
}

template <class Base>
bool SimTcamEntryManagerOps<Base>::tcamEntryBcmPbmpPermanent( U32 unit, U32 entry ) const {
   const TcamEntryRecord* r = record( unit, entry );
   return r && r->portKeyPermanent;
}

template <class Base>
U32 SimTcamEntryManagerOps<Base>::entriesAvailable( U32 unit ) const {
   return sim_->entriesAvailable( assignment_, unit );
}

template <class Base>
U32 SimTcamEntryManagerOps<Base>::entriesInUse( U32 unit ) const {
   return sim_->entriesInUse( assignment_, unit );
}

template <class Base>
void SimTcamEntryManagerOps<Base>::enableEntry( U32 unit, U32 entry, bool enable,
                                                int toleratedRc ) {
   heldRecord( unit, entry, "enableEntry" );
   const int rc = codes().of( chip( unit )->entryEnableIs( entry, enable ) );
   VESPER_ASSERT( rc == codes().none || rc == toleratedRc );
}

template <class Base>
int SimTcamEntryManagerOps<Base>::installEntry( U32 unit, U32 entry ) {
   if ( !record( unit, entry ) ) {
      return codes().notFound;
   }
   return codes().of( chip( unit )->entryInstall( entry ) );
}

template <class Base>
int SimTcamEntryManagerOps<Base>::removeEntry( U32 unit, U32 entry ) {
   if ( !record( unit, entry ) ) {
      return codes().notFound;
   }
   return codes().of( chip( unit )->entryRemove( entry ) );
}

template <class Base>
U64 SimTcamEntryManagerOps<Base>::hitsForEntry( U32 unit, U32 entry ) const {
   if ( !record( unit, entry ) ) {
      return 0;
   }
   return chip( unit )->entryHits( entry ).value_or( 0 );
}

template <class Base>
int SimTcamEntryManagerOps<Base>::setPriorityForEntry( U32 unit, U32 entry, U32 priority ) {
   if ( !record( unit, entry ) ) {
      return codes().notFound;
   }
   return codes().of( chip( unit )->entryPriorityIs( entry, priority ) );
}

template <class Base>
void SimTcamEntryManagerOps<Base>::addInPortsForEntry( U32 unit, U32 entry, const bcm_pbmp_t& data,
                                                       const bcm_pbmp_t& mask ) {
   TcamEntryRecord& r = heldRecord( unit, entry, "addInPortsForEntry" );
   r.portData = data;
   r.portMask = mask;
}

template <class Base>
void SimTcamEntryManagerOps<Base>::setTcamEntryBcmPbmpPermanent( U32 unit, U32 entry,
                                                                 bool permanent ) {
   heldRecord( unit, entry, "setTcamEntryBcmPbmpPermanent" ).portKeyPermanent = permanent;
}

template <class Base>
bcm_pbmp_t SimTcamEntryManagerOps<Base>::tcamEntryBcmPbmp( U32 unit, U32 entry ) const {
   const TcamEntryRecord* r = record( unit, entry );
   return r ? r->portData : bcm_pbmp_t{};
}

template <class Base>
U32 SimTcamEntryManagerOps<Base>::getRangeChecker( U32 unit,
                                                   const Halyard::RangeCheckerDesc& desc ) {
   return sim_->rangeCheckerGet( unit, desc );
}

template <class Base>
int SimTcamEntryManagerOps<Base>::attachRangeChecker( U32 unit, U32 entry, U32 rangeCheckerId ) {
   return sim_->rangeCheckerAttach( unit, entry, rangeCheckerId );
}

template <class Base>
void SimTcamEntryManagerOps<Base>::releaseRangeChecker( U32 unit,
                                                        const Halyard::RangeCheckerDesc& desc ) {
   sim_->rangeCheckerRelease( unit, desc );
}

template <class Base>
Halyard::QualIdList SimTcamEntryManagerOps<Base>::getAclUdf( U32 unit, int, U32,
                                                             Halyard::UdfOffsetBase base, U8 offset,
                                                             U8 length ) {
   return sim_->udfGet( unit, base, offset, length );
}

template <class Base>
void SimTcamEntryManagerOps<Base>::releaseAclUdf( U32 unit, int, U32, Halyard::UdfOffsetBase base,
                                                  U8 offset, U8 length ) {
   sim_->udfRelease( unit, base, offset, length );
}

template <class Base>
void SimTcamEntryManagerOps<Base>::compressEntries( U32 unit ) {
   sim_->entriesCompress( assignment_, unit );
}

template <class Base>
int SimTcamEntryManagerOps<Base>::getIpType( U32 unit, U32 entry ) const {
   const TcamEntryRecord* r = record( unit, entry );
   return r && r->ipType ? *r->ipType : codes().notFound;
}

template <class Base>
void SimTcamEntryManagerOps<Base>::qualifyIpType( U32 unit, U32 entry, bcm_field_IpType_t type ) {
   TcamEntryRecord& r = heldRecord( unit, entry, "qualifyIpType" );
   const std::optional<IpType> chipType = codes().ipType( type );
   if ( !chipType ) {
      throw Vesper::RangeException( "qualifyIpType: IP type " +
                                    std::to_string( static_cast<int>( type ) ) +
                                    " is not one the simulated chip qualifies on" );
   }
   const Status qualified = chip( unit )->ipTypeIs( entry, *chipType );
   VESPER_ASSERT( qualified == Status::Ok );
   r.ipType = static_cast<int>( type );
}

template class SimTcamEntryManagerOps<Halyard::HalyardUnboundedTcamEntryManager>;
template class SimTcamEntryManagerOps<Halyard::HalyardBoundedTcamEntryManager>;

}  // namespace Sim
