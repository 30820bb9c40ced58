// Text forms shared by the value types of the platform.
//
// Numbers: parseUnsigned and parseSigned accept the whole text or nothing
// (no sign on unsigned, no spaces, no trailing characters); hexadecimal
// after "0x" or "0X".
//
// Records: a record value prints as
//    Value('Ns::Type', ** {'a': 1, 'b': name, 'c': 'quoted text'})
// ValueTextWriter builds that form. ValueTextReader takes it apart literal
// by literal: each piece ("Value('Ns::Type', ** {", "'a': ", ", 'b': ",
// "})") must stand where it is expected, else ParseException names the
// literal; an attribute whose text does not parse is reported under the
// attribute's name. Range errors of attribute values pass through as the
// RangeException they are. An attribute's text is a quoted text, a list or
// map in brackets, or a plain value, which runs to the first ',', ' ', '}'
// or ')'.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/vesper/Exception.h"
#include "platform/vesper/Types.h"

namespace Pylon {

// strepToValue< T >( text ) is the parser of every value type. A type
// declares, in its own namespace, `T parseStrep( std::string_view,
// ValueType< T > )`, which argument-dependent lookup finds through the tag;
// the other layers re-export the template (`using Pylon::strepToValue;`).
template <typename T>
struct ValueType {};

template <typename T>
T strepToValue( std::string_view text ) {
   return parseStrep( text, ValueType<T>{} );
}

std::optional<U64> parseUnsigned( std::string_view text );
std::optional<S64> parseSigned( std::string_view text );

// Single-quoted, with ' and \ escaped by a backslash.
std::string quoteText( std::string_view text );
// The inverse of quoteText; nullopt unless the whole text is one quoted string.
std::optional<std::string> unquoteText( std::string_view text );

inline std::string_view boolText( bool b ) {
   return b ? "True" : "False";
}
std::optional<bool> parseBool( std::string_view text );

class ValueTextWriter {
 public:
   explicit ValueTextWriter( std::string_view typeName );
   ValueTextWriter& attribute( std::string_view name, std::string_view valueText );
   std::string done();

 private:
   std::string text_;
   bool first_ = true;
};

class ValueTextReader {
 public:
   // Throws ParseException unless text begins with the header literal.
   ValueTextReader( std::string_view text, std::string_view typeName );

   // The raw text of the next attribute, which must be `name`.
   std::string_view attribute( std::string_view name );

   // The next attribute, converted by `parse`; a ParseException from
   // `parse` is reported under the attribute's name.
   template <typename Parse>
   auto attribute( std::string_view name, Parse parse ) -> decltype( parse( name ) ) {
      std::string_view raw = attribute( name );
      try {
         return parse( raw );
      } catch ( const Vesper::ParseException& e ) {
         failAttribute( name, raw, e.what() );
      }
   }

   // Throws ParseException unless the closing literal ends the text.
   void end();

   [[noreturn]] void failAttribute( std::string_view name, std::string_view raw,
                                    std::string_view why ) const;

 private:
   void expect( std::string_view literal );

   std::string_view text_;
   std::string typeName_;
   std::size_t pos_ = 0;
   bool first_ = true;
};

}  // namespace Pylon
