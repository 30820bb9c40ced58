// The small rule-level records: interface class pools, entry lists, rules, acquisition
// results. The rule indices of AclCommonUnitData are in HalyardAclCommonRules.cpp.
#include "acl/HalyardAclCommon.h"

#include <vector>

namespace Halyard {

void IntfClassPool::is( U32 index, U8 intfClass ) {
   if ( index == stack_.size() ) {
      stack_.push( intfClass );
      return;
   }
   stack_.valueIs( index, intfClass );
}

void IntfClassPool::del( U32 index ) {
   // at() raises for an index that names no member, before anything changes.
   stack_.at( index );
   std::vector<U8> values;
   values.reserve( stack_.size() );
   for ( U32 i = 0; i < stack_.size(); ++i ) {
      if ( i != index ) {
         values.push_back( stack_.at( i ) );
      }
   }
   stack_.clear();
   for ( const U8 value : values ) {
      stack_.push( value );
   }
}

AclRuleData::AclRuleData( Acl::UniqueId aclId, U32 ruleNum, bool dropAll,
                          Vesper::BackPtr<AclCommonUnitData> parent )
    : aclId_( aclId ), ruleNum_( ruleNum ), dropAll_( dropAll ), parent_( parent ) {}

AclEntryList::Ptr AclRuleData::listIs( EntryListMap& map, U32 subRule ) {
   if ( AclEntryList::Ptr present = map.find( subRule ) ) {
      return present;
   }
   AclEntryList::Ptr list( new AclEntryList( subRule ) );
   list->hasNotificationActiveIs( true );
   map.insert( list );
   return list;
}

std::optional<U32> AclRuleData::rangeChecker( const RangeCheckerDesc& desc ) const {
   const U32* id = rangeChecker_.find( desc );
   return id ? std::optional<U32>( *id ) : std::nullopt;
}

CommonRuleData::Ptr commonRuleDataFactory() {
   CommonRuleData::Ptr data( new CommonRuleData );
   data->hasNotificationActiveIs( true );
   return data;
}

}  // namespace Halyard
