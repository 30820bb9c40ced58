// VlanBlockedSm: follows the VLAN blocks that the VLAN topology agents report. One per
// AclHelper; its inputs never change, and the helper replaces the machine when it is asked for
// one with other inputs.
#pragma once

#include "platform/status/VlanTopoBlockedStatus.h"
#include "platform/tcam/HalyardCommonSmData.h"
#include "platform/vesper/Ptr.h"

namespace Halyard {

class AclHelper;

// Follows the VLAN blocks that the VLAN topology agents report. Only its inputs are here so
// far: it does not react to the reports yet.
class VlanBlockedSm : public Vesper::PtrInterface {
   VESPER_FWK_TYPE( "Halyard::VlanBlockedSm" )

 public:
   using Ptr = Vesper::Ptr<VlanBlockedSm>;

   // A new machine with notifications off; its owner turns them on.
   static Ptr VlanBlockedSmIs(
       HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
       HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus );

   const HalyardCommonSmData::PtrConst& hcsd() const { return hcsd_; }
   Vesper::BackPtr<AclHelper> aclHelper() const { return aclHelper_; }
   const HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst& vlanTopoBlockedStatus() const {
      return vlanTopoBlockedStatus_;
   }

 private:
   VlanBlockedSm( HalyardCommonSmData::PtrConst hcsd, Vesper::BackPtr<AclHelper> aclHelper,
                  HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus );

   const HalyardCommonSmData::PtrConst hcsd_;
   const Vesper::BackPtr<AclHelper> aclHelper_;
   const HalyardVlanTopo::VlanTopoBlockedStatus::PtrConst vlanTopoBlockedStatus_;
};

}  // namespace Halyard
