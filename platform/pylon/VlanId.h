// A VLAN number in the range of tagged VLANs, 1 to 4094.
//
// Invariant: min <= value() <= max. Construction outside it throws
// Vesper::RangeException "VlanId::value < 1 or > 4094 not allowed". The
// default value is 1, the default VLAN of a switch.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class VlanId {
 public:
   static constexpr U16 min = 1;
   static constexpr U16 max = 4094;

   constexpr VlanId() = default;
   // Takes a wide signed number so that negative input is caught, not wrapped.
   explicit VlanId( S64 value );

   constexpr U16 value() const { return value_; }
   U32 hash() const;

   friend constexpr bool operator==( VlanId, VlanId ) = default;
   friend constexpr auto operator<=>( VlanId, VlanId ) = default;

 private:
   U16 value_ = min;
};

std::string valueToStrep( VlanId v );
VlanId parseStrep( std::string_view text, ValueType<VlanId> );
std::ostream& operator<<( std::ostream& os, VlanId v );

}  // namespace Pylon
