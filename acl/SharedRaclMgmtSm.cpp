// SharedRaclMgmtSm: the sharing manager of router ACLs.
#include <utility>

#include "acl/SharedRaclMgmtSm.h"

namespace Halyard {

SharedRaclMgmtSm::SharedRaclMgmtSm( Acl::ParamConfig::PtrConst aclParamConfig,
                                    HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
                                    IngressRaclData::Ptr ingressRaclData,
                                    HalyardL3::L3IntfStatus::PtrConst l3IntfStatus,
                                    Vesper::BackPtr<AclHelper> aclHelper )
    : aclParamConfig_( std::move( aclParamConfig ) ),
      aclHwStatus_( std::move( aclHwStatus ) ),
      ingressRaclData_( std::move( ingressRaclData ) ),
      l3IntfStatus_( std::move( l3IntfStatus ) ),
      aclHelper_( aclHelper ) {}

SharedRaclMgmtSm::Ptr SharedRaclMgmtSm::SharedRaclMgmtSmIs(
    Acl::ParamConfig::PtrConst aclParamConfig, HalyardCentral::AclHwStatus::PtrConst aclHwStatus,
    IngressRaclData::Ptr ingressRaclData, HalyardL3::L3IntfStatus::PtrConst l3IntfStatus,
    Vesper::BackPtr<AclHelper> aclHelper ) {
   return Ptr( new SharedRaclMgmtSm( std::move( aclParamConfig ), std::move( aclHwStatus ),
                                     std::move( ingressRaclData ), std::move( l3IntfStatus ),
                                     aclHelper ) );
}

}  // namespace Halyard
