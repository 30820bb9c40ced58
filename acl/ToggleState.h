// Feature toggles as the back-end reads them: named yes-or-no switches of the
// agent, each with a default that holds until someone sets it.
//
// getToggleState( name, default ) answers the value set for `name`, or
// `default` when none is set. The back-end reads a toggle that shapes
// hardware it programs once (bring-up) through toggleStateOnce(): the first
// answer for a name is kept for the rest of the process, so that entries
// programmed later agree with those programmed at bring-up even if the
// toggle changes meanwhile.
//
// toggleStateIs() and toggleStateDel() are how the agent's toggle source (or
// the tool, or a test) sets a toggle. ToggleTestAccess::onceCacheClear()
// forgets the kept answers, so that a test can bring the back-end up again
// under another setting.
//
// Threads: any; the table and the kept answers are guarded.
#pragma once

#include <string_view>

namespace Halyard {

bool getToggleState( std::string_view name, bool defaultValue );

void toggleStateIs( std::string_view name, bool value );
void toggleStateDel( std::string_view name );

// getToggleState( name, defaultValue ) on the first call for `name` in the
// process; that same answer on every later call.
bool toggleStateOnce( std::string_view name, bool defaultValue );

struct ToggleTestAccess {
   static void onceCacheClear();
};

}  // namespace Halyard
