#!/usr/bin/env bash
# Configures (once) and builds into build/ with Ninja.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
fi
cmake --build "$build" --parallel "$(nproc)"
