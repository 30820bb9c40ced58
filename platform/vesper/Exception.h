// Exceptions of the object runtime. Nothing in the library catches them: an
// attribute collision or an out-of-range value is a programming error of the
// caller, reported with an exact text.
#pragma once

#include <stdexcept>
#include <string>

namespace Vesper {

class Exception : public std::runtime_error {
 public:
   explicit Exception( const std::string& text ) : std::runtime_error( text ) {}
};

// A value outside its allowed range, or an index space that is used up.
class RangeException : public Exception {
 public:
   using Exception::Exception;
};

// A keyed creator found a member whose constructor parameter differs.
class NameInUseException : public Exception {
 public:
   using Exception::Exception;
};

// Text that does not parse as the value it should describe.
class ParseException : public Exception {
 public:
   using Exception::Exception;
};

}  // namespace Vesper
