#!/usr/bin/env bash
# Two real processes on one X display: a second launch hands over to the
# running one and exits 0 at once; after the first is killed with -9, its
# socket is stale and the next launch takes over.
# Usage: single-instance.sh <tintwright>   (DISPLAY set, e.g. by xvfb-run)
set -euo pipefail
app=$1
scratch=$(mktemp -d)
export XDG_DATA_HOME=$scratch/data XDG_RUNTIME_DIR=$scratch/runtime QT_QPA_PLATFORM=xcb
mkdir -p "$XDG_DATA_HOME" "$XDG_RUNTIME_DIR"; chmod 700 "$XDG_RUNTIME_DIR"
pids=()
cleanup() { for p in "${pids[@]}"; do kill -9 "$p" 2>/dev/null || true; done; rm -rf "$scratch"; }
trap cleanup EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

windows() { xdotool search --onlyvisible --name '^Tintwright$' 2>/dev/null | wc -l; }
wait_for_window() {
  for _ in $(seq 100); do [[ $(windows) -ge 1 ]] && return 0; sleep 0.1; done
  fail "no Tintwright window appeared"
}
now_ms() { date +%s%3N; }

"$app" & first=$!; pids+=("$first")
wait_for_window
echo "first instance $first is up"

start=$(now_ms)
set +e; timeout 10 "$app"; second_rc=$?; set -e
took=$(( $(now_ms) - start ))
echo "second launch: exit $second_rc after $took ms"
[[ $second_rc -eq 0 ]] || fail "second launch exited $second_rc"
(( took < 3000 )) || fail "second launch took $took ms"
kill -0 "$first" 2>/dev/null || fail "first instance died"
sleep 0.3
[[ $(windows) -eq 1 ]] || fail "expected one window, found $(windows)"

kill -9 "$first"; wait "$first" 2>/dev/null || true
socket=$(ls "$XDG_RUNTIME_DIR"/tintwright-*.socket 2>/dev/null || true)
[[ -n $socket ]] || fail "expected the crashed instance's socket to be left behind"
echo "first instance killed, stale socket: $(basename "$socket")"

"$app" & third=$!; pids+=("$third")
wait_for_window
sleep 0.3
kill -0 "$third" 2>/dev/null || fail "the launch after the crash exited"
echo "launch after the crash took over"

set +e; timeout 10 "$app"; fourth_rc=$?; set -e
[[ $fourth_rc -eq 0 ]] || fail "hand-over to the new instance exited $fourth_rc"
[[ $(windows) -eq 1 ]] || fail "expected one window after the second hand-over, found $(windows)"
echo "PASS"
