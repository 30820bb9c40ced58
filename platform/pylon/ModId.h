// The module id of a chip: the number by which a chip and its ports are
// known in a system of several chips.
//
// Module ids run from min (0) to 254; null (255) is the value of no module
// and the default. Invariant: min <= value() <= null. Construction outside it
// throws Vesper::RangeException
// "ModId::value < ModId::min or > ModId::null not allowed".
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class ModId {
 public:
   static constexpr U16 min = 0;
   static constexpr U16 null = 255;

   constexpr ModId() = default;
   explicit ModId( S64 value );

   constexpr U16 value() const { return value_; }
   constexpr bool isNull() const { return value_ == null; }
   U32 hash() const;

   friend constexpr bool operator==( ModId, ModId ) = default;
   friend constexpr auto operator<=>( ModId, ModId ) = default;

 private:
   U16 value_ = null;
};

// Decimal; the text of a chip in unit errors is this number.
std::string valueToStrep( ModId v );
ModId parseStrep( std::string_view text, ValueType<ModId> );
std::ostream& operator<<( std::ostream& os, ModId v );

}  // namespace Pylon
