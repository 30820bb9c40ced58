// Counted, immutable text: Vesper::String for values, Vesper::Name for names.
//
// A copy shares the characters and costs one count change, so text can be
// passed and stored by value freely. The two types are distinct so that a
// name is not passed where a value is meant, but they compare with each other
// and with any standard text. An empty text holds no storage.
#pragma once

#include <compare>
#include <concepts>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/vesper/Hash.h"
#include "platform/vesper/Types.h"

namespace Vesper {

class CountedText {
 public:
   CountedText() = default;
   CountedText( std::string_view text );
   CountedText( const char* text ) : CountedText( std::string_view( text ) ) {}
   CountedText( const std::string& text ) : CountedText( std::string_view( text ) ) {}

   const std::string& str() const { return text_ ? *text_ : emptyText(); }
   operator const std::string&() const { return str(); }
   std::string_view view() const { return str(); }
   const char* c_str() const { return str().c_str(); }
   size_t size() const { return str().size(); }
   bool empty() const { return !text_; }
   U32 hash() const { return textHash( view() ); }

   friend bool operator==( const CountedText& a, const CountedText& b ) {
      return a.text_ == b.text_ || a.view() == b.view();
   }
   friend std::strong_ordering operator<=>( const CountedText& a, const CountedText& b ) {
      return a.view() <=> b.view();
   }
   // Standard text compares without building a counted copy.
   template <class S>
   requires std::convertible_to<const S&, std::string_view> &&
       (!std::derived_from<S, CountedText>)friend bool
       operator==( const CountedText& a, const S& b ) {
      return a.view() == std::string_view( b );
   }
   template <class S>
   requires std::convertible_to<const S&, std::string_view> &&
       (!std::derived_from<S, CountedText>)friend std::strong_ordering
       operator<=>( const CountedText& a, const S& b ) {
      return a.view() <=> std::string_view( b );
   }

 private:
   static const std::string& emptyText();
   std::shared_ptr<const std::string> text_;
};

std::ostream& operator<<( std::ostream& os, const CountedText& text );

// A text value.
class String : public CountedText {
 public:
   using CountedText::CountedText;
};

// The name of an object or an attribute.
class Name : public CountedText {
 public:
   using CountedText::CountedText;
};

}  // namespace Vesper

template <>
struct std::hash<Vesper::String> {
   size_t operator()( const Vesper::String& s ) const { return s.hash(); }
};
template <>
struct std::hash<Vesper::Name> {
   size_t operator()( const Vesper::Name& s ) const { return s.hash(); }
};
