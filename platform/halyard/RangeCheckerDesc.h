// The key of a range checker: the first and last value of an L4 port or IP
// length range, and what is compared. Three 32-bit words in this order:
// low, high, type.
//
// Equal subrule ranges share one checker through this key. Ordering is by
// low, high, type; hash() is the one-at-a-time hash over the three words,
// each least significant byte first.
//
// Text:
//   Value('Halyard::RangeCheckerDesc', ** {'low': 1024, 'high': 65535, 'type': 2})
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace Halyard {

using Pylon::strepToValue;

// Values of RangeCheckerDesc::type().
inline constexpr U32 rangeCheckerSrcPort = 1;
inline constexpr U32 rangeCheckerDstPort = 2;
inline constexpr U32 rangeCheckerIpLength = 0x100;

class RangeCheckerDesc {
 public:
   constexpr RangeCheckerDesc() = default;
   constexpr RangeCheckerDesc( U32 low, U32 high, U32 type )
       : low_( low ), high_( high ), type_( type ) {}

   constexpr U32 low() const { return low_; }
   constexpr U32 high() const { return high_; }
   constexpr U32 type() const { return type_; }
   U32 hash() const;

   friend constexpr bool operator==( const RangeCheckerDesc&, const RangeCheckerDesc& ) = default;
   friend constexpr auto operator<=>( const RangeCheckerDesc&, const RangeCheckerDesc& ) = default;

 private:
   U32 low_ = 0;
   U32 high_ = 0;
   U32 type_ = 0;
};

std::string valueToStrep( const RangeCheckerDesc& desc );
RangeCheckerDesc parseStrep( std::string_view text, Pylon::ValueType<RangeCheckerDesc> );
std::ostream& operator<<( std::ostream& os, const RangeCheckerDesc& desc );

}  // namespace Halyard
