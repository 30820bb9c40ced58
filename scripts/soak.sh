#!/usr/bin/env bash
# Builds the churn soak optimised and runs it whole:
#     scripts/soak.sh [STEPS] [SEED]        (default: 10000 steps from seed 1)
# STEPS and SEED may also come from HALYARD_SOAK_STEPS and HALYARD_SOAK_SEED. CI runs the short
# form inside ctest; this is the long one. Exits non-zero on any failure, which names the seed,
# the step and the configurations that reproduce it with halyard-acl.
#
# RelWithDebInfo: optimised, so that 10,000 steps with a probe on every update take minutes
# rather than the better part of an hour under the sanitizers, and with debug information, so
# that an assertion stopping the process can be followed in a debugger at once. The back-end's
# assertions that guard stored state stay in optimised builds.
set -euo pipefail
cd "$(dirname "$0")/.."
steps="${1:-${HALYARD_SOAK_STEPS:-10000}}"
seed="${2:-${HALYARD_SOAK_SEED:-1}}"
cmake -S . -B build/soak -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DHALYARD_BENCH=OFF >/dev/null
cmake --build build/soak -j2 --target test_soak
HALYARD_SOAK_STEPS="$steps" HALYARD_SOAK_SEED="$seed" HALYARD_SOAK_PROBE_EVERY=1 \
   build/soak/tests/test_soak --gtest_filter='ChurnSoak.*'
