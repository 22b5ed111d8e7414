#!/usr/bin/env bash
# Builds and runs every test. Fails when any test fails or none ran.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh build
ctest --test-dir build --output-on-failure --no-tests=error -j "$(nproc)"
