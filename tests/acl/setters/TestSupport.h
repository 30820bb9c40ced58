// Small helpers shared by the setter tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace AclSettersTest {

// The trace handle of the setters' sources.
inline constexpr const char* setterTraceHandle = "Halyard::AclHelper";

// A regular expression (as death tests take it) for the line of a failed
// assertion on `expr`, the expression's text exactly.
std::string assertionFailure( std::string_view expr );
// The same for the fatal line of a checked SDK call that failed.
std::string sdkCheckFailure( std::string_view call );

// The expressions of the checked SDK calls among trace lines of the form
// "<file>:<line> <expr> (rc:<code>)", in order.
std::vector<std::string> checkedCalls( const std::vector<std::string>& lines );

// The lines that start with `prefix`.
std::vector<std::string> linesStartingWith( const std::vector<std::string>& lines,
                                            std::string_view prefix );

}  // namespace AclSettersTest
