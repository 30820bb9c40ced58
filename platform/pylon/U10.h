// A 10-bit unsigned number, 0 to 0x3FF: the width of a port number of a chip.
//
// Invariant: value() <= max. Construction outside the range throws
// Vesper::RangeException "U10::value < 0 or > 0x03ff not allowed".
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Pylon {

class U10 {
 public:
   static constexpr U16 min = 0;
   static constexpr U16 max = 0x03ff;

   constexpr U10() = default;
   explicit U10( S64 value );

   constexpr U16 value() const { return value_; }
   U32 hash() const;

   friend constexpr bool operator==( U10, U10 ) = default;
   friend constexpr auto operator<=>( U10, U10 ) = default;

 private:
   U16 value_ = 0;
};

std::string valueToStrep( U10 v );
U10 parseStrep( std::string_view text, ValueType<U10> );
std::ostream& operator<<( std::ostream& os, U10 v );

}  // namespace Pylon
