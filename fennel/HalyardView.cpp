#include "fennel/HalyardView.h"

#include <algorithm>

namespace Fennel {

std::vector<AclUnitView> aclUnits( const Halyard::AclHelper& helper, const AclKey& key ) {
   std::vector<AclUnitView> units;
   const Halyard::HalyardAclData::Ptr acl = helper.halyardAclData( key );
   if ( !acl ) {
      return units;
   }
   for ( const auto& member : acl->unitData() ) {
      const Halyard::AclUnitData::Ptr& unitData = member.value();
      const Halyard::AclCommonUnitData::Ptr& common = unitData->common();
      AclUnitView view;
      view.unit = member.key();
      if ( common ) {
         view.installed = common->installed();
         view.dirty = common->dirty();
         for ( const Halyard::AclRuleData& rule : common->aclRule() ) {
            for ( const Halyard::AclEntryList& list : rule.entryList() ) {
               view.entries += static_cast<U32>( list.entryCount() );
            }
         }
      }
      units.push_back( view );
   }
   std::ranges::sort( units, {}, &AclUnitView::unit );
   return units;
}

EntryOwners::EntryOwners( const Halyard::AclHelper& helper ) {
   for ( const Halyard::HalyardAclData& acl : helper.halyardAclData() ) {
      const AclKey& key = acl.key();
      for ( const auto& unitMember : acl.unitData() ) {
         const Halyard::AclCommonUnitData::Ptr& common = unitMember.value()->common();
         if ( !common ) {
            continue;
         }
         for ( const Halyard::AclRuleData& rule : common->aclRule() ) {
            for ( const Halyard::AclEntryList& list : rule.entryList() ) {
               for ( const auto& entry : list.entry() ) {
                  owners_[{ unitMember.key(), entry.key() }] =
                      EntryOwner{ key, rule.ruleNum(), list.subRuleNum() };
               }
            }
         }
      }
   }
}

const EntryOwner* EntryOwners::owner( U32 unit, U32 entry ) const {
   const auto it = owners_.find( { unit, entry } );
   return it == owners_.end() ? nullptr : &it->second;
}

}  // namespace Fennel
