#include "platform/pylon/ValueText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace Pylon {

namespace {

template <typename T>
std::optional<T> parseWhole( std::string_view text, int base ) {
   T value{};
   const char* end = text.data() + text.size();
   auto [ptr, ec] = std::from_chars( text.data(), end, value, base );
   if ( text.empty() || ec != std::errc() || ptr != end ) {
      return std::nullopt;
   }
   return value;
}

bool hasHexPrefix( std::string_view text ) {
   return text.size() > 2 && text[0] == '0' && ( text[1] == 'x' || text[1] == 'X' );
}

}  // namespace

std::optional<U64> parseUnsigned( std::string_view text ) {
   if ( hasHexPrefix( text ) ) {
      return parseWhole<U64>( text.substr( 2 ), 16 );
   }
   return parseWhole<U64>( text, 10 );
}

std::optional<S64> parseSigned( std::string_view text ) {
   bool negative = !text.empty() && text[0] == '-';
   std::optional<U64> magnitude = parseUnsigned( negative ? text.substr( 1 ) : text );
   if ( !magnitude ) {
      return std::nullopt;
   }
   constexpr U64 maxPositive = static_cast<U64>( INT64_MAX );
   if ( negative ) {
      if ( *magnitude > maxPositive + 1 ) {
         return std::nullopt;
      }
      return static_cast<S64>( 0 - *magnitude );
   }
   if ( *magnitude > maxPositive ) {
      return std::nullopt;
   }
   return static_cast<S64>( *magnitude );
}

std::string quoteText( std::string_view text ) {
   std::string out = "'";
   for ( char c : text ) {
      if ( c == '\'' || c == '\\' ) {
         out += '\\';
      }
      out += c;
   }
   out += '\'';
   return out;
}

std::optional<std::string> unquoteText( std::string_view text ) {
   if ( text.size() < 2 || text.front() != '\'' || text.back() != '\'' ) {
      return std::nullopt;
   }
   std::string out;
   for ( std::size_t i = 1; i + 1 < text.size(); ++i ) {
      char c = text[i];
      if ( c == '\'' ) {
         return std::nullopt;
      }
      if ( c == '\\' ) {
         if ( i + 2 >= text.size() ) {
            return std::nullopt;
         }
         c = text[++i];
      }
      out += c;
   }
   return out;
}

std::optional<bool> parseBool( std::string_view text ) {
   if ( text == "True" ) {
      return true;
   }
   if ( text == "False" ) {
      return false;
   }
   return std::nullopt;
}

ValueTextWriter::ValueTextWriter( std::string_view typeName ) {
   text_ = "Value('";
   text_ += typeName;
   text_ += "', ** {";
}

ValueTextWriter& ValueTextWriter::attribute( std::string_view name, std::string_view valueText ) {
   text_ += first_ ? "'" : ", '";
   text_ += name;
   text_ += "': ";
   text_ += valueText;
   first_ = false;
   return *this;
}

std::string ValueTextWriter::done() {
   return text_ + "})";
}

ValueTextReader::ValueTextReader( std::string_view text, std::string_view typeName )
    : text_( text ), typeName_( typeName ) {
   expect( "Value('" + typeName_ + "', ** {" );
}

void ValueTextReader::expect( std::string_view literal ) {
   if ( text_.substr( pos_, literal.size() ) != literal ) {
      throw Vesper::ParseException( typeName_ + ": expected \"" + std::string( literal ) +
                                    "\" at offset " + std::to_string( pos_ ) + " of \"" +
                                    std::string( text_ ) + "\"" );
   }
   pos_ += literal.size();
}

std::string_view ValueTextReader::attribute( std::string_view name ) {
   expect( std::string( first_ ? "'" : ", '" ) + std::string( name ) + "': " );
   first_ = false;
   std::size_t start = pos_;
   std::size_t stop;
   if ( pos_ < text_.size() && text_[pos_] == '\'' ) {
      // A quoted value runs to its closing quote, whatever it holds.
      stop = pos_ + 1;
      while ( stop < text_.size() && text_[stop] != '\'' ) {
         stop += text_[stop] == '\\' ? 2 : 1;
      }
      stop = std::min( stop + 1, text_.size() );
   } else if ( pos_ < text_.size() && ( text_[pos_] == '[' || text_[pos_] == '{' ) ) {
      // A list or map runs to its matching bracket.
      int depth = 0;
      for ( stop = pos_; stop < text_.size(); ++stop ) {
         char c = text_[stop];
         depth += ( c == '[' || c == '{' ) ? 1 : ( c == ']' || c == '}' ) ? -1 : 0;
         if ( depth == 0 ) {
            ++stop;
            break;
         }
      }
   } else {
      // A plain value (a name, a number, an interface) holds none of these.
      stop = std::min( text_.find_first_of( ", })", pos_ ), text_.size() );
   }
   pos_ = stop;
   return text_.substr( start, stop - start );
}

void ValueTextReader::end() {
   expect( "})" );
   if ( pos_ != text_.size() ) {
      throw Vesper::ParseException( typeName_ + ": unexpected text after \"})\" in \"" +
                                    std::string( text_ ) + "\"" );
   }
}

void ValueTextReader::failAttribute( std::string_view name, std::string_view raw,
                                     std::string_view why ) const {
   throw Vesper::ParseException( typeName_ + ": cannot parse attribute \"" + std::string( name ) +
                                 "\" from '" + std::string( raw ) + "': " + std::string( why ) );
}

}  // namespace Pylon
