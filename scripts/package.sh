#!/usr/bin/env bash
# Builds the Debian package from a Release build in build-package/ (warnings as errors,
# Debian's hardening flags) and checks it: the desktop entry and metainfo validate, lintian
# finds no error, the package installs on this machine, both programs run from it, and
# removing it leaves nothing of it under /usr. Needs root or sudo. Extra arguments go to
# cmake.
set -euo pipefail
cd "$(dirname "$0")/.."
build="build-package"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"

fail() {
  echo "package.sh: $*" >&2
  exit 1
}

# The package's dates (its changelog) are the last commit's, so that it builds the same twice.
if [ -z "${SOURCE_DATE_EPOCH:-}" ] && git rev-parse --git-dir > /dev/null 2>&1; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
  export SOURCE_DATE_EPOCH
fi
# Debian's hardening, all of it, as a Debian package build would have it.
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)"
LDFLAGS=$(dpkg-buildflags --get LDFLAGS)
export CXXFLAGS LDFLAGS
rm -rf "$build"
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DPLOTMETER_WERROR=ON \
  -DPLOTMETER_TESTS=OFF -DPLOTMETER_BENCH=OFF "$@" > /dev/null
cmake --build "$build" -j "$(nproc)"
(cd "$build" && cpack > /dev/null)

deb=$(ls "$build"/plotmeter_*.deb)
version=$(dpkg-deb -f "$deb" Version)
echo "== $deb"
dpkg-deb -f "$deb" Depends
contents=$(dpkg-deb -c "$deb" | awk '{print $6}' | sed 's|^\./|/|')
has() { grep -qx "$1" <<< "$contents"; }
desktop_program=false
has /usr/bin/plotmeter && desktop_program=true

desktop-file-validate packaging/*.desktop
appstreamcli validate --no-net "$build"/packaging/*.metainfo.xml

wanted=(/usr/bin/plotmeter-cli /usr/share/man/man1/plotmeter-cli.1.gz
        /usr/share/doc/plotmeter/copyright /usr/share/doc/plotmeter/changelog.gz
        /usr/share/doc/plotmeter/examples/farm.csv)
if $desktop_program; then
  wanted+=(/usr/share/man/man1/plotmeter.1.gz /usr/share/applications/io.github.plotmeter.Plotmeter.desktop
           /usr/share/metainfo/io.github.plotmeter.Plotmeter.metainfo.xml
           /usr/share/icons/hicolor/scalable/apps/plotmeter.svg)
  for size in 16 22 24 32 48 64 128 256; do
    wanted+=("/usr/share/icons/hicolor/${size}x${size}/apps/plotmeter.png")
  done
fi
for path in "${wanted[@]}"; do
  has "$path" || fail "the package lacks $path"
done
if $desktop_program; then
  tree=$(mktemp -d)
  trap 'rm -rf "$tree"' EXIT
  dpkg-deb -x "$deb" "$tree"
  # The metainfo, desktop entry and icons as software centres see them together.
  appstreamcli validate-tree --no-net "$tree"
fi

echo "== lintian"
lintian --fail-on error --display-info "$deb"

echo "== install"
if dpkg-query -W -f='${Status}' plotmeter 2> /dev/null | grep -q "install ok installed"; then
  $sudo apt-get remove -y -qq plotmeter > /dev/null
fi
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "./$deb" > /dev/null
installed=$(dpkg -L plotmeter)

echo "== run"
[ "$(plotmeter-cli --version)" = "plotmeter-cli $version" ] || fail "plotmeter-cli --version is not $version"
farm=/usr/share/doc/plotmeter/examples/farm.csv
[ -f "$farm" ] || fail "$farm was not installed (does a dpkg path-exclude drop /usr/share/doc?)"
plotmeter-cli area "$farm"
if $desktop_program; then
  plotmeter --version
  plotmeter --version | grep -qx "plotmeter $version" || fail "plotmeter --version is not $version"
  # The window stays open until the time limit ends it: that is the success.
  status=0
  xvfb-run -a timeout 5 plotmeter "$farm" || status=$?
  [ "$status" -eq 0 ] || [ "$status" -eq 124 ] || fail "plotmeter ended with status $status under Xvfb"
  echo "plotmeter ran under Xvfb on farm.csv"
else
  echo "note: this build has no desktop program; only plotmeter-cli was run"
fi

echo "== remove"
DEBIAN_FRONTEND=noninteractive $sudo apt-get remove -y -qq plotmeter > /dev/null
dpkg-query -W -f='${Status}' plotmeter 2> /dev/null | grep -q "install ok installed" &&
  fail "plotmeter is still installed"
left=()
while read -r path; do
  [[ $path == /usr/* ]] || continue
  if [ -d "$path" ] && [ ! -L "$path" ]; then
    # A folder may stay only while another package owns it.
    dpkg-query -S "$path" > /dev/null 2>&1 || left+=("$path")
  elif [ -e "$path" ] || [ -L "$path" ]; then
    left+=("$path")
  fi
done <<< "$installed"
[ ${#left[@]} -eq 0 ] || fail "left behind after removal: ${left[*]}"
echo "removed cleanly: $deb"
