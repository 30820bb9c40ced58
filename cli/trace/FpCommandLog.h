// HalyardCli::FpCommandLog: the field-processor commands that the back-end writes on the trace
// handle Halyard::bcmFpCmd ("fp qual ...", "fp action add ...", "fp entry install ..."), taken
// while the log lives, each with the unit it programmed.
//
// The lines name an entry but no unit, and entry numbers repeat from unit to unit. A line is
// written right after the SDK call it stands for, so the unit is the one whose chip holds that
// entry and changed it since the entry's last line: the log compares each unit's dump of the
// entry with the one it saw last. Where no unit's entry changed (a value given again as it
// stood), the unit of the line before, which programmed the same subrule, is taken.
//
// Contract:
//   1. While it lives, level 0 of Halyard::bcmFpCmd is on and the lines go to this log; lines
//      of other handles that the environment switched on go to stderr as they would.
//   2. Destruction puts back the default sink and the handle's level as it found it.
//   3. One log at a time.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/vesper/Trace.h"
#include "platform/vesper/Types.h"
#include "sim/switch/SimSwitch.h"

namespace HalyardCli {

class FpCommandLog {
 public:
   struct Line {
      U32 unit = 0;
      std::string text;
      bool note = false;  // the log's own, not the back-end's
   };

   explicit FpCommandLog( const Sim::SimSwitch& sim );
   ~FpCommandLog();
   FpCommandLog( const FpCommandLog& ) = delete;
   FpCommandLog& operator=( const FpCommandLog& ) = delete;

   const std::vector<Line>& lines() const { return lines_; }
   // A note among the lines of every unit, such as where a pass begins.
   void noteIs( const std::string& note );

 private:
   void take( const Vesper::TraceHandle& handle, int level, std::string_view line );
   U32 unitOf( U64 entry );

   const Sim::SimSwitch& sim_;
   bool wasOn_;
   std::vector<Line> lines_;
   std::map<std::pair<U32, U64>, std::string> seen_;  // each entry's dump at its last line
   std::optional<U32> lastUnit_;
};

// The entry number of a field-processor command line; nullopt for any other line.
std::optional<U64> fpCommandEntry( std::string_view line );

}  // namespace HalyardCli
