#!/usr/bin/env bash
# Synced-folder soak: a laptop and a desktop on one data folder kept in step
# by a Syncthing-like tool (copies after 30-400 ms through a temporary file
# renamed into place; when both sides changed, the newer version wins and
# the other becomes a conflict copy on both). Each round runs random user
# operations (create, rename, add color, remove color, delete palette, pick,
# clear history) on either computer, up to 250 ms apart, then waits for the
# folders to settle. Prints rounds, operations, conflicts, copies merged,
# and what was lost or came back (targets 0).
# OWN_ONLY=1: each side changes and deletes only what it made. STEPWISE=1:
# the sync tool pushes only between operations, each step seen through
# (the same seed gives the same run; no save is raced).
# Usage: bench/sync.sh [rounds] [operations per round] [seed]   (default: 20 40 1)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
TINTWRIGHT_BUILD_DIR="$build" "$root/scripts/build.sh" >/dev/null
# This computer's own state stays out of the user's.
state=$(mktemp -d)
trap 'rm -rf "$state"' EXIT
XDG_STATE_HOME="$state" "$build/bench/sync/bench_sync" "$@"
