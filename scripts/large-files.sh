#!/usr/bin/env bash
# Time and peak memory of `check` and `list` on large and hostile inputs: CR-only line
# endings, bare CRs, many points (within and past the read limit), a file past the size
# limit and an endless stream. Prints a Markdown table of processor time (user and system,
# which a busy machine does not inflate as it does the wall time) and peak resident
# memory; the figures in the README come from it. Needs a build (scripts/build.sh) and
# /usr/bin/time.
#   scripts/large-files.sh [BUILD_DIR]
set -euo pipefail
cd "$(dirname "$0")/.."
cli=$(pwd)/${1:-build}/src/cli/plotmeter-cli
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# FILE POINTS ENDING: stand-alone points, one a line.
points() {
  awk -v n="$2" -v e="$3" 'BEGIN {
    printf "44,#0092,1,0,0,58%sH,P,Points%s", e, e
    for (i = 1; i <= n; i++) printf "%d,X,,,%d.5,%d.25%s", i, i % 1000, i % 777, e
  }' >"$1"
}
# FILE POINTS: the shortest data lines there are ("7,X").
short_points() {
  awk -v n="$2" 'BEGIN { print "44,#0092,1,0,0,58"; print "H,P"; for (i = 1; i <= n; i++) print i ",X" }' >"$1"
}

points "$work/lf.csv" 320000 '\n'
points "$work/cr.csv" 320000 '\r'
points "$work/million.csv" 1000000 '\n'
points "$work/cr-2m.csv" 2000000 '\r'
{ printf '44,#0092,1,0,0,58\nH,P\n1,X,,,0,0\n'; head -c 10000000 /dev/zero | tr '\0' '\r'; } >"$work/crs.csv"
short_points "$work/short.csv" 1900000
short_points "$work/past-limit.csv" 10000000
{ printf '44,#0092,1,0,0,58\nH,M,'; head -c 50000000 /dev/zero | tr '\0' x; printf '\n1,X,,,0,0\n'; } >"$work/long-line.csv"
head -c 50000000 /dev/urandom >"$work/random.csv"
truncate -s 513M "$work/513mib.csv"

# Processor seconds and peak resident MB of one run.
measure() {
  /usr/bin/time -f '%U %S, %M' "$cli" "$@" >/dev/null 2>"$work/time" || true
  tail -1 "$work/time" | awk -F', ' '{ split($1, t, " "); printf "%.2f s, %.0f MB", t[1] + t[2], $2 / 1024 }'
}
size_mb() { awk -v b="$(stat -c %s "$1")" 'BEGIN { printf "%.1f MB", b / 1e6 }'; }
peak_mb() { tail -1 "$work/time" | awk -F', ' '{ print $2 / 1024 }'; }

echo "| input | size | \`check\` | \`list\` | \`list\` peak / size |"
echo "|---|---|---|---|---|"
row() {
  local name=$1 file=$2 size check list ratio
  size=$(size_mb "$file")
  check=$(measure check "$file")
  list=$(measure list "$file")
  ratio=$(awk -v p="$(peak_mb)" -v b="$(stat -c %s "$file")" 'BEGIN { printf "%.1f", p * 1048576 / b }')
  echo "| $name | $size | $check | $list | $ratio |"
}
row "320,000 points, LF endings" "$work/lf.csv"
row "320,000 points, CR-only endings" "$work/cr.csv"
row "2,000,000 points, CR-only endings" "$work/cr-2m.csv"
row "10 MB of bare CRs" "$work/crs.csv"
row "a million points" "$work/million.csv"
row "1,900,000 points of the shortest lines" "$work/short.csv"
row "10,000,000 points (past the read limit)" "$work/past-limit.csv"
row "a dataset tag of 50 MB on one line" "$work/long-line.csv"
row "50 MB of random bytes" "$work/random.csv"
row "a file of 513 MiB (past the size limit)" "$work/513mib.csv"
echo "| /dev/zero (a stream without end) | - | $(measure check /dev/zero) | $(measure list /dev/zero) | - |"
