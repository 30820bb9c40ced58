// The life of AclHelper: construction and its first records, the dirty flag, destruction,
// the factories, and the entity that owns the generic state machine.
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

Fennel::AclSm::Ptr AclSmEntity::aclSmIs(
    Fennel::FennelCommonSmData::Ptr fcsd, Acl::Config::PtrConst mainConfig,
    Acl::ParamConfig::PtrConst aclParamConfig, Vesper::Dir::PtrConst intfConfigDir,
    Acl::IntfConfig::PtrConst intfConfigCli, Vesper::Dir::PtrConst hwConfigDir,
    Acl::StatusDp::Ptr status, Errdisable::CauseStatus::PtrConst aclCauseStatus,
    Lag::Input::Config::PtrConst lagInputConfig, FennelHelper::AclHelper::Ptr aclHelper,
    Vesper::Clock::PtrConst clock, Bridging::Config::PtrConst brConfig,
    Interface::SubIntfStatusDir::PtrConst subIntfStatusDir,
    Interface::SubIntfConfigDir::PtrConst subIntfConfigDir ) {
   const Fennel::AclSmInputs inputs{ std::move( fcsd ),
                                     std::move( mainConfig ),
                                     std::move( aclParamConfig ),
                                     std::move( intfConfigDir ),
                                     std::move( intfConfigCli ),
                                     std::move( hwConfigDir ),
                                     std::move( status ),
                                     std::move( aclCauseStatus ),
                                     std::move( lagInputConfig ),
                                     std::move( aclHelper ),
                                     std::move( clock ),
                                     std::move( brConfig ),
                                     std::move( subIntfStatusDir ),
                                     std::move( subIntfConfigDir ) };
   if ( aclSm_ && aclSm_->builtFrom( inputs ) ) {
      return aclSm_;
   }
   aclSm_ = Fennel::AclSm::create( inputs );
   notify( &NotifieeConst::onAclSm );
   // Last, so that a driving machine starts only once its owner and the notifiees know it.
   aclSm_->hasNotificationActiveIs( true );
   return aclSm_;
}

Fennel::AclSm::Ptr AclSmEntity::aclSmDel() {
   Fennel::AclSm::Ptr old = std::exchange( aclSm_, nullptr );
   if ( !old ) {
      return nullptr;
   }
   notify( &NotifieeConst::onAclSm );
   old->hasNotificationActiveIs( false );
   return old;
}

AclSmEntity::Ptr aclSmEntityFactory() {
   AclSmEntity::Ptr entity( new AclSmEntity( Vesper::Name( "aclSmEntity" ) ) );
   entity->hasNotificationActiveIs( true );
   return entity;
}

}  // namespace Halyard
