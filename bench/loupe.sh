#!/usr/bin/env bash
# Loupe benchmark under Xvfb at 1920x1080 and 3840x2160: median time of the
# one screen capture at pick start and of a loupe redraw (pointer moved one
# point, grid and readout repainted and flushed) at every zoom (7, 11, 15
# and 21 cells).
# Targets: a move to the next frame under 8 ms median at every zoom (under
# 1 ms overall), 4K/1080p redraw ratio under 1.3, capture under 40 ms at 4K.
# Usage: bench/loupe.sh   (TINTWRIGHT_BENCH_BUILD_DIR picks the build tree;
# LOUPE_BENCH_DISPLAYS the two X displays to use, default ":50 :51")
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BENCH_BUILD_DIR:-$root/build-bench}"
if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTINTWRIGHT_BUILD_TESTS=OFF >/dev/null
fi
cmake --build "$build" --target bench_loupe --parallel 2 >/dev/null
read -r -a displays <<<"${LOUPE_BENCH_DISPLAYS:-:50 :51}"

xvfb_pid=""
cleanup() { [[ -n "$xvfb_pid" ]] && kill "$xvfb_pid" 2>/dev/null; wait 2>/dev/null || true; }
trap cleanup EXIT

run_at() { # display size -> prints the benchmark line
  local display=$1 size=$2
  Xvfb "$display" -screen 0 "${size}x24" -noreset -nolisten tcp >/dev/null 2>&1 &
  xvfb_pid=$!
  for _ in $(seq 50); do
    DISPLAY=$display xsetroot -solid '#3366cc' 2>/dev/null && break
    sleep 0.1
  done
  DISPLAY=$display QT_QPA_PLATFORM=xcb "$build/bench/loupe/bench_loupe"
  kill "$xvfb_pid"; wait "$xvfb_pid" 2>/dev/null || true
  xvfb_pid=""
}

hd=$(run_at "${displays[0]}" 1920x1080)
uhd=$(run_at "${displays[1]}" 3840x2160)
echo "$hd"
echo "$uhd"
slowest=$(grep -h cells <<<"$hd
$uhd" | sed -E 's/.*redraw median ([0-9.]+) ms.*/\1/' | sort -g | tail -1)
awk -v s="$slowest" 'BEGIN { printf "slowest zoom: move to next frame %.3f ms median (target < 8 ms): %s\n", s, (s < 8) ? "met" : "MISSED" }'
hd=$(grep -v cells <<<"$hd")
uhd=$(grep -v cells <<<"$uhd")
redraw() { sed -E 's/.*redraw median ([0-9.]+) ms.*/\1/' <<<"$1"; }
capture() { sed -E 's/.*capture median ([0-9.]+) ms.*/\1/' <<<"$1"; }
awk -v a="$(redraw "$hd")" -v b="$(redraw "$uhd")" -v c="$(capture "$uhd")" 'BEGIN {
  printf "redraw 4K/1080p ratio %.2f (target < 1.3); redraw targets < 1 ms: %s; 4K capture %.1f ms (target < 40 ms): %s\n",
         b / a, (a < 1 && b < 1) ? "met" : "MISSED", c, (c < 40) ? "met" : "MISSED" }'
