#!/usr/bin/env bash
# Dependencies point one way: cli -> fennel -> acl -> platform, sim -> platform.
# Fails when a layer includes a header of a layer it must not know.
set -euo pipefail
cd "$(dirname "$0")/.."

status=0
check() {  # check DIR FORBIDDEN...
  local dir=$1; shift
  for bad in "$@"; do
    if grep -rnE "#include +\"${bad}/" "$dir" --include='*.h' --include='*.cpp' 2>/dev/null; then
      echo "layer violation: $dir must not include $bad/" >&2
      status=1
    fi
  done
}
check platform acl fennel sim cli
check acl fennel sim cli
check sim acl fennel cli
check fennel sim cli
exit $status
