#!/usr/bin/env bash
# Sets up a fresh Debian 12 machine, builds Plotmeter and works out a bundled example.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh build
./build/src/cli/plotmeter-cli --help
