#!/usr/bin/env bash
# Library benchmark: load, one add-color and one rename (each a full rewrite),
# one history add, and memory, at 20 and 200 palettes of 100 colors plus a
# full history. Medians of several rounds; figures in milliseconds and
# megabytes. "RSS MB" is the resident growth right after loading, "kept MB"
# what stays once the JSON reader's scratch memory is handed back, "B/color"
# that per color.
# Usage: bench/library.sh [palette count...]   (default: 20 200)
# Targets: at 20x100 (2,000 colors, a large real library) load under 8 ms
# and one add-color under 16 ms; 200x100 must still work, with no target.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
TINTWRIGHT_BUILD_DIR="$build" "$root/scripts/build.sh" >/dev/null
# What the stores keep of their folders stays out of the user's.
state=$(mktemp -d)
trap 'rm -rf "$state"' EXIT
XDG_STATE_HOME="$state" "$build/bench/library/bench_library" "$@"
