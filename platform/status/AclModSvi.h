// The key of a VLAN on one chip: the chip's module id and the VLAN id. It
// keys the block requests of VlanTopoSliceStatus and the answers of
// VlanTopoBlockedStatus, one per chip and VLAN.
//
// The VLAN is a Pylon::VlanId, so a key can only name a VLAN from 1 to 4094:
// building one from a number outside raises "VlanId::value < 1 or > 4094 not
// allowed". Ordering is by module id, then VLAN. hash() is the one-at-a-time
// hash over the two 16-bit values, module id first.
// Text: Value('HalyardVlanTopo::AclModSvi', ** {'modId': 1, 'vlanId': 100})
#pragma once

#include <compare>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/pylon/ModId.h"
#include "platform/pylon/ValueText.h"
#include "platform/pylon/VlanId.h"
#include "platform/vesper/Types.h"

namespace HalyardVlanTopo {

using Pylon::strepToValue;

class AclModSvi {
 public:
   AclModSvi() = default;
   AclModSvi( Pylon::ModId modId, Pylon::VlanId vlanId ) : modId_( modId ), vlanId_( vlanId ) {}

   Pylon::ModId modId() const { return modId_; }
   Pylon::VlanId vlanId() const { return vlanId_; }
   U32 hash() const;

   friend bool operator==( const AclModSvi&, const AclModSvi& ) = default;
   friend auto operator<=>( const AclModSvi&, const AclModSvi& ) = default;

 private:
   Pylon::ModId modId_;
   Pylon::VlanId vlanId_;
};

std::string valueToStrep( const AclModSvi& key );
AclModSvi parseStrep( std::string_view text, Pylon::ValueType<AclModSvi> );
std::ostream& operator<<( std::ostream& os, const AclModSvi& key );

}  // namespace HalyardVlanTopo
