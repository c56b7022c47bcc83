#!/usr/bin/env bash
# Runs a command as a Wayland client of a Weston of its own, on a private
# runtime folder and session bus, under Qt's Wayland platform; no X server
# is reachable from the command. Weston runs headless, or, where DISPLAY
# names an X server (an Xvfb), inside it: only then does it have a seat
# (pointer and keyboard), which the clipboard and window moves need, and
# input sent to that X server (TINTWRIGHT_INPUT_DISPLAY for the command)
# reaches the command through Weston. The command's exit status is the
# script's.
# Usage: weston-run.sh <command> [arguments]
set -euo pipefail
runtime=$(mktemp -d /tmp/tintwright-weston.XXXXXX)
chmod 700 "$runtime"
socket=tintwright-wayland
weston_pid=""
cleanup() {
  if [[ -n "$weston_pid" ]]; then
    kill "$weston_pid" 2>/dev/null || true
    wait "$weston_pid" 2>/dev/null || true
  fi
  rm -rf "$runtime"
}
trap cleanup EXIT

backend=(--backend=headless-backend.so)
[[ -n "${DISPLAY:-}" ]] && backend=(--backend=x11-backend.so --use-pixman)
XDG_RUNTIME_DIR="$runtime" weston "${backend[@]}" --socket="$socket" --width=1280 --height=800 --idle-time=0 \
  --no-config --log="$runtime/weston.log" &
weston_pid=$!
for _ in $(seq 100); do
  [[ -S "$runtime/$socket" ]] && break
  sleep 0.05
done
if [[ ! -S "$runtime/$socket" ]]; then
  echo "weston did not start:" >&2
  cat "$runtime/weston.log" >&2 || true
  exit 1
fi

status=0
env -u DISPLAY TINTWRIGHT_INPUT_DISPLAY="${DISPLAY:-}" XDG_RUNTIME_DIR="$runtime" WAYLAND_DISPLAY="$socket" QT_QPA_PLATFORM=wayland \
  dbus-run-session -- "$@" || status=$?
exit "$status"
