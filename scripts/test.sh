#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer
# and runs all tests.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
bash scripts/check-layers.sh
cmake -S . -B build/asan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DHALYARD_SANITIZE=ON >/dev/null
cmake --build build/asan -j2
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --test-dir build/asan --output-on-failure -j2 "$@"
