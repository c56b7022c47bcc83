#!/usr/bin/env bash
# Runs a command as a Wayland client of a Weston of its own, inside the X
# server DISPLAY names (an Xvfb: it gives Weston the seat a clipboard needs),
# on a private runtime folder and session bus. The command reaches no X
# server, except TINTWRIGHT_INPUT_DISPLAY to send input through Weston.
# Usage: weston-run.sh <command> [arguments]
set -euo pipefail
runtime=$(mktemp -d /tmp/tintwright-weston.XXXXXX)
chmod 700 "$runtime"
XDG_RUNTIME_DIR="$runtime" weston --backend=x11-backend.so --use-pixman --socket=wayland --width="${WESTON_WIDTH:-1280}" \
  --height="${WESTON_HEIGHT:-800}" --scale="${WESTON_SCALE:-1}" --output-count="${WESTON_OUTPUTS:-1}" --idle-time=0 --no-config --log="$runtime/weston.log" &
weston_pid=$!
trap 'kill $weston_pid; wait $weston_pid; rm -rf "$runtime"' EXIT
for _ in $(seq 100); do [[ -S $runtime/wayland ]] && break; sleep 0.05; done
[[ -S $runtime/wayland ]] || { cat "$runtime/weston.log" >&2; exit 1; }
env -u DISPLAY TINTWRIGHT_INPUT_DISPLAY="$DISPLAY" XDG_RUNTIME_DIR="$runtime" WAYLAND_DISPLAY=wayland QT_QPA_PLATFORM=wayland "$(dirname "$0")/session-bus.sh" "$@"
