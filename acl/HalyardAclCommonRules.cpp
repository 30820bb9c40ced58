// AclCommonUnitData: the two indices of an ACL's rules on one unit.
#include <utility>

#include "acl/HalyardAclCommon.h"
#include "platform/vesper/Assert.h"
#include "platform/vesper/OwnedCollection.h"
#include "platform/vesper/ValueText.h"

namespace Halyard {

namespace {

// Raises the runtime's name-in-use exception when a standing rule was made with another
// value of a constructor parameter.
template <class T>
void requireSameParam( const char* attrName, const T& given, const T& held ) {
   if ( !( given == held ) ) {
      throw Vesper::NameInUseException( Vesper::nameInUseText( attrName, Vesper::valueText( given ),
                                                               Vesper::valueText( held ) ) );
   }
}

}  // namespace

AclCommonUnitData::AclCommonUnitData( U32 unit, Acl::AclType type, HalyardCommonSmData::Ptr hcsd,
                                      HalyardTcamGroupManager::Ptr tcamGroupManager )
    : unit_( unit ),
      type_( type ),
      hcsd_( std::move( hcsd ) ),
      tcamGroupManager_( std::move( tcamGroupManager ) ) {}

AclRuleData::Ptr AclCommonUnitData::aclRuleIs( Acl::UniqueId aclId, U32 ruleNum, bool dropAll ) {
   if ( AclRuleData::Ptr present = aclRule_.find( ruleNum ) ) {
      requireSameParam( "_aclId", aclId, present->aclId() );
      requireSameParam( "_dropAll", dropAll, present->dropAll() );
      return present;
   }
   AclRuleData::Ptr rule( new AclRuleData( aclId, ruleNum, dropAll, this ) );
   rule->hasNotificationActiveIs( true );
   aclRule_.insert( rule );
   return rule;
}

AclRuleData::Ptr AclCommonUnitData::aclRuleCreate( Acl::UniqueId aclId, U32 ruleNum,
                                                   bool /*dropAll*/ ) {
   AclRuleData::Ptr rule = aclRuleIs( aclId, ruleNum, true );
   aclRuleDataIs( aclId, rule );
   return rule;
}

AclRuleData::Ptr AclCommonUnitData::aclRuleData( Acl::UniqueId aclId ) const {
   const AclRuleData::Ptr* rule = aclRuleData_.find( aclId );
   return rule ? *rule : nullptr;
}

void AclCommonUnitData::aclRuleDataIs( Acl::UniqueId aclId, const AclRuleData::Ptr& rule ) {
   RuleRecords::changed();
   if ( !rule ) {
      aclRuleData_.del( aclId );
      return;
   }
   aclRuleData_.set( aclId, rule );
}

AclRuleData::Ptr AclCommonUnitData::aclRuleDataDel( Acl::UniqueId aclId ) {
   RuleRecords::changed();
   auto removed = aclRuleData_.del( aclId );
   return removed ? std::move( *removed ) : nullptr;
}

AclRuleData::Ptr AclCommonUnitData::getAclRuleDataForAclId( Acl::UniqueId aclId ) const {
   const AclRuleData::Ptr result = aclRuleData( aclId );
   if ( !hcsd_ || !hcsd_->aclRuleIndexConsistencyCheck() ) {
      return result;
   }
   const AclRuleData* found = result.ptr();
   AclRuleData::Ptr aclRuleIter;
   for ( auto it = aclRule_.iterator(); AclRuleData* rule = it.currNodeNonStale(); it.advance() ) {
      if ( rule->aclId() == aclId ) {
         aclRuleIter = rule;
         break;
      }
   }
   if ( aclRuleIter ) {
      VESPER_ASSERT( aclRuleIter.ptr() == found );
   } else {
      VESPER_ASSERT( !found );
   }
   return result;
}

AclCommonUnitData::Ptr aclCommonUnitDataFactory( U32 unit, Acl::AclType type,
                                                 HalyardCommonSmData::Ptr hcsd,
                                                 HalyardTcamGroupManager::Ptr tcamGroupManager ) {
   AclCommonUnitData::Ptr data(
       new AclCommonUnitData( unit, type, std::move( hcsd ), std::move( tcamGroupManager ) ) );
   data->hasNotificationActiveIs( true );
   return data;
}

}  // namespace Halyard
