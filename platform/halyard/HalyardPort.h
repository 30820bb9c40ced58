// A port of one chip: unit (chip number) and port number in one 32-bit
// value, unit in the low 16 bits and port in the high 16 bits.
//
// Ordering is by unit, then port. Text:
//   Value('HalyardTypes::HalyardPort', ** {'unit': 0, 'port': 5})
// A unit or port above 0xFFFF throws Vesper::RangeException.
#pragma once

#include <compare>
#include <string>
#include <string_view>

#include "platform/pylon/ValueText.h"
#include "platform/vesper/Types.h"

namespace HalyardTypes {

using Pylon::strepToValue;

class HalyardPort {
 public:
   constexpr HalyardPort() = default;
   HalyardPort( U32 unit, U32 port );
   static constexpr HalyardPort fromValue( U32 value ) { return HalyardPort( Packed{}, value ); }

   constexpr U32 unit() const { return value_ & 0xFFFF; }
   constexpr U32 port() const { return value_ >> 16; }
   // The packed form.
   constexpr U32 value() const { return value_; }
   U32 hash() const;

   friend constexpr bool operator==( HalyardPort, HalyardPort ) = default;
   friend constexpr std::strong_ordering operator<=>( HalyardPort a, HalyardPort b ) {
      if ( auto c = a.unit() <=> b.unit(); c != 0 ) {
         return c;
      }
      return a.port() <=> b.port();
   }

 private:
   struct Packed {};
   constexpr HalyardPort( Packed, U32 value ) : value_( value ) {}

   U32 value_ = 0;
};

std::string valueToStrep( HalyardPort port );
HalyardPort parseStrep( std::string_view text, Pylon::ValueType<HalyardPort> );
std::ostream& operator<<( std::ostream& os, HalyardPort port );

}  // namespace HalyardTypes
