// The fuzz targets of the tool's readers: the configuration language, JSON-lines packets and
// captures. Each takes one input and returns its finding: empty when the input was handled as it
// must be (read, or refused with a located error), otherwise what went wrong. Crashes, leaks and
// undefined behaviour are the sanitizers' to find.
//
// Beyond not crashing, each checks a round trip on what it reads:
//   config   written back as text, it reads to the same configuration, and writes the same text
//   json     each packet written as JSON reads back the same, and its frame decodes the same
//   capture  each packet's frame, written again, decodes to the same packet
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "platform/vesper/Types.h"

namespace HalyardFuzz {

std::string configText( std::span<const U8> input );
std::string jsonPackets( std::span<const U8> input );
std::string capturePackets( std::span<const U8> input );

struct Target {
   const char* name;  // also the folder of its seeds under tests/fuzz/corpus
   std::string ( *run )( std::span<const U8> );
};

inline constexpr Target kTargets[] = {
    { "config", configText }, { "json", jsonPackets }, { "capture", capturePackets } };

}  // namespace HalyardFuzz
