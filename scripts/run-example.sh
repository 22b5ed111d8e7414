#!/usr/bin/env bash
# Sets up a fresh Debian 12 machine, builds Plotmeter and works out a bundled example:
# the area of the farm survey, then its data listing; then, when there is a display to
# show it on, opens the desktop program's window on the same survey.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh build
./build/src/cli/plotmeter-cli area examples/farm.csv
./build/src/cli/plotmeter-cli list examples/farm.csv
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  ./build/src/app/plotmeter examples/farm.csv
fi
