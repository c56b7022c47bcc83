#!/usr/bin/env bash
# Synced-folder soak: another writer replaces palettes.json (atomic rename or
# rewrite in place, now and then truncated first) while the program adds
# colors, in random interleavings, with and without the program's event loop
# running in between. After every round every change from both sides must be
# in the file. Prints rounds, lost changes (must be 0) and the median time of
# one add-color that had to take in an outside change.
# Usage: bench/sync.sh [rounds] [seed]   (default: 2000 1)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
TINTWRIGHT_BUILD_DIR="$build" "$root/scripts/build.sh" >/dev/null
"$build/bench/sync/bench_sync" "$@"
