#!/usr/bin/env bash
# Sets up a fresh Debian 12 machine, builds Plotmeter and works out a bundled example:
# the area of the farm survey, then its data listing.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh build
./build/src/cli/plotmeter-cli area examples/farm.csv
./build/src/cli/plotmeter-cli list examples/farm.csv
