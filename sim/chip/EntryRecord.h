// Internal to the chip model: what it keeps per entry, and the compiled image of an entry that
// stands in hardware.
//
// An entry has two faces, as on the real field processor. The software face (qualifiers,
// actions, range checkers, UDF data) is what the programming calls write and the reads answer.
// The hardware face, `image`, is compiled from it by an install and is what the lookup sees;
// later writes leave it alone until the entry is installed again. Priority, ordinal and the
// enabled flag act on the hardware at once, as the SDK moves or validates the TCAM row.
//
// Invariants:
//   1. image is set if and only if installed.
//   2. pending is true when the software face changed since the last install.
//   3. Every range checker and UDF chunk named in the software face exists in the unit's pools
//      and counts this entry once per reference in its use count.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <vector>

#include "platform/vesper/Types.h"
#include "sim/chip/ChipResources.h"
#include "sim/chip/ChipTypes.h"
#include "sim/chip/EntryValues.h"
#include "sim/chip/KeyLayout.h"
#include "sim/chip/PortBitmap.h"

namespace Sim {

struct ActionValue {
   ActionParams params;
   PortBitmap ports;  // for port actions
};

// One (word, mask, value) test of the key: (key.words[word] & mask) == value.
struct MatchTerm {
   U8 word;
   U64 mask;
   U64 value;
};

struct UdfTerm {
   UdfChunk chunk;
   UdfValue value;
};

// The actions of an entry, compiled by family.
struct ActionImage {
   enum class Cpu : U8 { None, Copy, Cancel };
   bool drop = false;
   Cpu cpu = Cpu::None;
   std::optional<U32> cpuMatchId;
   std::optional<U32> cpuQueue;
   std::optional<U32> internalPriority;
   std::optional<U32> mirror;
   std::optional<U32> sourceClass;
   std::optional<PortBitmap> egressMask;
};

struct EntryImage {
   std::vector<MatchTerm> terms;  // most mask bits first: the likeliest to refuse a packet
   bool neverMatches = false;     // two qualifiers demand different values of one key bit
   std::optional<PortBitmap> refusedPorts;  // InPorts: mask and not data
   U64 rangeRequired = 0;                   // one bit per range checker id - 1
   U64 rangeInvert = 0;
   std::vector<UdfTerm> udf;
   ActionImage actions;
};

struct EntryRecord {
   EntryId id = 0;
   GroupId group = 0;
   U32 priority = 0;
   U64 ordinal = 0;

   std::map<QualId, QualValue> quals;
   std::optional<InPortsValue> inPorts;
   std::vector<RangeCheckRef> ranges;
   std::map<UdfId, UdfValue> udf;
   std::map<ActionId, ActionValue> actions;

   bool installed = false;
   bool enabled = false;
   bool pending = false;
   // A change waits in its group's indexPending for the next lookup by index.
   bool indexQueued = false;
   U64 hits = 0;
   std::optional<EntryImage> image;
};

// Compiles the software face of `e` into what the lookup matches.
EntryImage compileEntry( const EntryRecord& e, const UdfChunks& chunks );

}  // namespace Sim
