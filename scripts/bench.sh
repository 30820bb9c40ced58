#!/usr/bin/env bash
# Builds the benchmarks in Release (build/release-bench) and runs every benchmark of
# halyard-bench, or those matching a filter. The build and the run hold the shared build lock,
# so that no other build shares the cores with the measurement.
#
#   scripts/bench.sh                      the whole suite (a few minutes)
#   scripts/bench.sh 'BM_CounterPoll'     a filter (a regular expression over the names)
#   MIN_TIME=1 scripts/bench.sh ...       a longer run per benchmark (seconds, default 0.2)
#   FORMAT=json scripts/bench.sh ...      Google Benchmark's JSON on stdout
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="$root/build/release-bench"
lock=/tmp/halyard-build.lock
filter="${1:-.}"

cd "$root"
if [ ! -f "$build/CMakeCache.txt" ]; then
  flock "$lock" cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release
fi
flock "$lock" cmake --build "$build" -j2 --target halyard-bench >&2

echo "halyard-bench on $(nproc) cores: $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //')," \
     "$(git -C "$root" rev-parse --short HEAD), $(date -u +%Y-%m-%dT%H:%MZ)" >&2
exec flock "$lock" "$build/bench/halyard-bench" \
  --benchmark_filter="$filter" \
  --benchmark_min_time="${MIN_TIME:-0.2}" \
  --benchmark_format="${FORMAT:-console}"
