#!/usr/bin/env bash
# Fuzzes the tool's readers: builds the libFuzzer targets with clang in build/fuzz, then runs
# each for SECONDS (default 60) from the seeds in tests/fuzz/corpus/TARGET.
#
#   bash scripts/fuzz.sh [SECONDS] [TARGET...]      targets: config json capture
#
# New inputs the fuzzer finds interesting go to build/fuzz/corpus/TARGET, never into the
# committed seeds. A finding (crash, leak, hang over 10 s, failed round trip) stops the run with
# exit 1 and leaves its input in build/fuzz/findings/; add it to the seeds once it is fixed.
# FUZZ_SEED=N makes a run repeatable (CI sets it, so that a clean clone sees what its author saw);
# unset, each run explores from a new seed.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(config json capture)

bash scripts/deps.sh
cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DHALYARD_FUZZ=ON -DHALYARD_TESTS=OFF -DHALYARD_BENCH=OFF >/dev/null
cmake --build build/fuzz -j2 --target "${targets[@]/#/fuzz_}"

mkdir -p build/fuzz/findings
for t in "${targets[@]}"; do
  mkdir -p "build/fuzz/corpus/$t"
  dict=()
  [ -f "tests/fuzz/$t.dict" ] && dict=("-dict=tests/fuzz/$t.dict")
  echo "fuzzing $t for ${seconds}s"
  "build/fuzz/tests/fuzz/fuzz_$t" "${dict[@]}" -max_total_time="$seconds" -timeout=10 \
      ${FUZZ_SEED:+-seed="$FUZZ_SEED"} -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="build/fuzz/findings/$t-" \
      "build/fuzz/corpus/$t" "tests/fuzz/corpus/$t"
done
echo "fuzzing found nothing"
