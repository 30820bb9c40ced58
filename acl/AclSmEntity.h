// AclSmEntity: the entity in the agent's tree that owns the generic ACL state machine
// (Fennel::AclSm), made by aclSmEntityFactory. Its only own attribute is the machine, which
// it rebuilds only when it is given other inputs than those it was built from.
#pragma once

#include <utility>
#include "platform/acl/AclConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/fennel/AclSm.h"
#include "platform/fennel/FennelAclHelper.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/status/StatusDp.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/vesper/Entity.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/wiring/AgentRecords.h"

namespace Halyard {

// The entity in the agent's tree that owns the generic state machine.
class AclSmEntity : public Vesper::NotifierBase<Vesper::Entity> {
   VESPER_FWK_TYPE( "Halyard::AclSmEntity" )

 public:
   using Ptr = Vesper::Ptr<AclSmEntity>;

   class NotifieeConst : public Vesper::NotifieeBase<AclSmEntity> {
    public:
      virtual void onAclSm() {}
   };

   explicit AclSmEntity( Vesper::Name name ) : NotifierBase( std::move( name ) ) {}

   const Fennel::AclSm::Ptr& aclSm() const { return aclSm_; }
   // The standing machine when it was built from exactly these fourteen objects. Otherwise
   // a new machine (Fennel::AclSm::create) replaces it, the notifiees hear onAclSm once, and
   // the new machine's notifications are switched on last.
   Fennel::AclSm::Ptr aclSmIs(
       Fennel::FennelCommonSmData::Ptr fcsd, Acl::Config::PtrConst mainConfig,
       Acl::ParamConfig::PtrConst aclParamConfig, Vesper::Dir::PtrConst intfConfigDir,
       Acl::IntfConfig::PtrConst intfConfigCli, Vesper::Dir::PtrConst hwConfigDir,
       Acl::StatusDp::Ptr status, Errdisable::CauseStatus::PtrConst aclCauseStatus,
       Lag::Input::Config::PtrConst lagInputConfig, FennelHelper::AclHelper::Ptr aclHelper,
       Vesper::Clock::PtrConst clock, Bridging::Config::PtrConst brConfig,
       Interface::SubIntfStatusDir::PtrConst subIntfStatusDir,
       Interface::SubIntfConfigDir::PtrConst subIntfConfigDir );
   // Drops the machine, notifies, and switches the machine's notifications off; returns it.
   // Without a machine: null, and nothing happens.
   Fennel::AclSm::Ptr aclSmDel();

   // The entity takes no part in the state backup of the object runtime.
   bool hasBackupSupport() const override { return false; }

 private:
   Fennel::AclSm::Ptr aclSm_;
};

// A new entity without a state machine, with notifications on.
AclSmEntity::Ptr aclSmEntityFactory();

}  // namespace Halyard
