// Matchers shared by the shim's tests.
#pragma once

#include <gmock/gmock.h>

#include <string>

namespace ShimTest {

// Output that holds `line` as a whole line, and `later` somewhere after it.
MATCHER_P2( HasLineThen, line, later,
            "has the line \"" + std::string( line ) + "\" followed by \"" + std::string( later ) +
                "\"" ) {
   const std::string text = "\n" + std::string( arg );
   const std::size_t at = text.find( "\n" + std::string( line ) + "\n" );
   return at != std::string::npos &&
          text.find( std::string( later ), at + std::string( line ).size() ) != std::string::npos;
}

}  // namespace ShimTest
