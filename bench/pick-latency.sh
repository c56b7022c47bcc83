#!/usr/bin/env bash
# Pick latency. X11, under Xvfb at 1920x1080 and 3840x2160: from a click on
# "Pick Color" (xdotool) to the loupe's first frame on screen. Wayland, in a
# Weston of its own at 1920x1080 with the tests' fake portal answering at
# once: from the click (the program's own there) to the first frame of the
# loupe over the portal's screenshot; and `tintwright --pick` from the
# printed color to the process's exit. Every X11 and Wayland round is a fresh
# process making several picks: the first two picks after start are shown
# apart from the later ones. Medians over the rounds (slowest in brackets).
# Targets (2-core machine): X11 first frame under 16 ms at both sizes;
# Wayland first frame under 150 ms; the command's exit under 100 ms.
# Usage: bench/pick-latency.sh [rounds]   (default 7; TINTWRIGHT_BENCH_BUILD_DIR
# picks the build tree, PICK_BENCH_DISPLAY the X display, default :57)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BENCH_BUILD_DIR:-$root/build-bench}"
rounds=${1:-7}
display=${PICK_BENCH_DISPLAY:-:57}
picks=6
if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTINTWRIGHT_BUILD_TESTS=OFF >/dev/null
fi
cmake --build "$build" --target bench_pick_latency fake_screenshot_portal tintwright --parallel 2 >/dev/null
bench="$build/bench/picklatency/bench_pick_latency"
portal=$(find "$build" -name fake_screenshot_portal -type f -perm -u+x | head -1)

scratch=$(mktemp -d /tmp/tintwright-picklatency.XXXXXX)
xvfb_pid=""
cleanup() {
  [[ -n "$xvfb_pid" ]] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null || true
  rm -rf "$scratch"
}
trap cleanup EXIT
mkdir -m 700 "$scratch/run"
# What the program keeps of its data folders stays out of the user's.
export XDG_STATE_HOME="$scratch/state"

results="$scratch/results"
: > "$results"
for size in 1920x1080 3840x2160; do
  Xvfb "$display" -screen 0 "${size}x24" -noreset -nolisten tcp >/dev/null 2>&1 &
  xvfb_pid=$!
  for _ in $(seq 50); do
    DISPLAY=$display xsetroot -solid '#3366cc' 2>/dev/null && break
    sleep 0.1
  done
  for round in $(seq "$rounds"); do
    DISPLAY=$display QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR="$scratch/run" LC_ALL=C.UTF-8 \
      dbus-run-session -- "$bench" "$picks" | sed "s/^/$size x11 /" >> "$results"
  done
  kill "$xvfb_pid"; wait "$xvfb_pid" 2>/dev/null || true
  xvfb_pid=""
done

# Wayland: Weston in an Xvfb of its own, a screenshot of a known picture.
Xvfb "$display" -screen 0 1920x1080x24 -noreset -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
for _ in $(seq 50); do DISPLAY=$display xdpyinfo >/dev/null 2>&1 && break; sleep 0.1; done
convert -size 1920x1080 gradient:'#3366cc-#ff8000' "$scratch/shot.png"
for round in $(seq "$rounds"); do
  DISPLAY=$display WESTON_WIDTH=1920 WESTON_HEIGHT=1080 FAKE_SCREENSHOT="$scratch/shot.png" LC_ALL=C.UTF-8 \
    "$root/tests/support/weston-run.sh" "$bench" "$picks" "$portal" | sed "s/^/1920x1080 wayland /" >> "$results"
done
DISPLAY=$display "$root/tests/support/weston-run.sh" python3 "$root/bench/picklatency/pick_exit.py" \
  "$build/src/tintwright" "$portal" "$rounds" | sed "s/^/1920x1080 wayland 0 1 /" >> "$results"
kill "$xvfb_pid"; wait "$xvfb_pid" 2>/dev/null || true
xvfb_pid=""

python3 - "$results" "$rounds" <<'PY'
import collections, statistics, sys
rows = collections.defaultdict(list)
for line in open(sys.argv[1]):
    words = line.split()
    size, platform, _, pick, what, ms = words[:6]
    group = "pick 1" if pick == "1" else "pick 2" if pick == "2" else "later"
    rows[(size, platform, what, group)].append(float(ms))
print("click on Pick Color -> loupe's first frame, ms (median of %s rounds; slowest in brackets)" % sys.argv[2])
print("%-10s %-8s %-14s %16s %16s %16s" % ("screen", "", "", "pick 1", "pick 2", "later picks"))
verdicts = []
for size, platform, target in (("1920x1080", "x11", 16), ("3840x2160", "x11", 16), ("1920x1080", "wayland", 150)):
    cells = []
    for group in ("pick 1", "pick 2", "later"):
        values = rows.get((size, platform, "loupe-frame", group))
        cells.append("%7.1f (%6.1f)" % (statistics.median(values), max(values)) if values else "-")
    print("%-10s %-8s %-14s %16s %16s %16s" % (size, platform, "loupe-frame", *cells))
    medians = [statistics.median(rows[(size, platform, "loupe-frame", g)])
               for g in ("pick 1", "pick 2", "later") if rows.get((size, platform, "loupe-frame", g))]
    worst = max(medians) if medians else float("inf")
    verdicts.append("%s %s first frame < %d ms: %s" % (platform, size, target, "met" if worst < target else "MISSED"))
exits = rows.get(("1920x1080", "wayland", "pick-exit", "pick 1"), [])
if exits:
    print("tintwright --pick on Wayland, printed -> exit: median %.1f ms (slowest %.1f)" % (statistics.median(exits), max(exits)))
verdicts.append("command exit < 100 ms: %s" % ("met" if exits and statistics.median(exits) < 100 else "MISSED"))
print("; ".join(verdicts))
PY
