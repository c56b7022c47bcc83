#!/usr/bin/env bash
# Large-library benchmark: load, one add-color (a full rewrite) and memory at
# 1x, 10x and 100x of 200 palettes x 100 colors plus a full history.
# Medians of several rounds; figures in milliseconds and megabytes. "RSS MB"
# is the resident growth right after loading, "kept MB" what stays once the
# JSON reader's scratch memory is handed back, "B/color" that per color.
# Usage: bench/library.sh [scale...]   (default: 1 10 100)
# Targets at 1x: add-color under 16 ms, load under 50 ms; growth linear.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
TINTWRIGHT_BUILD_DIR="$build" "$root/scripts/build.sh" >/dev/null
"$build/bench/library/bench_library" "$@"
