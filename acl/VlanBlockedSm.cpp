// VlanBlockedSm: the follower of the VLAN blocks.
#include <utility>

#include "acl/VlanBlockedSm.h"

namespace Halyard {

VlanBlockedSm::VlanBlockedSm(
    HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
    HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus )
    : hcsd_( std::move( hcsd ) ),
      aclHelper_( aclHelper ),
      vlanTopoBlockedStatus_( std::move( vlanTopoBlockedStatus ) ) {}

VlanBlockedSm::Ptr VlanBlockedSm::VlanBlockedSmIs(
    HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
    HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus ) {
   return Ptr(
       new VlanBlockedSm( std::move( hcsd ), aclHelper, std::move( vlanTopoBlockedStatus ) ) );
}

}  // namespace Halyard
