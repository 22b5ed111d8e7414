#!/usr/bin/env bash
# Installs what Plotmeter needs to build and test on Debian 12.
set -euo pipefail
packages=(build-essential cmake libgtest-dev libgmock-dev libbenchmark-dev
          libcli11-dev nlohmann-json3-dev libgeographiclib-dev clang clang-format
          libclang-rt-14-dev qt6-base-dev qt6-svg-dev libgl-dev xvfb xauth
          # the package and its checks (scripts/package.sh)
          file librsvg2-bin lintian desktop-file-utils appstream)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
