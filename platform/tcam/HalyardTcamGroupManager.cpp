#include "platform/tcam/HalyardTcamGroupManager.h"

#include "platform/status/AttributeSupport.h"

namespace Halyard {

HalyardCentral::ChipInfo HalyardTcamGroupManager::modChipInfo( U16 unit ) const {
   const HalyardCentral::ChipInfo* chip = modChipInfo_.find( unit );
   return chip ? *chip : HalyardCentral::ChipInfo();
}

HalyardTcamEntryManager::Ptr HalyardTcamGroupManager::tcamManagerForEntry( U32 entry ) const {
   const HalyardTcamEntryManager::Ptr* manager = tcamManagerForEntry_.find( entry );
   return manager ? *manager : nullptr;
}

void HalyardTcamGroupManager::tcamManagerForEntryIs( U32 entry,
                                                     const HalyardTcamEntryManager::Ptr& manager ) {
   if ( !manager ) {
      tcamManagerForEntry_.del( entry );
      return;
   }
   tcamManagerForEntry_.set( entry, manager );
}

bool HalyardTcamGroupManager::groupMirroringAclValid( U8 group ) const {
   const bool* valid = groupMirroringAclValid_.find( group );
   return valid && *valid;
}

int HalyardTcamGroupManager::groupMirroringAclType( U8 group ) const {
   const int* type = groupMirroringAclType_.find( group );
   return type ? *type : 0;
}

bool HalyardTcamGroupManager::rangeCheckersExhausted( U32 unit ) const {
   const bool* value = rangeCheckersExhausted_.find( unit );
   return value && *value;
}

void HalyardTcamGroupManager::rangeCheckersExhaustedIs( U32 unit, bool value ) {
   if ( rangeCheckersExhausted_.set( unit, value ) ) {
      notify( &NotifieeConst::onRangeCheckersExhausted, unit );
   }
}

void HalyardTcamGroupManager::ingressRaclSharingSupportedIs( bool value ) {
   if ( HalyardStatus::assignIfChanged( ingressRaclSharingSupported_, value ) ) {
      notify( &NotifieeConst::onIngressRaclSharingSupported );
   }
}

void HalyardTcamGroupManager::ingressMirrorAclKeyWidthModeIs( U32 mode ) {
   if ( HalyardStatus::assignIfChanged( ingressMirrorAclKeyWidthMode_, mode ) ) {
      notify( &NotifieeConst::onIngressMirrorAclKeyWidthMode );
   }
}

}  // namespace Halyard
