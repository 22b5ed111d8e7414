#!/usr/bin/env bash
# The end-to-end smoke run of the built plotmeter-cli over the bundled examples: every
# example loads, processes and shows its area, with status 0 and nothing on standard
# error (which is merged into what is compared). The commands' behaviour is tested in
# process (CliTest and the goldens).
#   e2e.sh PLOTMETER_CLI EXAMPLES_DIR
set -uo pipefail
area='^Area( \(GPS\))?: ([0-9]{1,3}(,[0-9]{3})*|[0-9]+\.[0-9]{1,2}) Hectares$'
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}
for file in "$2"/*.csv; do
  out=$("$1" check "$file" 2>&1) && [ "$out" = "OK" ] || fail "check $file: '$out'"
  out=$("$1" area "$file" 2>&1) && [[ "$out" =~ $area ]] || fail "area $file: '$out'"
done
[ "$failures" -eq 0 ] && echo "PASS examples"
