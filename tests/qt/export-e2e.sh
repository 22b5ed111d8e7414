#!/usr/bin/env bash
# plotmeter --export as on a machine with no display: every example to PDF, SVG and PNG,
# then the statuses and messages of a usage error, a refused file, a survey without a
# unit of length given a scale, and a scale at which the plot does not fit.
# Usage: export-e2e.sh PLOTMETER EXAMPLES_DIR
set -uo pipefail
plotmeter=$1
examples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# No display and no platform chosen: the program must choose its own.
run() { env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$plotmeter" "$@" >/dev/null 2>"$work/err"; }

fail() {
  echo "FAIL: $*"
  sed 's/^/  stderr: /' "$work/err"
  failures=$((failures + 1))
}

expect() {  # STATUS DESCRIPTION -- ARGS...
  local want=$1 what=$2
  shift 3
  run "$@"
  local got=$?
  [ "$got" -eq "$want" ] || fail "$what: status $got, expected $want"
}

stderr_has() {
  grep -qF -- "$1" "$work/err" || fail "stderr lacks '$1'"
}

starts_with() {  # FILE MAGIC
  [ -s "$1" ] && [ "$(head -c ${#2} "$1")" = "$2" ] || fail "$1 does not start with '$2'"
}

for example in "$examples"/*.csv; do
  name=$(basename "$example" .csv)
  expect 0 "$name.pdf" -- --export "$work/$name.pdf" "$example"
  [ -s "$work/err" ] && fail "$name.pdf: messages on stderr"
  starts_with "$work/$name.pdf" "%PDF-"
  expect 0 "$name.svg" -- --export "$work/$name.svg" --scale fit --paper Letter --landscape "$example"
  starts_with "$work/$name.svg" "<?xml"
  expect 0 "$name.png" -- --export "$work/$name.png" --paper a3 "$example"
  starts_with "$work/$name.png" $'\x89PNG'
done

expect 2 "unknown paper" -- --export "$work/x.pdf" --paper B5 "$examples/farm.csv"
stderr_has "plotmeter: --paper takes A4, A3, Letter or Legal"
stderr_has "Usage: plotmeter"
expect 2 "unknown extension" -- --export "$work/x.jpg" "$examples/farm.csv"
stderr_has "plotmeter: OUT must end in .pdf, .svg or .png"
expect 2 "bad scale" -- --export "$work/x.pdf" --scale 1:0 "$examples/farm.csv"
expect 2 "no file" -- --export "$work/x.pdf"
expect 2 "scale without export" -- --scale 500 "$examples/farm.csv"
expect 0 "help" -- --help
[ -e "$work/x.pdf" ] && fail "a usage error wrote OUT"

expect 1 "missing file" -- --export "$work/x.pdf" "$work/missing.csv"
stderr_has "[File Read Abort]"
[ -e "$work/x.pdf" ] && fail "a refused file wrote OUT"

printf '44,#0092,0,0,0,58,No unit\nH,M,Plot\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,60\n' \
  >"$work/nounit.csv"
expect 1 "scale without a unit" -- --export "$work/x.pdf" --scale 500 "$work/nounit.csv"
stderr_has "[Export Abort]"
expect 0 "fit without a unit" -- --export "$work/nounit.pdf" "$work/nounit.csv"

expect 0 "cut at the frame" -- --export "$work/big.pdf" --scale 100 "$examples/farm.csv"
stderr_has "[Export]"
stderr_has "At 1:100 the plot does not fit on the page"
starts_with "$work/big.pdf" "%PDF-"

expect 1 "folder missing" -- --export "$work/none/x.pdf" "$examples/farm.csv"
stderr_has "[Write File Abort]"

[ "$failures" -eq 0 ] && echo "export e2e: all passed"
exit $((failures > 0))
