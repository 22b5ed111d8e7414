#!/usr/bin/env bash
# How much of the program a fuzz corpus reaches: builds the fuzz target with clang's source
# coverage (no sanitizers) into build-cov, runs every input of the corpus once, and prints
# the line and branch coverage of src/. Corpus folder as argument, default the one
# scripts/fuzz.sh grows.
set -euo pipefail
cd "$(dirname "$0")/.."
corpus=${1:-build-asan/fuzz-corpus}
flags="-fprofile-instr-generate -fcoverage-mapping"
CC=clang CXX=clang++ cmake -S . -B build-cov -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DPLOTMETER_FUZZ=ON -DPLOTMETER_WERROR=ON -DPLOTMETER_TESTS=OFF -DPLOTMETER_BENCH=OFF \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" > /dev/null
cmake --build build-cov --target plotmeter_fuzz -j "$(nproc)"
export TMPDIR=${TMPDIR:-/dev/shm}
LLVM_PROFILE_FILE=build-cov/fuzz.profraw build-cov/fuzz/plotmeter_fuzz -runs=0 "$corpus" \
  > /dev/null 2>&1
llvm-profdata merge -sparse build-cov/fuzz.profraw -o build-cov/fuzz.profdata
llvm-cov report build-cov/fuzz/plotmeter_fuzz -instr-profile=build-cov/fuzz.profdata \
  "$(pwd)"/src/model "$(pwd)"/src/datafile "$(pwd)"/src/geometry "$(pwd)"/src/ui
