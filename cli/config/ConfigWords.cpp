#include "cli/config/ConfigWords.h"

#include "platform/pylon/ValueText.h"

namespace HalyardCli::ConfigText {

void fail( std::string message ) {
   throw LineError{ std::move( message ) };
}

std::string quoted( std::string_view word ) {
   return "'" + std::string( word ) + "'";
}

std::vector<std::string_view> splitWords( std::string_view line ) {
   std::vector<std::string_view> words;
   std::size_t i = 0;
   auto blank = []( char c ) { return c == ' ' || c == '\t' || c == '\r'; };
   while ( i < line.size() ) {
      while ( i < line.size() && blank( line[i] ) ) {
         ++i;
      }
      const std::size_t start = i;
      while ( i < line.size() && !blank( line[i] ) ) {
         ++i;
      }
      if ( i > start ) {
         words.push_back( line.substr( start, i - start ) );
      }
   }
   return words;
}

bool WordCursor::takeIf( std::string_view word ) {
   if ( atEnd() || words_[next_] != word ) {
      return false;
   }
   ++next_;
   return true;
}

std::string_view WordCursor::take( std::string_view what, std::string_view expected ) {
   if ( atEnd() ) {
      fail( "missing " + std::string( what ) + ": expected " + std::string( expected ) );
   }
   return words_[next_++];
}

void WordCursor::expectEnd( std::string_view expected ) const {
   if ( !atEnd() ) {
      fail( "unexpected " + quoted( peek() ) + ": expected " + std::string( expected ) );
   }
}

std::string_view WordCursor::rest( std::string_view line ) const {
   if ( atEnd() ) {
      return {};
   }
   // Words are views into the line, so the rest starts where the next word does.
   const std::size_t start = static_cast<std::size_t>( words_[next_].data() - line.data() );
   std::string_view tail = line.substr( start );
   while ( !tail.empty() && ( tail.back() == ' ' || tail.back() == '\t' || tail.back() == '\r' ) ) {
      tail.remove_suffix( 1 );
   }
   return tail;
}

std::optional<U64> numberOf( std::string_view word ) {
   return Pylon::parseUnsigned( word );
}

bool isNumber( std::string_view word ) {
   return numberOf( word ).has_value();
}

U64 numberIn( std::string_view word, U64 min, U64 max, std::string_view what ) {
   const auto n = numberOf( word );
   if ( !n && !word.empty() && word.find_first_not_of( "0123456789" ) == std::string_view::npos ) {
      fail( std::string( what ) + " " + std::string( word ) + " is out of range: expected " +
            std::to_string( min ) + " to " + std::to_string( max ) );
   }
   if ( !n ) {
      fail( quoted( word ) + " is not a number: expected " + std::string( what ) );
   }
   if ( *n < min || *n > max ) {
      fail( std::string( what ) + " " + std::string( word ) + " is out of range: expected " +
            std::to_string( min ) + " to " + std::to_string( max ) );
   }
   return *n;
}

}  // namespace HalyardCli::ConfigText
