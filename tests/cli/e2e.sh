#!/usr/bin/env bash
# End-to-end runs of the built plotmeter-cli, one case a call (examples, streams, list,
# save, question, inputs), checking standard output, the message blocks on standard error
# and the exit status.
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
  streams)
    # Results on standard output, message blocks on standard error, and the status.
    printf '44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n' >"$work/other.csv"
    run check "$examples"/farm.csv "$work/other.csv"
    expect_status 1
    [ "$out" = "$examples/farm.csv: OK" ] || fail "stdout '$out'"
    expect_err "^$work/other.csv: \[File Read Abort\]$"
    expect_err '^File selected is not for this program\.$'
    run area "$examples"/farm.csv --unit Furlongs
    expect_status 2
    expect_no_out
    expect_err '^Usage: plotmeter-cli COMMAND FILE \[options\]$'
    ;;
  list)
    # The listing from the file, then from the processed survey; a refused file still lists.
    run list "$examples"/farm.csv
    expect_status 0
    [ "$(head -1 "$work/out")" = "Unit of Measure: Meters" ] || fail "first line: $out"
    expect_out "^\[M\] Dataset as Main \(Perimeter\) for 'Home paddocks'$"
    expect_out '^  3 B           \|     14°30.      268\.4$'
    expect_no_err
    run list "$examples"/farm.csv --processed --show xy
    expect_status 0
    expect_out '^  2 XJ          \|     412\.5       0\.0$'
    printf '44,#0093,1,0,0,58\nH,M\n1,X,,,0,0\n' >"$work/other.csv"
    run list "$work/other.csv"
    expect_status 1
    expect_out '^Aborted - Bad File$'
    expect_err '^\[File Read Abort\]$'
    ;;
  save)
    # A saved survey loads again with the same area; a folder that is not there is refused.
    run save "$examples"/farm.csv "$work/saved.csv"
    expect_status 0
    expect_no_out
    expect_no_err
    run area "$examples"/farm.csv
    loaded_area=$out
    run area "$work/saved.csv"
    expect_status 0
    [ "$out" = "$loaded_area" ] || fail "saved area '$out', loaded '$loaded_area'"
    run save "$examples"/farm.csv "$work/missing/saved.csv"
    expect_status 1
    expect_err '^\[Write File Abort\]$'
    ;;
  question)
    # GPS-only points before the link point: the question is answered No, or Yes with --yes.
    printf '%s\n' '44,#0092,1,0,0,58' 'H,M' '1,G,,,,,148.5 E,35.3 S' '2,G,,,,,148.501 E,35.3 S' \
      '3,XL,,,0,0,148.501 E,35.301 S' '4,G,,,,,148.5 E,35.301 S' >"$work/gps.csv"
    run check "$work/gps.csv"
    expect_status 1
    expect_no_out
    expect_err '^\[GPS Link issue\]$'
    expect_err '^> No$'
    run area "$work/gps.csv" --yes
    expect_status 0
    expect_out '^Area \(GPS\): '
    expect_err '^> Yes$'
    ;;
  inputs)
    # Each input is read once: a pipe and a FIFO list as a file does.
    out="" err=""
    "$cli" list /dev/stdin < <(cat "$examples"/farm.csv) >"$work/out" 2>"$work/err"
    status=$?
    expect_status 0
    expect_out "^\\[M\\] Dataset as Main \\(Perimeter\\) for 'Home paddocks'$"
    "$cli" list "$examples"/farm.csv >"$work/file-listing"
    cmp -s "$work/out" "$work/file-listing" || fail "the piped listing differs"
    mkfifo "$work/fifo.csv"
    cat "$examples"/farm.csv >"$work/fifo.csv" &
    timeout 20 "$cli" list "$work/fifo.csv" >"$work/out" 2>"$work/err"
    status=$?
    wait
    expect_status 0
    cmp -s "$work/out" "$work/file-listing" || fail "the FIFO listing differs"
    # A failed write of the results is an error, as for the usual tools.
    for command in check area list; do
      "$cli" "$command" "$examples"/farm.csv >/dev/full 2>"$work/err"
      status=$?
      err=$(cat "$work/err")
      expect_status 1
      expect_err '^plotmeter-cli: error writing standard output: No space left on device$'
    done
    # A file that cannot be read has nothing to list; the reason goes with the box.
    run list "$work/missing.csv"
    expect_status 1
    expect_no_out
    expect_err "^$work/missing.csv: No such file or directory$"
    # A save goes through a symbolic link to its file.
    echo old >"$work/real.csv"
    ln -s real.csv "$work/link.csv"
    run save "$examples"/farm.csv "$work/link.csv"
    expect_status 0
    [ -L "$work/link.csv" ] || fail "the link was replaced"
    grep -q '^/End data$\|,/End data$' "$work/real.csv" || fail "the linked file was not saved"
    ;;
  *)
    fail "unknown case $case_name"
    ;;
esac

[ "$failures" -eq 0 ] || exit 1
echo "PASS $case_name"
