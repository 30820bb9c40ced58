// The text form of a value, as the runtime's messages show it.
//
// A value type that provides valueToStrep(value) (found by argument-dependent
// lookup) is shown through it; counted text as its characters; integers in
// decimal (U8 too, not as a character); bool as "true"/"false"; pointers as
// their address in hexadecimal ("0x0" for null); anything else that streams,
// through operator<<.
#pragma once

#include <concepts>
#include <sstream>
#include <string>
#include <type_traits>

#include "platform/vesper/Ptr.h"
#include "platform/vesper/String.h"

namespace Vesper {

std::string addressText( const void* p );

template <class T>
concept HasValueToStrep = requires( const T& v ) {
   { valueToStrep( v ) } -> std::convertible_to<std::string>;
};

template <class T>
concept Streamable = requires( std::ostream& os, const T& v ) {
   os << v;
};

template <class T>
std::string valueText( const T& value ) {
   if constexpr ( HasValueToStrep<T> ) {
      return std::string( valueToStrep( value ) );
   } else if constexpr ( std::is_same_v<T, bool> ) {
      return value ? "true" : "false";
   } else if constexpr ( std::is_integral_v<T> ) {
      return std::to_string( +value );
   } else if constexpr ( std::is_base_of_v<CountedText, T> ) {
      return value.str();
   } else if constexpr ( std::is_pointer_v<T> ) {
      return addressText( value );
   } else if constexpr ( requires { value.ptr(); } ) {
      return addressText( value.ptr() );
   } else {
      static_assert( Streamable<T>, "valueText needs valueToStrep, a pointer or operator<<" );
      std::ostringstream os;
      os << value;
      return os.str();
   }
}

}  // namespace Vesper
