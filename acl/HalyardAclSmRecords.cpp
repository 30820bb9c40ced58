// The objects and collections that AclHelper owns: per-unit records, ACL records, the
// type-direction-feature state machines, the mirroring managers, and the three objects that
// construction wires (IngressRaclData, SharedRaclMgmtSm, VlanBlockedSm).
#include <string>
#include <utility>

#include "acl/HalyardAclSm.h"
#include "acl/HalyardAclTypeDirectionFeatureSm.h"
#include "platform/vesper/OwnedCollection.h"

namespace Halyard {

namespace {

// Removes every member of a map of objects keyed inside, one by one in walk order. The walk
// of such a map ends at any change, so it goes by a snapshot of the keys.
template <class Map>
void delAllByKeys( Map& map ) {
   for ( const auto& key : map.keys() ) {
      map.del( key );
   }
}

// The member of `key`, or the record that `make` builds (notifications on), entered under
// its key: the keyed creators return a standing member as it is.
template <class Map, class Key, class Make>
auto standingOrNew( Map& map, const Key& key, Make make ) -> decltype( make() ) {
   if ( auto present = map.find( key ) ) {
      return present;
   }
   auto record = make();
   record->hasNotificationActiveIs( true );
   map.insert( record );
   return record;
}

}  // namespace

HalyardAclTypeDirectionFeature typeDirectionFeatureOf(
    const HalyardAclTypeDirectionFeatureSm& sm ) {
   return sm.typeDirectionFeature();
}

// ---- AclHelper: single objects

SharedRaclMgmtSm::Ptr AclHelper::sharedRaclMgmtSmIs(
    Acl::ParamConfig::PtrConst aclParamConfig, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
    IngressRaclData::Ptr ingressRaclData, HalyardL3::L3IntfStatus::PtrConst l3IntfStatus ) {
   if ( sharedRaclMgmtSm_ && sharedRaclMgmtSm_->aclParamConfig() == aclParamConfig &&
        sharedRaclMgmtSm_->aclHwStatus() == aclHwStatus &&
        sharedRaclMgmtSm_->ingressRaclData() == ingressRaclData &&
        sharedRaclMgmtSm_->l3IntfStatus() == l3IntfStatus ) {
      return sharedRaclMgmtSm_;
   }
   sharedRaclMgmtSm_ = SharedRaclMgmtSm::SharedRaclMgmtSmIs(
       std::move( aclParamConfig ), std::move( aclHwStatus ), std::move( ingressRaclData ),
       std::move( l3IntfStatus ), this );
   sharedRaclMgmtSm_->hasNotificationActiveIs( true );
   return sharedRaclMgmtSm_;
}

SharedRaclMgmtSm::Ptr AclHelper::sharedRaclMgmtSmDel() {
   return std::exchange( sharedRaclMgmtSm_, nullptr );
}

VlanBlockedSm::Ptr AclHelper::vlanBlockedSmIs(
    HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
    HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus ) {
   if ( vlanBlockedSm_ && vlanBlockedSm_->hcsd() == hcsd &&
        vlanBlockedSm_->aclHelper() == aclHelper &&
        vlanBlockedSm_->vlanTopoBlockedStatus() == vlanTopoBlockedStatus ) {
      return vlanBlockedSm_;
   }
   vlanBlockedSm_ = VlanBlockedSm::VlanBlockedSmIs( std::move( hcsd ), aclHelper,
                                                    std::move( vlanTopoBlockedStatus ) );
   vlanBlockedSm_->hasNotificationActiveIs( true );
   return vlanBlockedSm_;
}

VlanBlockedSm::Ptr AclHelper::vlanBlockedSmDel() {
   return std::exchange( vlanBlockedSm_, nullptr );
}

IngressRaclData::Ptr AclHelper::ingressRaclDataIs() {
   if ( !ingressRaclData_ ) {
      ingressRaclData_ = ingressRaclDataFactory( this );
      ingressRaclData_->hasNotificationActiveIs( true );
   }
   return ingressRaclData_;
}

IngressRaclData::Ptr AclHelper::ingressRaclDataDel() {
   return std::exchange( ingressRaclData_, nullptr );
}

// ---- AclHelper: mirroring managers and state machines

AclHelper::UnboundedManagerPtr AclHelper::mirroringAclEntryManager(
    HalyardAclFeature feature ) const {
   const UnboundedManagerPtr* manager = mirroringAclEntryManager_.find( feature );
   return manager ? *manager : nullptr;
}

void AclHelper::mirroringAclEntryManagerIs( HalyardAclFeature feature,
                                            UnboundedManagerPtr manager ) {
   if ( !manager ) {
      mirroringAclEntryManager_.del( feature );
      return;
   }
   mirroringAclEntryManager_.set( feature, std::move( manager ) );
}

AclHelper::TypeDirectionFeatureSmPtr AclHelper::halyardAclTypeDirectionFeatureSm(
    const HalyardAclTypeDirectionFeature& key ) const {
   return halyardAclTypeDirectionFeatureSm_.find( key );
}

bool AclHelper::halyardAclTypeDirectionFeatureSmHas(
    const HalyardAclTypeDirectionFeature& key ) const {
   return halyardAclTypeDirectionFeatureSm_.has( key );
}

AclHelper::TypeDirectionFeatureSmPtr AclHelper::halyardAclTypeDirectionFeatureSmIs(
    const HalyardAclTypeDirectionFeature& key, Vesper::BackPtr<AclHelper> aclHelper,
    UnboundedManagerPtr entryManager, UnboundedManagerPtr vfpEntryManager,
    UnboundedManagerPtr vniEntryManager, UnboundedManagerPtr stdEntryManager,
    UnboundedManagerPtr stdVfpEntryManager, UnboundedManagerPtr routerEntryManager,
    UnboundedManagerPtr stdRouterEntryManager ) {
   if ( TypeDirectionFeatureSmPtr present = halyardAclTypeDirectionFeatureSm_.find( key ) ) {
      Vesper::checkCtorArgs( *present, aclHelper, entryManager, vfpEntryManager, vniEntryManager,
                             stdEntryManager, stdVfpEntryManager, routerEntryManager,
                             stdRouterEntryManager );
      return present;
   }
   TypeDirectionFeatureSmPtr sm( new HalyardAclTypeDirectionFeatureSm(
       key, aclHelper, std::move( entryManager ), std::move( vfpEntryManager ),
       std::move( vniEntryManager ), std::move( stdEntryManager ), std::move( stdVfpEntryManager ),
       std::move( routerEntryManager ), std::move( stdRouterEntryManager ) ) );
   sm->hasNotificationActiveIs( true );
   halyardAclTypeDirectionFeatureSm_.insert( sm );
   return sm;
}

AclHelper::TypeDirectionFeatureSmPtr AclHelper::halyardAclTypeDirectionFeatureSmDel(
    const HalyardAclTypeDirectionFeature& key ) {
   return halyardAclTypeDirectionFeatureSm_.del( key );
}

void AclHelper::halyardAclTypeDirectionFeatureSmDelAll() {
   delAllByKeys( halyardAclTypeDirectionFeatureSm_ );
}

AclHelper::TypeDirectionFeatureSmPtr AclHelper::getHalyardAclTypeDirectionFeatureSm(
    Acl::AclType type, Acl::AclDirection direction, HalyardAclFeature feature ) const {
   return halyardAclTypeDirectionFeatureSm_.find(
       HalyardAclTypeDirectionFeature( type, direction, feature ) );
}

// ---- AclHelper: ACL records

HalyardAclData::Ptr AclHelper::halyardAclDataIs( const Fennel::AclKey& key ) {
   RuleRecords::changed();
   return standingOrNew( halyardAclData_, key,
                         [&] { return HalyardAclData::Ptr( new HalyardAclData( key ) ); } );
}

void AclHelper::halyardAclDataDelAll() {
   RuleRecords::changed();
   delAllByKeys( halyardAclData_ );
}

AclRuleData::Ptr AclHelper::getAclRuleData( const AclDataPtrConst& aclData, U32 unit,
                                            U32 ruleNum ) const {
   const HalyardAclData::Ptr saclData = halyardAclData( aclData->key() );
   if ( !saclData ) {
      return nullptr;
   }
   const AclUnitData::Ptr unitData = saclData->unitData( unit );
   if ( !unitData || !unitData->common() ) {
      return nullptr;
   }
   return unitData->common()->aclRule( ruleNum );
}

// ---- AclHelper: per-unit records

VfpAclTypeForPort::Ptr AclHelper::vfpAclTypeForUnitIs( U32 unit ) {
   return standingOrNew( vfpAclTypeForUnit_, unit, [unit] {
      return VfpAclTypeForPort::Ptr( new VfpAclTypeForPort( unit ) );
   } );
}

void AclHelper::vfpAclTypeForUnitDelAll() {
   delAllByKeys( vfpAclTypeForUnit_ );
}

HalyardIntfClassData::Ptr AclHelper::halyardIntfClassDataIs( U32 unit ) {
   return standingOrNew( halyardIntfClassData_, unit, [unit] {
      return HalyardIntfClassData::Ptr( new HalyardIntfClassData( unit ) );
   } );
}

void AclHelper::halyardIntfClassDataDelAll() {
   delAllByKeys( halyardIntfClassData_ );
}

}  // namespace Halyard
