#!/usr/bin/env bash
# Formats every C++ source in place (--check: report only, exit 1 on a difference).
set -euo pipefail
cd "$(dirname "$0")/.."
mode=(-i)
[ "${1:-}" = "--check" ] && mode=(--dry-run -Werror)
git ls-files '*.h' '*.cpp' | xargs -r clang-format "${mode[@]}"
