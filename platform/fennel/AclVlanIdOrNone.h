// The VLAN of an ACL instance: 0 for none (a port ACL), 1 to 4094 for a
// router ACL on that VLAN, or vlanSharingId() (4095) for a router ACL shared
// by VLANs.
//
// Invariant: value() <= vlanSharingId(); construction above it throws
// Vesper::RangeException
// "AclVlanIdOrNone::value > AclVlanIdOrNone::vlanSharingId not allowed".
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Fennel {

using Pylon::strepToValue;

class AclVlanIdOrNone {
 public:
   static constexpr U16 none = 0;
   static constexpr U16 vlanSharingId() { return 0xFFF; }

   constexpr AclVlanIdOrNone() = default;
   // Takes a wide number so that out-of-range input is caught, not wrapped.
   explicit AclVlanIdOrNone( U64 value );

   constexpr U16 value() const { return value_; }
   constexpr bool isNone() const { return value_ == none; }
   constexpr bool isShared() const { return value_ == vlanSharingId(); }
   U32 hash() const;

   friend constexpr bool operator==( AclVlanIdOrNone, AclVlanIdOrNone ) = default;
   friend constexpr auto operator<=>( AclVlanIdOrNone, AclVlanIdOrNone ) = default;

 private:
   U16 value_ = none;
};

std::string valueToStrep( AclVlanIdOrNone v );
AclVlanIdOrNone parseStrep( std::string_view text, Pylon::ValueType<AclVlanIdOrNone> );
std::ostream& operator<<( std::ostream& os, AclVlanIdOrNone v );

}  // namespace Fennel
