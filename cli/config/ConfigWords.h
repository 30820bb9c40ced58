// Internal to the configuration reader: the words of one line, taken one by one, and the
// failure that ends the reading of a line.
//
// Every message says what is wrong and what was expected; the reader adds FILE:LINE:.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/vesper/Types.h"

namespace HalyardCli::ConfigText {

// What is wrong with the line being read. Caught by the line loop, which records it and goes
// on with the next line.
struct LineError {
   std::string message;
};

[[noreturn]] void fail( std::string message );

// "'word'", for messages.
std::string quoted( std::string_view word );

// The words of a line, split at blanks.
std::vector<std::string_view> splitWords( std::string_view line );

class WordCursor {
 public:
   explicit WordCursor( std::vector<std::string_view> words ) : words_( std::move( words ) ) {}

   bool atEnd() const { return next_ >= words_.size(); }
   // The next word, or "" at the end.
   std::string_view peek() const { return atEnd() ? std::string_view() : words_[next_]; }
   std::string_view peekAfter() const {
      return next_ + 1 < words_.size() ? words_[next_ + 1] : std::string_view();
   }
   // Takes the next word if it is `word`.
   bool takeIf( std::string_view word );
   // Takes the next word; at the end fails with "missing WHAT: expected EXPECTED".
   std::string_view take( std::string_view what, std::string_view expected );
   // Fails with "unexpected 'word': expected EXPECTED" unless the line is done.
   void expectEnd( std::string_view expected ) const;
   // The rest of the line from the next word on, as written (blanks between words kept).
   std::string_view rest( std::string_view line ) const;

 private:
   std::vector<std::string_view> words_;
   std::size_t next_ = 0;
};

// A plain number (decimal, or hexadecimal after 0x), or nullopt.
std::optional<U64> numberOf( std::string_view word );
bool isNumber( std::string_view word );
// A number in [min, max]. Fails with "'word' is not a number: expected WHAT" or
// "WHAT N is out of range: expected MIN to MAX".
U64 numberIn( std::string_view word, U64 min, U64 max, std::string_view what );

}  // namespace HalyardCli::ConfigText
