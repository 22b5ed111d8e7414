#!/usr/bin/env bash
# How much of the program the test suite reaches: builds everything with clang's source
# coverage into build-testcov (or the folder given), runs every test once, and prints the
# line and branch coverage of src/. Compare two trees' figures to see that a change of the
# tests loses no line or branch they reached.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build-testcov}
flags="-fprofile-instr-generate -fcoverage-mapping"
CC=clang CXX=clang++ bash scripts/build.sh "$dir" -DPLOTMETER_BENCH=OFF \
  -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags"
rm -rf "$dir/profiles" && mkdir -p "$dir/profiles"
LLVM_PROFILE_FILE="$(pwd)/$dir/profiles/%p.profraw" \
  ctest --test-dir "$dir" --no-tests=error -j "$(nproc)" > /dev/null
llvm-profdata merge -sparse "$dir"/profiles/*.profraw -o "$dir/tests.profdata"
objects=()
for binary in "$dir"/tests/plotmeter_tests "$dir"/tests/qt/*Test "$dir"/src/app/plotmeter \
  "$dir"/src/cli/plotmeter-cli; do
  [ -x "$binary" ] && objects+=(-object "$binary")
done
llvm-cov report "${objects[@]:1}" -instr-profile="$dir/tests.profdata" "$(pwd)/src" \
  | tail -n 1
