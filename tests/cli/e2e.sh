#!/usr/bin/env bash
# End-to-end runs of the built plotmeter-cli: one case a call, checking standard output,
# the message blocks on standard error and the exit status.
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
expect_err() { grep -Eq -- "$1" "$work/err" || fail "stderr lacks /$1/: $err"; }
expect_no_out() { [ -z "$out" ] || fail "stdout not empty: $out"; }
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

header='44,#0092,1,0,0,58'
square="$header
H,M,Square
1,X,,,0,0
2,X,,,100,0
3,X,,,100,100
4,X,,,0,100"

case "$case_name" in
  check_examples)
    for file in "$examples"/*.csv; do
      run check "$file"
      expect_status 0
      [ "$out" = "OK" ] || fail "$file: stdout '$out'"
      expect_no_err
    done
    ;;
  check_batch)
    printf '44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n' >"$work/other.csv"
    run check "$examples"/farm.csv "$work/other.csv" "$examples"/chains.csv
    expect_status 1
    [ "$(wc -l <"$work/out")" -eq 2 ] || fail "two OK lines expected: $out"
    expect_out "^$examples/farm.csv: OK$"
    expect_out "^$examples/chains.csv: OK$"
    expect_err "^$work/other.csv: \[File Read Abort\]$"
    expect_err '^File selected is not for this program\.$'
    ;;
  area_examples)
    for file in "$examples"/*.csv; do
      run area "$file"
      expect_status 0
      expect_out '^Area( \(GPS\))?: ([0-9]{1,3}(,[0-9]{3})*|[0-9]+\.[0-9]{1,2}) Hectares$'
      expect_no_err
    done
    ;;
  area_units)
    printf '%s\n' "$square" >"$work/square.csv"
    run area "$work/square.csv" --unit "Sq. Meters"
    expect_status 0
    [ "$out" = "Area: 10,000 Sq. Meters" ] || fail "stdout '$out'"
    run area "$work/square.csv" --unit 2
    [ "$out" = "Area: 2.47 Acres" ] || fail "stdout '$out'"
    run area "$work/square.csv"
    [ "$out" = "Area: 1.0 Hectares" ] || fail "stdout '$out'"
    ;;
  area_json)
    run area --json "$examples"/farm.csv
    expect_status 0
    expect_json_lines 1
    printf '%s' "$out" | python3 -c '
import json, sys
o = json.load(sys.stdin)
assert list(o) == ["heading", "value", "unit", "areas", "segmented", "swapped", "perimeter"], o
assert o["unit"] == "Hectares" and o["perimeter"] == "valid", o
assert len(o["areas"]) == 3 and all(isinstance(a, float) for a in o["areas"]), o
' || fail "JSON fields: $out"
    run area --json --unit Acres "$examples"/*.csv
    expect_status 0
    expect_json_lines "$(ls "$examples"/*.csv | wc -l)"
    expect_out '^\{"file":'
    ;;
  area_bad_perimeter)
    printf '%s\nH,M\n1,X,,,0,0\n2,X,,,10,10\n3,X,,,10,0\n4,X,,,0,10\n' "$header" >"$work/bow.csv"
    run area "$work/bow.csv"
    expect_status 1
    [ "$out" = "Area: < Bad Perimeter Lines >" ] || fail "stdout '$out'"
    expect_err '^\[Bad Perimeter Data\]$'
    run area --json "$work/bow.csv"
    expect_status 1
    expect_json_lines 1
    expect_out '"areas":null'
    expect_out '"perimeter":"bad"'
    ;;
  area_over_limit)
    {
      printf '%s\nH,M\n' "$header"
      awk 'BEGIN { for (i = 1; i <= 100000; i++) printf "%d,X,,,%d,%d\n", i, i, i % 7 }'
    } >"$work/big.csv"
    run area "$work/big.csv"
    expect_status 1
    expect_no_out
    expect_err '^\[Processing Failed\]$'
    expect_err '^The number of points specified exceeds the program limit of 210$'
    ;;
  refused_files)
    run check "$work/none.csv"
    expect_status 1
    expect_no_out
    expect_err '^\[File Read Abort\]$'
    expect_err '^Cannot open file - check is not being used by another program\.$'
    head -c 200000 /dev/urandom >"$work/noise.csv"
    run area "$work/noise.csv"
    expect_status 1
    expect_no_out
    expect_err '^\[File Read Abort\]$'
    run list "$work/noise.csv"
    expect_status 1
    expect_out '^Aborted - Bad File$'
    ;;
  question)
    printf '%s\nH,M\n1,G,,,,,148.5 E,35.3 S\n2,G,,,,,148.501 E,35.3 S\n3,XL,,,0,0,148.501 E,35.301 S\n4,G,,,,,148.5 E,35.301 S\n' \
      "$header" >"$work/gps.csv"
    run check "$work/gps.csv"
    expect_status 1
    expect_err '^\[GPS Link issue\]$'
    expect_err "^proceed on a 'GPS Only' basis \?$"
    expect_err '^> No$'
    run check --yes "$work/gps.csv"
    expect_status 0
    expect_err '^> Yes$'
    [ "$out" = "OK" ] || fail "stdout '$out'"
    ;;
  list_from_file)
    run list "$examples"/farm.csv
    expect_status 0
    expect_no_err
    expect_out '^Unit of Measure: Meters$'
    expect_out "^Mag Decl'n: 0$"
    expect_out '^Pt# Typ Ref Tgt \| I/P-X\(B\)   I/P-Y\(L\)  $'
    expect_out '^\[M\] Dataset as Main \(Perimeter\)'
    run list "$examples"/block-compass.csv
    expect_status 0
    expect_out '°'
    expect_out '^Unit of Measure: Feet:Inches$'
    ;;
  list_processed)
    run list --processed --show input,xy,bearing,gps,altgps "$examples"/paddock-gps.csv
    expect_status 0
    expect_out '\| X         Y         \| Bearing    Length    \| GPS-Long        GPS-Lat         \| Alt-Long'
    expect_out '^ -Closing Line Bearing:'
    run list --processed --show none --include lines,points "$examples"/roads-buildings.csv
    expect_status 0
    expect_out '^Pt# Typ Ref Tgt$'
    grep -q '^\[M\]' "$work/out" && fail "main dataset listed: $out"
    ;;
  list_refused)
    printf '%s\nH,M\n1,XB,,,0,0\n' "$header" >"$work/two-types.csv"
    run list "$work/two-types.csv"
    expect_status 1
    expect_out '^Aborted - Bad File$'
    expect_out '^Multiple type codes present\.$'
    expect_err '^\[File Read Abort\]$'
    ;;
  save)
    run save "$examples"/farm.csv "$work/farm-saved.csv"
    expect_status 0
    expect_no_out
    [ -s "$work/farm-saved.csv" ] || fail "nothing written"
    run area "$examples"/farm.csv
    before=$out
    run area "$work/farm-saved.csv"
    [ "$out" = "$before" ] || fail "saved file gives '$out', original '$before'"
    run save "$examples"/farm.csv "$work/plain.csv" --writer-options 202
    expect_status 0
    grep -q '^/End data' "$work/plain.csv" || fail "plain layout expected"
    run save "$examples"/farm.csv "$work/no/such/folder/out.csv"
    expect_status 1
    expect_err '^\[Write File Abort\]$'
    ;;
  usage)
    for args in "" "area" "bogus x.csv" "area x.csv --unit Furlongs" "list x.csv --show colour" \
                "save x.csv" "area x.csv --segment 5"; do
      # shellcheck disable=SC2086
      run $args
      expect_status 2
      expect_no_out
      expect_err '^Usage: plotmeter-cli COMMAND FILE \[options\]$'
    done
    ;;
  *)
    fail "unknown case $case_name"
    ;;
esac

[ "$failures" -eq 0 ] || exit 1
echo "PASS $case_name"
