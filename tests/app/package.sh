#!/usr/bin/env bash
# Builds the Debian package from this build tree, installs it on the
# machine, starts the installed program from its desktop entry under the
# current X display, checks its window, removes the package and checks
# that nothing is left. Needs root and dpkg; skips (exit 77) otherwise.
# Usage: package.sh <build dir>
set -euo pipefail
build=$1
skip() { echo "SKIP: $*"; exit 77; }
fail() { echo "FAIL: $*" >&2; exit 1; }

[[ $(id -u) -eq 0 ]] || skip "installing a package needs root"
command -v dpkg >/dev/null && command -v apt-get >/dev/null || skip "no dpkg/apt-get on this system"
if dpkg-query -W -f='${Status}' tintwright 2>/dev/null | grep -q 'install ok installed'; then
  skip "a tintwright package is already installed; not touching it"
fi

scratch=$(mktemp -d)
chmod 755 "$scratch"  # apt reads the .deb as its own user
app_pid=
installed=0
cleanup() {
  [[ -n $app_pid ]] && kill -9 "$app_pid" 2>/dev/null || true
  [[ $installed -eq 1 ]] && dpkg --purge tintwright >/dev/null 2>&1 || true
  rm -rf "$scratch"
}
trap cleanup EXIT

cpack -G DEB -B "$scratch/out" --config "$build/CPackConfig.cmake" >"$scratch/cpack.log" 2>&1 \
  || { cat "$scratch/cpack.log"; fail "cpack failed"; }
deb=$(ls "$scratch"/out/tintwright_*.deb)
echo "built $(basename "$deb") ($(du -k "$deb" | cut -f1) KiB)"

info=$(dpkg-deb --field "$deb" Package Section Depends Maintainer)
grep -q '^Section: graphics$' <<<"$info" || fail "section is not graphics"
for needed in libqt6widgets6 libqt6svg6 qt6-qpa-plugins libc6; do
  grep -q "$needed" <<<"$info" || fail "Depends lacks $needed"
done

export DEBIAN_FRONTEND=noninteractive
apt-get -o DPkg::Lock::Timeout=60 install -y -qq --no-install-recommends "$deb" >"$scratch/apt.log" 2>&1 \
  || { cat "$scratch/apt.log"; fail "installing the package failed"; }
installed=1
mapfile -t files < <(dpkg -L tintwright | while read -r f; do [[ -f $f ]] && echo "$f"; done)
# Where each file goes is install-layout.sh's to check.
id=io.github.tintwright.Tintwright

# Start it the way a desktop does: the Exec line of the installed entry.
exec_line=$(grep -m1 '^Exec=' /usr/share/applications/$id.desktop | sed 's/^Exec=//; s/ %[fFuUick]//g')
export XDG_DATA_HOME=$scratch/data XDG_STATE_HOME=$scratch/state XDG_RUNTIME_DIR=$scratch/runtime QT_QPA_PLATFORM=xcb
mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"; chmod 700 "$XDG_RUNTIME_DIR"
(cd / && env PATH=/usr/bin:/bin $exec_line) & app_pid=$!
window=
for _ in $(seq 100); do
  window=$(xdotool search --onlyvisible --name '^Tintwright$' 2>/dev/null | head -1 || true)
  [[ -n $window ]] && break
  kill -0 "$app_pid" 2>/dev/null || fail "the installed program exited"
  sleep 0.1
done
[[ -n $window ]] || fail "the installed program showed no window"
xwininfo -id "$window" | grep -q 'Map State: IsViewable' || fail "window $window is not mapped"
echo "window $window mapped: $(xwininfo -id "$window" | awk '/Width|Height/ {printf "%s ", $2}')"
kill "$app_pid"; wait "$app_pid" 2>/dev/null || true; app_pid=

apt-get -o DPkg::Lock::Timeout=60 remove -y -qq tintwright >"$scratch/apt.log" 2>&1 || { cat "$scratch/apt.log"; fail "removing failed"; }
installed=0
left=0
for f in "${files[@]}"; do [[ -e $f ]] && { echo "left behind: $f" >&2; left=1; }; done
[[ $left -eq 0 ]] || fail "files left after removal"
dpkg-query -W -f='${Status}' tintwright 2>/dev/null | grep -q 'install ok installed' && fail "still installed"
echo "PASS: removed, ${#files[@]} files gone"
