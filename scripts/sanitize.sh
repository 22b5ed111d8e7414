#!/usr/bin/env bash
# Builds everything with clang, AddressSanitizer and UndefinedBehaviorSanitizer, and runs
# every test in that build. Any sanitizer report fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
CC=clang CXX=clang++ bash scripts/build.sh build-asan -DPLOTMETER_SANITIZE=ON -DPLOTMETER_FUZZ=ON -DPLOTMETER_BENCH=OFF
ctest --test-dir build-asan --output-on-failure --no-tests=error -j "$(nproc)"
