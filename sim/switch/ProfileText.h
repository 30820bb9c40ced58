// The text form of a switch profile: one directive a line, read top to bottom, so that every
// name is defined before it is used. sim/switch/README.md describes the directives and
// examples/switches/default.switch is a commented example.
//
// Contract:
//   1. parseProfile answers a complete profile or throws ProfileError naming the file, the
//      line and what is wrong there; there is no partly read profile.
//   2. profileText writes a profile in the canonical form: parseProfile( profileText( p ) )
//      equals p.
#pragma once

#include <string>
#include <string_view>

#include "sim/switch/SwitchProfile.h"

namespace Sim {

// `fileName` is what errors name; the text need not come from a file.
SwitchProfile parseProfile( std::string_view text, const std::string& fileName );
// Reads and parses the file at `path`; a file that cannot be read is a ProfileError at line 0.
SwitchProfile readProfileFile( const std::string& path );
std::string profileText( const SwitchProfile& profile );

}  // namespace Sim
