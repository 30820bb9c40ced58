// The life of AclHelper: construction and its first records, the dirty flag, destruction and
// the factory.
#include <utility>

#include "acl/HalyardAclSm.h"
#include "platform/vesper/Trace.h"

VESPER_TRACE_HANDLE( "Halyard::AclSm" )

namespace Halyard {

AclHelper::AclHelper( HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus,
                      HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus,
                      HalyardCommonSmData::Ptr hcsd, HalyardTcamGroupManager::Ptr tcamGroupManager,
                      Acl::Config::PtrConst mainConfig, Acl::ParamConfig::PtrConst aclParamConfig,
                      Acl::StatusDp::Ptr status, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
                      HalyardL3::L3SliceAgentStatus::Ptr halyardSliceAgentStatus,
                      HalyardL3::L3IntfStatus::PtrConst l3IntfStatus, bool hasFabric )
    : vlanTopoSliceStatus_( std::move( vlanTopoSliceStatus ) ),
      vlanTopoBlockedStatus_( std::move( vlanTopoBlockedStatus ) ),
      hcsd_( std::move( hcsd ) ),
      tcamGroupManager_( std::move( tcamGroupManager ) ),
      mainConfig_( std::move( mainConfig ) ),
      aclParamConfig_( std::move( aclParamConfig ) ),
      status_( std::move( status ) ),
      aclHwStatus_( std::move( aclHwStatus ) ),
      halyardSliceAgentStatus_( std::move( halyardSliceAgentStatus ) ),
      l3IntfStatus_( std::move( l3IntfStatus ) ),
      hasFabric_( hasFabric ) {
   handleInitialized();
}

void AclHelper::handleInitialized() {
   VTRACE( 1, "AclHelper::handleInitialized()" );
   // Blocks requested by an earlier life of the agent have nobody left to lift them.
   vlanTopoSliceStatus_->blockDelAll();
   for ( const auto& member : hcsd_->halyardModId() ) {
      vfpAclTypeForUnitIs( member.key() );
      vlanTopoSliceStatus_->aclVlanClassIdPerChipIs( member.value().chip() );
   }
   ingressRaclDataIs();
   sharedRaclMgmtSmIs( aclParamConfig_, aclHwStatus_, ingressRaclData_, l3IntfStatus_ );
   vlanBlockedSmIs( hcsd_, this, vlanTopoBlockedStatus_ );
   initialized_ = true;
}

// The order matters: the sharing manager and the state machines react to the records below
// them, so they go first, while everything they watch still stands.
AclHelper::~AclHelper() {
   VTRACE( 1, "AclHelper::~AclHelper()" );
   sharedRaclMgmtSmDel();
   halyardAclTypeDirectionFeatureSmDelAll();
   halyardAclDataDelAll();
   vfpAclTypeForUnitDelAll();
   halyardIntfClassDataDelAll();
   vlanBlockedSmDel();
   ingressRaclDataDel();
}

void AclHelper::dirtyIs( bool dirty ) {
   if ( dirty == this->dirty() ) {
      return;
   }
   FennelHelper::AclHelper::dirtyIs( dirty );
   handleDirty();
}

void AclHelper::handleDirty() {
   if ( !dirty() ) {
      unitDirtyDelAll();
   }
}

bool AclHelper::unitDirty( U32 unit ) const {
   const bool* dirty = unitDirty_.find( unit );
   return dirty && *dirty;
}

bool AclHelper::useUnsharedRaclsForSubIntf() {
   return true;
}

bool AclHelper::isVfiForwarding() {
   return hcsd_->vfiForwarding();
}

AclHelper::Ptr aclHelperFactory(
    HalyardVlanTopo::VlanTopoSliceStatus::Ptr vlanTopoSliceStatus,
    HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus,
    HalyardCommonSmData::Ptr hcsd, HalyardTcamGroupManager::Ptr tcamGroupManager,
    Acl::Config::PtrConst mainConfig, Acl::ParamConfig::PtrConst aclParamConfig,
    Acl::StatusDp::Ptr status, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
    HalyardL3::L3SliceAgentStatus::Ptr halyardSliceAgentStatus,
    HalyardL3::L3IntfStatus::PtrConst l3IntfStatus, bool hasFabric ) {
   AclHelper::Ptr helper( new AclHelper(
       std::move( vlanTopoSliceStatus ), std::move( vlanTopoBlockedStatus ), std::move( hcsd ),
       std::move( tcamGroupManager ), std::move( mainConfig ), std::move( aclParamConfig ),
       std::move( status ), std::move( aclHwStatus ), std::move( halyardSliceAgentStatus ),
       std::move( l3IntfStatus ), hasFabric ) );
   helper->hasNotificationActiveIs( true );
   return helper;
}

}  // namespace Halyard
