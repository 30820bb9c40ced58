// Allocation counts for the benchmarks of halyard-bench: this binary replaces the global
// operator new and delete (AllocHook.cpp) with forms that count every allocation and keep the
// bytes that stand allocated, so that a benchmark can say what an operation allocates.
//
// Contract:
//   1. Every allocation through the replaced operators counts, from any thread, from process
//      start: the counts only grow, the live bytes go up and down. Read them before and after
//      the work and take the difference.
//   2. Live bytes are malloc's usable sizes (what the allocator really holds for each block,
//      its own headers aside), so that a block counts the same when made and when freed.
//   3. The aligned forms (std::align_val_t) are the library's own and are not counted; nothing
//      measured here uses over-aligned types.
//   4. malloc called directly (C libraries, libpcap) is not counted.
#pragma once

#include <cstdint>

namespace HalyardBench {

struct AllocCounts {
   std::uint64_t allocations = 0;  // operator new calls, since process start
   std::int64_t liveBytes = 0;     // bytes allocated through operator new and not yet freed
};

AllocCounts allocCounts();

}  // namespace HalyardBench
