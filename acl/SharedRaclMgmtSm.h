// SharedRaclMgmtSm: the sharing manager of router ACLs between the identifier store
// (IngressRaclData) and the L3 agents. One per AclHelper; its inputs never change, and the
// helper replaces the manager when it is asked for one with other inputs.
#pragma once

#include "acl/IngressRaclData.h"
#include "platform/acl/ParamConfig.h"
#include "platform/status/AclHwStatus.h"
#include "platform/status/L3IntfStatus.h"
#include "platform/vesper/Ptr.h"

namespace Halyard {

class AclHelper;

// The sharing manager of router ACLs. Only its inputs are here so far: it sizes no raclId
// space, files no request with the L3 agents, copies no answer and restarts nothing yet.
class SharedRaclMgmtSm : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::SharedRaclMgmtSm" )

 public:
   using Ptr = Vesper::Ptr<SharedRaclMgmtSm>;

   // A new manager with notifications off; its owner turns them on.
   static Ptr SharedRaclMgmtSmIs( Acl::ParamConfig::PtrConst aclParamConfig,
                                  HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
                                  IngressRaclData::Ptr ingressRaclData,
                                  HalyardL3::L3IntfStatus::PtrConst l3IntfStatus,
                                  Vesper::BackPtr<AclHelper> aclHelper );

   const Acl::ParamConfig::PtrConst& aclParamConfig() const { return aclParamConfig_; }
   const HalyardCentral::AclHwStatus::PtrConst& aclHwStatus() const { return aclHwStatus_; }
   const IngressRaclData::Ptr& ingressRaclData() const { return ingressRaclData_; }
   const HalyardL3::L3IntfStatus::PtrConst& l3IntfStatus() const { return l3IntfStatus_; }
   Vesper::BackPtr<AclHelper> aclHelper() const { return aclHelper_; }

 private:
   SharedRaclMgmtSm( Acl::ParamConfig::PtrConst aclParamConfig,
                     HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
                     IngressRaclData::Ptr ingressRaclData,
                     HalyardL3::L3IntfStatus::PtrConst l3IntfStatus,
                     Vesper::BackPtr<AclHelper> aclHelper );

   const Acl::ParamConfig::PtrConst aclParamConfig_;
   const HalyardCentral::AclHwStatus::PtrConst aclHwStatus_;
   const IngressRaclData::Ptr ingressRaclData_;
   const HalyardL3::L3IntfStatus::PtrConst l3IntfStatus_;
   const Vesper::BackPtr<AclHelper> aclHelper_;
};

}  // namespace Halyard
