// AclSmEntity: the owner of the generic state machine, and its factory.
#include <utility>

#include "acl/AclSmEntity.h"

namespace Halyard {

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
