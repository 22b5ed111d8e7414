#!/usr/bin/env bash
# The end-to-end smoke run of the built plotmeter-cli over the bundled examples, checking
# standard output, standard error and the exit status. The commands' behaviour is tested
# in process (CliTest).
#   e2e.sh PLOTMETER_CLI EXAMPLES_DIR CASE
set -uo pipefail

cli=$1
examples=$2
case_name=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

failures=0
fail() {
  echo "FAIL: $*" >&2
  failures=$((failures + 1))
}

# Runs the program; leaves its output in $out, $err and its status in $status.
run() {
  "$cli" "$@" >"$work/out" 2>"$work/err"
  status=$?
  out=$(cat "$work/out")
  err=$(cat "$work/err")
}

expect_status() { [ "$status" -eq "$1" ] || fail "status $status, expected $1 (stderr: $err)"; }
expect_out() { grep -Eq -- "$1" "$work/out" || fail "stdout lacks /$1/: $out"; }
expect_no_err() { [ -z "$err" ] || fail "stderr not empty: $err"; }
# Every line of standard output is one JSON object.
expect_json_lines() {
  local count=0
  while IFS= read -r line; do
    count=$((count + 1))
    printf '%s' "$line" | python3 -m json.tool >/dev/null || fail "not JSON: $line"
  done <"$work/out"
  [ "$count" -eq "$1" ] || fail "$count JSON lines, expected $1"
}

case "$case_name" in
  examples)
    # Every bundled example loads, processes and shows its area, with nothing to report.
    for file in "$examples"/*.csv; do
      run check "$file"
      expect_status 0
      [ "$out" = "OK" ] || fail "$file: stdout '$out'"
      expect_no_err
      run area "$file"
      expect_status 0
      expect_out '^Area( \(GPS\))?: ([0-9]{1,3}(,[0-9]{3})*|[0-9]+\.[0-9]{1,2}) Hectares$'
      expect_no_err
    done
    run area --json --unit Acres "$examples"/*.csv
    expect_status 0
    expect_json_lines "$(ls "$examples"/*.csv | wc -l)"
    ;;
  *)
    fail "unknown case $case_name"
    ;;
esac

[ "$failures" -eq 0 ] || exit 1
echo "PASS $case_name"
