#!/usr/bin/env bash
# Start-up benchmark under Xvfb: time from process start to the first map of
# the main window, and resident memory 2 s after it, for tintwright and for a
# bare Qt 6 Widgets window of the same size, side by side in one run.
# Rounds alternate between the two; medians (and the fastest map) are shown.
# Targets: tintwright within 1.1x of the bare window's map time, and its
# resident memory within 1.15x of the bare window's.
# For reference, a bare window with one label is timed too: the first text
# sets up the font database, a cost every window with text pays.
# Both run in a private session bus, as on a desktop. Without one, the first
# accessible name makes Qt's accessibility bridge start a bus through
# dbus-launch before the window maps (about 5 ms), which no desktop session
# ever does.
# Also shown: when tintwright's first content (the "Pick Color" button) is on
# screen, since the Picker tab is built on the first event-loop turn after
# the window is shown.
# Usage: bench/startup.sh [rounds]   (default 11; TINTWRIGHT_BENCH_BUILD_DIR
# picks the build tree, STARTUP_BENCH_DISPLAY the X display, default :63)
set -euo pipefail
if [[ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]] && command -v dbus-run-session >/dev/null; then
  exec dbus-run-session -- "$0" "$@"
fi
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_BENCH_BUILD_DIR:-$root/build-bench}"
rounds=${1:-11}
display=${STARTUP_BENCH_DISPLAY:-:63}
if [[ ! -f "$build/build.ninja" ]]; then
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DTINTWRIGHT_BUILD_TESTS=OFF >/dev/null
fi
cmake --build "$build" --target tintwright bench_bare_window bench_startup_probe --parallel 2 >/dev/null

scratch=$(mktemp -d /tmp/tintwright-startup.XXXXXX)
xvfb_pid=""
cleanup() {
  [[ -n "$xvfb_pid" ]] && kill "$xvfb_pid" 2>/dev/null
  wait 2>/dev/null || true
  rm -rf "$scratch"
}
trap cleanup EXIT

Xvfb "$display" -screen 0 1920x1080x24 -noreset -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
for _ in $(seq 50); do
  DISPLAY=$display xdpyinfo >/dev/null 2>&1 && break
  sleep 0.1
done

# A data folder with a few palettes and a full history, as a user has it.
data="$scratch/data/Tintwright"
mkdir -p "$data" "$scratch/run"
chmod 700 "$scratch/run"
python3 - "$data" <<'PY'
import json, sys, uuid
item = lambda i: {"id": str(uuid.uuid4()).upper(), "name": "Color %d" % i, "red": (i % 7) / 7,
                  "green": (i % 5) / 5, "blue": (i % 3) / 3, "alpha": 1, "dateAdded": "2026-01-01T00:00:00Z"}
json.dump([item(i) for i in range(20)], open(sys.argv[1] + "/history.json", "w"), indent=2)
json.dump([{"id": str(uuid.uuid4()).upper(), "name": "Palette %d" % p, "colors": [item(i) for i in range(12)],
            "dateCreated": "2026-01-01T00:00:00Z"} for p in range(8)],
          open(sys.argv[1] + "/palettes.json", "w"), indent=2)
PY

probe="$build/bench/startup/bench_startup_probe"
run_one() { # [--until-pixel X,Y,RRGGBB] program [arguments] -> "map rss [content]"
  local options=()
  if [[ "$1" == --until-pixel ]]; then options=("$1" "$2"); shift 2; fi
  DISPLAY=$display QT_QPA_PLATFORM=xcb XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state" XDG_RUNTIME_DIR="$scratch/run" \
    LC_ALL=C.UTF-8 "$probe" "${options[@]}" 2000 "$@" | sed -E 's/[a-z_]+=//g'
}
# Content on screen: a pixel inside the "Pick Color" button, left of its
# label, in the accent color.
content=(--until-pixel 20,193,0A84FF)

bare="$build/bench/startup/bench_bare_window"
app="$build/src/tintwright"
# One unmeasured start of each, so both read their libraries from the cache.
run_one "$bare" >/dev/null
run_one "${content[@]}" "$app" >/dev/null

: > "$scratch/bare" ; : > "$scratch/label" ; : > "$scratch/app"
for i in $(seq "$rounds"); do
  run_one "$bare" >> "$scratch/bare"
  run_one "$bare" --label >> "$scratch/label"
  run_one "${content[@]}" "$app" >> "$scratch/app"
done

python3 - "$scratch/bare" "$scratch/app" "$rounds" "$scratch/label" <<'PY'
import statistics, sys
def load(path):
    rows = [tuple(map(float, l.split())) for l in open(path) if l.strip()]
    return [r[0] for r in rows], [r[1] for r in rows], [r[2] for r in rows if len(r) > 2]
bare_map, bare_rss, _ = load(sys.argv[1])
app_map, app_rss, app_content = load(sys.argv[2])
label_map, label_rss, _ = load(sys.argv[4])
med = statistics.median
print("start-up under Xvfb, %s rounds each, alternating (medians; fastest in brackets)" % sys.argv[3])
print("%-22s %16s %14s" % ("", "first map (ms)", "RSS +2 s (MiB)"))
print("%-22s %9.1f (%5.1f) %14.1f" % ("bare Qt window", med(bare_map), min(bare_map), med(bare_rss)))
print("%-22s %9.1f (%5.1f) %14.1f" % ("bare window + label", med(label_map), min(label_map), med(label_rss)))
print("%-22s %9.1f (%5.1f) %14.1f" % ("tintwright", med(app_map), min(app_map), med(app_rss)))
if app_content:
    print("%-22s %9.1f (%5.1f)   Pick Color button drawn" % ("tintwright content", med(app_content), min(app_content)))
ratio = med(app_map) / med(bare_map)
print("map time ratio %.2fx (target <= 1.1x): %s" % (ratio, "met" if ratio <= 1.1 else "MISSED"))
memory = med(app_rss) / med(bare_rss)
print("resident memory ratio %.2fx (target <= 1.15x): %s" % (memory, "met" if memory <= 1.15 else "MISSED"))
PY
