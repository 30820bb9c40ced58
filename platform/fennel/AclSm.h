// Fennel::AclSm: the generic ACL state machine, as the back-end and the
// agent's wiring see it.
//
// A machine is built from fourteen inputs (AclSmInputs) and never changes
// them: the generic layer's common data, the ACL configuration, the hardware
// access-list parameters, the interface and hardware configuration
// directories, the interface bindings, the ACL status, the records of
// neighbouring agents, the back-end (FennelHelper::AclHelper) and a clock.
// builtFrom() answers whether a machine was built from given inputs, which is
// how the owner (the back-end's AclSmEntity) tells that a machine may stay.
//
// The driving itself (bindings, rule creation, commit, reapply, teardown,
// verification, counters) lives in the generic layer, which the back-end must
// not include. So machines come from a process-wide factory: AclSm::create()
// calls the factory that the generic layer registered with
// aclSmFactoryIs(), or, when none is registered, builds a plain AclSm, which
// drives nothing. A registered factory returns its own subclass, built from
// exactly the inputs it is given (checked).
//
// Every machine, plain or not, hands the back-end the two generic inputs that
// it reads itself when it is built: fcsd and the interface bindings
// (aclHelper->fcsdIs(), aclHelper->intfConfigIs()).
//
// create() returns the machine with notifications off, like any new counted
// object: the owner switches them on (hasNotificationActiveIs( true )), last,
// and a driving subclass starts its reactors there.
//
// Threads: the factory is registered at start, before any machine is made;
// machines live on the activity thread.
#pragma once

#include <functional>

#include "platform/acl/AclConfig.h"
#include "platform/acl/IntfConfig.h"
#include "platform/acl/ParamConfig.h"
#include "platform/fennel/FennelAclHelper.h"
#include "platform/fennel/FennelCommonSmData.h"
#include "platform/status/StatusDp.h"
#include "platform/vesper/Clock.h"
#include "platform/vesper/Dir.h"
#include "platform/vesper/Notifier.h"
#include "platform/vesper/Ptr.h"
#include "platform/wiring/AgentRecords.h"

namespace Fennel {

// The fourteen inputs of a machine, in the order of AclSmEntity::aclSmIs.
struct AclSmInputs {
   FennelCommonSmData::Ptr fcsd;
   Acl::Config::PtrConst mainConfig;
   Acl::ParamConfig::PtrConst aclParamConfig;
   Vesper::Dir::PtrConst intfConfigDir;
   Acl::IntfConfig::PtrConst intfConfigCli;
   Vesper::Dir::PtrConst hwConfigDir;
   Acl::StatusDp::Ptr status;
   Errdisable::CauseStatus::PtrConst aclCauseStatus;
   Lag::Input::Config::PtrConst lagInputConfig;
   FennelHelper::AclHelper::Ptr aclHelper;
   Vesper::Clock::PtrConst clock;
   Bridging::Config::PtrConst brConfig;
   Interface::SubIntfStatusDir::PtrConst subIntfStatusDir;
   Interface::SubIntfConfigDir::PtrConst subIntfConfigDir;

   // The same fourteen objects (identity, not contents).
   friend bool operator==( const AclSmInputs&, const AclSmInputs& ) = default;
};

class AclSm : public Vesper::NotifierBase<> {
   VESPER_FWK_TYPE( "Fennel::AclSm" )

 public:
   using Ptr = Vesper::Ptr<AclSm>;
   using PtrConst = Vesper::Ptr<const AclSm>;

   class NotifieeConst : public Vesper::NotifieeBase<AclSm> {};

   // A machine built from these inputs by the registered factory (a plain
   // AclSm when there is none), with notifications off.
   static Ptr create( FennelCommonSmData::Ptr fcsd, Acl::Config::PtrConst mainConfig,
                      Acl::ParamConfig::PtrConst aclParamConfig,
                      Vesper::Dir::PtrConst intfConfigDir, Acl::IntfConfig::PtrConst intfConfigCli,
                      Vesper::Dir::PtrConst hwConfigDir, Acl::StatusDp::Ptr status,
                      Errdisable::CauseStatus::PtrConst aclCauseStatus,
                      Lag::Input::Config::PtrConst lagInputConfig,
                      FennelHelper::AclHelper::Ptr aclHelper, Vesper::Clock::PtrConst clock,
                      Bridging::Config::PtrConst brConfig,
                      Interface::SubIntfStatusDir::PtrConst subIntfStatusDir,
                      Interface::SubIntfConfigDir::PtrConst subIntfConfigDir );
   static Ptr create( const AclSmInputs& inputs );

   const AclSmInputs& inputs() const { return inputs_; }
   const FennelCommonSmData::Ptr& fcsd() const { return inputs_.fcsd; }
   const Acl::Config::PtrConst& mainConfig() const { return inputs_.mainConfig; }
   const Acl::ParamConfig::PtrConst& aclParamConfig() const { return inputs_.aclParamConfig; }
   const Vesper::Dir::PtrConst& intfConfigDir() const { return inputs_.intfConfigDir; }
   const Acl::IntfConfig::PtrConst& intfConfigCli() const { return inputs_.intfConfigCli; }
   const Vesper::Dir::PtrConst& hwConfigDir() const { return inputs_.hwConfigDir; }
   const Acl::StatusDp::Ptr& status() const { return inputs_.status; }
   const Errdisable::CauseStatus::PtrConst& aclCauseStatus() const {
      return inputs_.aclCauseStatus;
   }
   const Lag::Input::Config::PtrConst& lagInputConfig() const { return inputs_.lagInputConfig; }
   const FennelHelper::AclHelper::Ptr& aclHelper() const { return inputs_.aclHelper; }
   const Vesper::Clock::PtrConst& clock() const { return inputs_.clock; }
   const Bridging::Config::PtrConst& brConfig() const { return inputs_.brConfig; }
   const Interface::SubIntfStatusDir::PtrConst& subIntfStatusDir() const {
      return inputs_.subIntfStatusDir;
   }
   const Interface::SubIntfConfigDir::PtrConst& subIntfConfigDir() const {
      return inputs_.subIntfConfigDir;
   }

   // Whether this machine was built from exactly these inputs.
   bool builtFrom( const AclSmInputs& inputs ) const { return inputs == inputs_; }

 protected:
   // For the factories: the plain one and the generic layer's subclasses.
   explicit AclSm( const AclSmInputs& inputs );

 private:
   const AclSmInputs inputs_;
};

// Builds a machine from the inputs; the generic layer's factory returns its
// driving subclass. It must return a machine built from `inputs`.
using AclSmFactory = std::function<AclSm::Ptr( const AclSmInputs& inputs )>;

// Registers the factory of AclSm::create(); an empty one restores the plain
// machine.
void aclSmFactoryIs( AclSmFactory factory );
// Whether a factory other than the plain one is registered.
bool aclSmFactoryHas();

}  // namespace Fennel
