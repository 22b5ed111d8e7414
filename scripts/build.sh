#!/usr/bin/env bash
# Configures and builds into build/ (or the folder given), warnings as errors.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build}
shift || true
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DPLOTMETER_WERROR=ON "$@" > /dev/null
cmake --build "$dir" -j "$(nproc)"
