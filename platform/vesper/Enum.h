// Text names of enumerations.
//
// An enumeration registers its names once, beside its declaration, by
// declaring in its own namespace a function that argument-dependent lookup
// finds:
//
//    inline constexpr Vesper::EnumName< Colour > colourNames[] = {
//       { red, "red" }, { green, "green" } };
//    constexpr Vesper::EnumNames< Colour > vesperEnumNames( Colour ) {
//       return { "Paint::Colour", colourNames };
//    }
//
// Contract:
//  1. stringValue( e ) is the registered name of e. A value without a name
//     (enumerations here have stable numbers, and some carry values beyond
//     their named ones) prints as its number in decimal.
//  2. sequenceToValue< E >( text ) accepts every text that stringValue can
//     give: a registered name, or a decimal number that fits the underlying
//     type. Anything else throws Vesper::ParseException naming the type.
//  3. Names are matched exactly (case and all); a name registered twice
//     resolves to its first value.
#pragma once

#include <charconv>
#include <concepts>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace Vesper {

template <typename E>
struct EnumName {
   E value;
   std::string_view name;
};

// The registration of one enumeration: its qualified type name, used in
// error texts, and its names in any order.
template <typename E>
struct EnumNames {
   std::string_view typeName;
   std::span<const EnumName<E> > names;
};

template <typename E>
concept NamedEnum = std::is_enum_v<E> && requires( E e ) {
   { vesperEnumNames( e ) } -> std::convertible_to<EnumNames<E> >;
};

template <NamedEnum E>
constexpr EnumNames<E> enumNames() {
   return vesperEnumNames( E{} );
}

template <NamedEnum E>
constexpr std::string_view enumTypeName() {
   return enumNames<E>().typeName;
}

template <NamedEnum E>
std::string stringValue( E e ) {
   for ( const auto& entry : enumNames<E>().names ) {
      if ( entry.value == e ) {
         return std::string( entry.name );
      }
   }
   return std::to_string( static_cast<std::underlying_type_t<E> >( e ) );
}

[[noreturn]] void throwEnumParseError( std::string_view typeName, std::string_view text );

template <NamedEnum E>
E sequenceToValue( std::string_view text ) {
   for ( const auto& entry : enumNames<E>().names ) {
      if ( entry.name == text ) {
         return entry.value;
      }
   }
   using Underlying = std::underlying_type_t<E>;
   Underlying number{};
   const char* end = text.data() + text.size();
   auto [ptr, ec] = std::from_chars( text.data(), end, number, 10 );
   if ( text.empty() || ec != std::errc() || ptr != end ) {
      throwEnumParseError( enumTypeName<E>(), text );
   }
   return static_cast<E>( number );
}

}  // namespace Vesper
