#include "tests/acl/setters/SimUnit.h"

#include <cstdlib>

#include "platform/pylon/ModId.h"
#include "platform/tcam/HalyardModInfo.h"
#include "sim/tcam/GroupTable.h"
#include "sim/tcam/SimTcamEntryManager.h"

namespace AclSettersTest {

namespace {

using HalyardCentral::ChipAttribute;

const Sim::ChipKind& dualClassKind() {
   static const Sim::ChipKind kind = [] {
      Sim::ChipKind k = *Sim::chipKindByName( "trident3" );
      k.name = "dualclass";
      k.description = "Trident3-class with both destination class forms";
      k.chipInfo = HalyardCentral::ChipInfo( 99, 0xd0a1, 1 );
      k.attributeBits |= 1u << static_cast<U32>( ChipAttribute::supportsIfpDstClassField );
      return k;
   }();
   return kind;
}

Sim::StageCapacity capacityOf( const Sim::StageSlices& slices ) {
   const U32 count = slices.slices();
   return Sim::StageCapacity{ count, count ? slices.totalNarrow() / count : 0 };
}

Sim::GroupTable groupTableOf( const Sim::ChipKind& kind ) {
   return Sim::defaultGroupTable( Sim::StageCapacities{
       capacityOf( kind.vfp ), capacityOf( kind.ifp ), capacityOf( kind.efp ) } );
}

}  // namespace

std::vector<std::string> chipKindNames() {
   std::vector<std::string> names;
   for ( const Sim::ChipKind& kind : Sim::chipCatalog() ) {
      names.push_back( kind.name );
   }
   names.push_back( dualClassKind().name );
   return names;
}

const Sim::ChipKind& chipKindNamed( std::string_view name ) {
   if ( name == dualClassKind().name ) {
      return dualClassKind();
   }
   const Sim::ChipKind* kind = Sim::chipKindByName( name );
   if ( !kind ) {
      std::abort();
   }
   return *kind;
}

SimUnit::SimUnit( const Sim::ChipKind& kind )
    : kind_( kind ),
      chip_( kind.chipConfig( 0 ) ),
      sdkInstall_( sdk_ ),
      groupMgr_( Sim::SimTcamGroupManager::create( groupTableOf( kind ) ) ),
      hcsd_( Halyard::halyardCommonSmDataFactory() ),
      attributes_( HalyardCentral::halyardAttributesFactory() ) {
   sdk_.unitIs( static_cast<int>( unit ), chip_, kind_ );
   groupMgr_->unitIs( unit, chip_ );
   groupMgr_->modChipInfoIs( static_cast<U16>( unit ), kind_.chipInfo );
   hcsd_->halyardModIdIs( static_cast<U16>( unit ),
                          Halyard::HalyardModInfo( static_cast<U16>( unit ), Pylon::ModId( 0 ),
                                                   kind_.chipInfo, Vesper::Name( kind_.name ) ) );
   Sim::chipTableFill( *attributes_ );
   attributes_->chipIs( kind_.chipInfo, Sim::chipAttributesOf( kind_ ) );
   HalyardCentral::halyardAttributesIs( attributes_ );
}

SimUnit::~SimUnit() {
   HalyardCentral::halyardAttributesIs( nullptr );
}

U32 SimUnit::newEntry( Halyard::TcamGroupAssignment a ) {
   return groupMgr_->unboundedEntryManager( a )->getEntry( unit, "setters test entry" );
}

Sim::GroupId SimUnit::groupOf( U32 entry ) const {
   return chip_.entryGroup( entry ).value_or( 0 );
}

void SimUnit::install( U32 entry ) {
   groupMgr_->tcamEntryMgr( entry )->installEntry( unit, entry );
}

bcm_pbmp_t SimUnit::portKey( U32 entry ) const {
   return groupMgr_->tcamEntryMgr( entry )->tcamEntryBcmPbmp( unit, entry );
}

bool SimUnit::portKeyPermanent( U32 entry ) const {
   auto manager = Vesper::ptrDynamicCast<Sim::SimUnboundedTcamEntryManager>(
       groupMgr_->tcamEntryMgr( entry ) );
   return manager && manager->tcamEntryBcmPbmpPermanent( unit, entry );
}

}  // namespace AclSettersTest
