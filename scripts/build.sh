#!/usr/bin/env bash
# Configures (once) and builds into build/ with Ninja.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BUILD_DIR:-$root/build}"
# ccache, where installed, makes rebuilds of unchanged files free.
launcher=()
command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" "$@"
fi
cmake --build "$build" --parallel "$(nproc)"
