#!/usr/bin/env bash
# The end-to-end smoke run of the built plotmeter-cli over the bundled examples: every
# example loads, processes and shows its area, with nothing on standard error and status
# 0. The commands' behaviour is tested in process (CliTest).
#   e2e.sh PLOTMETER_CLI EXAMPLES_DIR
set -uo pipefail
cli=$1
examples=$2
err=$(mktemp)
trap 'rm -f "$err"' EXIT
failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}
# Runs the program; fails unless it ends with status 0 and prints nothing to stderr.
run() {
  out=$("$cli" "$@" 2>"$err") || fail "$*: status $?"
  [ ! -s "$err" ] || fail "$*: stderr $(cat "$err")"
}
area='^Area( \(GPS\))?: ([0-9]{1,3}(,[0-9]{3})*|[0-9]+\.[0-9]{1,2}) Hectares$'
for file in "$examples"/*.csv; do
  run check "$file"
  [ "$out" = "OK" ] || fail "check $file: '$out'"
  run area "$file"
  [[ "$out" =~ $area ]] || fail "area $file: '$out'"
done
[ "$failures" -eq 0 ] || exit 1
echo "PASS examples"
