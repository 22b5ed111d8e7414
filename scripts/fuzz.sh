#!/usr/bin/env bash
# Fuzzes everything a data file reaches, for a bounded time (seconds, default 60), on the
# seed corpus of the examples, the test files and fuzz/seeds (surveys that reach intermediate
# points, GPS-only processing and repeat passes). A crash, leak, sanitizer report or an input
# that takes over a second fails the run; libFuzzer leaves that input as crash-*/timeout-*
# in build-asan/fuzz-findings for a regression test. Needs the sanitizer build
# (scripts/sanitize.sh).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
build=build-asan
cmake --build "$build" --target plotmeter_fuzz -j "$(nproc)"
corpus=$build/fuzz-corpus
findings=$build/fuzz-findings
mkdir -p "$corpus" "$findings"
cp examples/*.csv fuzz/seeds/*.csv "$corpus"/
find tests/data/fuzz-regressions -type f ! -name README -exec cp {} "$corpus"/ \;
export ASAN_OPTIONS=detect_leaks=1
# The target saves files (with fsync) on every input: keep them in memory when possible,
# in a folder of this run's own that goes with it.
memory=/tmp
[ -d /dev/shm ] && [ -w /dev/shm ] && memory=/dev/shm
TMPDIR=$(mktemp -d "$memory/plotmeter-fuzz.XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
status=0
"$build"/fuzz/plotmeter_fuzz -dict=fuzz/datafile.dict -max_total_time="$seconds" \
  -timeout=1 -rss_limit_mb=2048 -max_len=8192 -print_final_stats=1 \
  -artifact_prefix="$findings"/ "$@" "$corpus" || status=$?
if [ "$status" -ne 0 ]; then
  echo "The fuzzer found a fault; its input:" >&2
  ls -l "$findings" >&2
  echo "Fix it, then keep the input as tests/data/fuzz-regressions/<the fault it pins>." >&2
fi
exit "$status"
