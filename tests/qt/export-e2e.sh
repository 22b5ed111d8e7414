#!/usr/bin/env bash
# plotmeter --export with no display: every example to PDF, SVG and PNG; then the statuses and
# messages of usage errors, a refused file, a scale with no unit of length or too large for
# the plot, and a missing folder.
# Usage: export-e2e.sh PLOTMETER EXAMPLES_DIR
set -uo pipefail
plotmeter=$1 examples=$2 farm=$2/farm.csv
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() { echo "FAIL: $*" && sed 's/^/  stderr: /' "$work/err" && failures=$((failures + 1)); }

# expect STATUS [TEXT]... -- ARGS...: run without a display or a platform chosen (the program
# must choose its own); the status, and each TEXT on standard error (no TEXT: nothing there).
expect() {
  local want=$1 texts=()
  shift
  while [ "$1" != -- ]; do texts+=("$1"); shift; done
  shift
  env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$plotmeter" "$@" >/dev/null 2>"$work/err"
  local got=$?
  [ "$got" -eq "$want" ] || fail "$*: status $got, expected $want"
  [ ${#texts[@]} -gt 0 ] || [ ! -s "$work/err" ] || fail "$*: messages on stderr"
  for text in "${texts[@]}"; do grep -qF -- "$text" "$work/err" || fail "$*: no '$text'"; done
}

for example in "$examples"/*.csv; do
  out=$work/$(basename "$example" .csv)
  expect 0 -- --export "$out.pdf" "$example"
  expect 0 -- --export "$out.svg" --scale fit --paper Letter --landscape "$example"
  expect 0 -- --export "$out.png" --paper a3 "$example"
  magic=$(head -c5 "$out.pdf")$(head -c5 "$out.svg")$(head -c4 "$out.png")
  [ "$magic" = $'%PDF-<?xml\x89PNG' ] || fail "$out: not a PDF, an SVG and a PNG"
done

x=$work/x.pdf
expect 2 "--paper takes A4, A3, Letter or Legal" -- --export "$x" --paper B5 "$farm"
expect 2 "plotmeter: OUT must end in .pdf, .svg or .png" -- --export "$work/x.jpg" "$farm"
expect 2 "--scale takes N of 1:N (a whole number from 1) or fit" -- --export "$x" --scale 0 "$farm"
expect 2 "--export takes exactly one FILE" "Usage: plotmeter" -- --export "$x"
expect 2 "--scale, --paper and --landscape go with --export" -- --scale 500 "$farm"
expect 0 -- --help
expect 1 "[File Read Abort]" -- --export "$x" "$work/missing.csv"
[ -e "$x" ] && fail "a usage error or a refused file wrote OUT"

nounit=$work/nounit.csv
printf '44,#0092,0,0,0,58,No unit\nH,M,Plot\n1,X,,,0,0\n2,X,,,100,0\n3,X,,,100,60\n' >"$nounit"
expect 1 "[Export Abort]" -- --export "$x" --scale 500 "$nounit"
expect 0 -- --export "$work/nounit.pdf" "$nounit"
expect 0 "[Export]" "At 1:100 the plot does not fit" -- --export "$x" --scale 100 "$farm"
expect 1 "[Write File Abort]" -- --export "$work/none/x.pdf" "$farm"

[ "$failures" -eq 0 ] && echo "export e2e: all passed"
exit $((failures > 0))
