// Helpers shared by the vocabulary tests.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/vesper/Exception.h"

namespace VocabTest {

// Runs `f` and checks that it throws exactly E with exactly `text`.
template <typename E>
void expectThrowText( const std::function<void()>& f, const std::string& text ) {
   try {
      f();
      ADD_FAILURE() << "no exception; expected \"" << text << "\"";
   } catch ( const E& e ) {
      EXPECT_EQ( text, e.what() );
   } catch ( const std::exception& e ) {
      ADD_FAILURE() << "wrong exception type: " << e.what();
   }
}

// Runs `f` and returns the text of the ParseException it throws.
inline std::string parseErrorText( const std::function<void()>& f ) {
   try {
      f();
   } catch ( const Vesper::ParseException& e ) {
      return e.what();
   }
   ADD_FAILURE() << "no ParseException";
   return "";
}

}  // namespace VocabTest
