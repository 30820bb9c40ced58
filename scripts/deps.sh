#!/usr/bin/env bash
# Installs the Debian packages the build needs, only those missing.
set -euo pipefail

packages=(cmake ninja-build g++ clang clang-format libclang-rt-dev pkg-config
          libgtest-dev libgmock-dev libbenchmark-dev
          nlohmann-json3-dev libcli11-dev libpcap-dev)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
