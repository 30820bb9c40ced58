#!/usr/bin/env bash
# Builds the halyard-acl tool and runs its main job, the demo.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=Release \
      -DHALYARD_TESTS=OFF -DHALYARD_BENCH=OFF >/dev/null
cmake --build build/release -j2 --target halyard-acl
./build/release/cli/halyard-acl demo "$@"
