#!/usr/bin/env bash
# Starts Tintwright under its own Xvfb with sample palettes and history and
# saves a screenshot of every tab, of the add-color sheet and of a
# palette's export menu into
# docs/screenshots/.
# Usage: scripts/screenshots.sh [path to tintwright] [output folder]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
app=${1:-$root/build/src/tintwright}
out=${2:-$root/docs/screenshots}
display=${SCREENSHOT_DISPLAY:-:61}

for tool in Xvfb xdotool import xsetroot; do
  command -v "$tool" >/dev/null || { echo "screenshots.sh: $tool is missing (scripts/ensure-deps.sh installs it)" >&2; exit 1; }
done
[ -x "$app" ] || { echo "screenshots.sh: no executable at $app (build first)" >&2; exit 1; }
mkdir -p "$out"

scratch=$(mktemp -d /tmp/tintwright-shots.XXXXXX)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$scratch"
}
trap cleanup EXIT

# Sample data: two palettes (one with a very long name) and eight picks.
data="$scratch/data/Tintwright"
mkdir -p "$data" "$scratch/run"
chmod 700 "$scratch/run"
item() { # id name r g b date
  printf '{ "id": "%s", "name": "%s", "red": %s, "green": %s, "blue": %s, "alpha": 1, "dateAdded": "%s" }' "$@"
}
cat > "$data/history.json" <<JSON
[
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1001 "Picked Color" 1 0.5019607843137255 0 2026-11-20T10:00:08Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1002 "Picked Color" 0.2 0.4 0.8 2026-11-20T10:00:07Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1003 "Picked Color" 0.1803921568627451 0.8 0.44313725490196076 2026-11-20T10:00:06Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1004 "Picked Color" 0.9058823529411765 0.2980392156862745 0.23529411764705882 2026-11-20T10:00:05Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1005 "Picked Color" 0.6078431372549019 0.34901960784313724 0.7137254901960784 2026-11-20T10:00:04Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1006 "Picked Color" 0.9450980392156862 0.7686274509803922 0.058823529411764705 2026-11-20T10:00:03Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1007 "Picked Color" 0.10196078431372549 0.10196078431372549 0.11764705882352941 2026-11-20T10:00:02Z),
  $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1008 "Picked Color" 0.9254901960784314 0.9411764705882353 0.9450980392156862 2026-11-20T10:00:01Z)
]
JSON
long_name=$(printf 'Autumn%.0s' {1..34})
cat > "$data/palettes.json" <<JSON
[
  { "id": "0B5A9E2C-6D3F-4E21-A8C7-5F1B2D3C2001", "name": "Brand", "colors": [
      $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1001 "Orange" 1 0.5019607843137255 0 2026-11-20T10:01:00Z),
      $(item 6F1E0C4A-8B1D-4C55-9E39-0B7F0D3A1002 "Sky" 0.2 0.4 0.8 2026-11-20T10:01:01Z)
    ], "dateCreated": "2026-11-20T10:00:30Z" },
  { "id": "0B5A9E2C-6D3F-4E21-A8C7-5F1B2D3C2002", "name": "$long_name", "colors": [], "dateCreated": "2026-11-20T10:00:40Z" }
]
JSON

Xvfb "$display" -screen 0 640x520x24 -noreset -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 50); do xdpyinfo -display "$display" >/dev/null 2>&1 && break; sleep 0.1; done
export DISPLAY=$display
xsetroot -solid '#3a4750'

XDG_DATA_HOME="$scratch/data" XDG_STATE_HOME="$scratch/state" XDG_RUNTIME_DIR="$scratch/run" QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8 \
  "$app" >/dev/null 2>&1 &
pids+=($!)
wid=""
for _ in $(seq 100); do
  wid=$(xdotool search --onlyvisible --name '^Tintwright$' 2>/dev/null | head -1 || true)
  [ -n "$wid" ] && break
  sleep 0.1
done
[ -n "$wid" ] || { echo "screenshots.sh: the window never appeared" >&2; exit 1; }
xdotool windowmove "$wid" 20 20
# No window manager: give the window the keyboard ourselves.
xdotool windowfocus --sync "$wid" 2>/dev/null || true
sleep 0.6

shoot() { import -silent -window root -crop 300x400+20+20 +repage "$out/$1.png"; }
shoot_screen() { import -silent -window root -crop 440x480+0+0 +repage "$out/$1.png"; }

tabs=(picker history palettes convert contrast)
for i in "${!tabs[@]}"; do
  xdotool key "ctrl+$((i + 1))"
  sleep 0.5
  shoot "${tabs[$i]}"
done

# The add-color sheet, from the Picker tab's "Add to Palette" button.
xdotool key ctrl+1
sleep 0.4
xdotool mousemove 170 392 click 1
sleep 0.8
shoot_screen sheet

# Window coordinates to screen coordinates (the window sits at 20,20).
click_at() { xdotool mousemove $(( $1 + 20 )) $(( $2 + 20 )) click "${3:-1}"; }
retype() { xdotool key ctrl+a BackSpace; xdotool type --delay 20 "$1"; }

# Palettes: one palette opened.
xdotool key Escape
sleep 0.4
xdotool windowfocus --sync "$wid" 2>/dev/null || true
xdotool key ctrl+3
sleep 0.4
click_at 150 110
xdotool mousemove 600 500
sleep 0.5
shoot palette-detail
xdotool key alt+Left
sleep 0.3

# A palette card's context menu, with its export items.
click_at 150 110 3
sleep 0.5
shoot_screen palette-export-menu
xdotool key Escape
sleep 0.3

# Convert after committing a hex text typed without "#": the field keeps
# what was typed, every other notation follows.
xdotool key ctrl+4
sleep 0.4
click_at 177 145
retype 3d8bfd
xdotool key Return
sleep 0.4
shoot convert-committed

# Contrast: a failing pair, then one that passes AA.
xdotool key ctrl+5
sleep 0.4
click_at 77 225
retype '#777777'
click_at 221 225
retype '#888888'
sleep 0.3
shoot contrast-fail
retype '#767676'
click_at 77 225
retype '#FFFFFF'
sleep 0.3
shoot contrast-pass
# Red text on black: AA for most, not with protanopia; then a fix applied
# by keyboard (Tab to the first fix, Space).
click_at 77 225
retype '#000000'
click_at 221 225
retype '#FF3333'
xdotool key alt+v
sleep 0.4
shoot contrast-vision
xdotool key alt+v
retype '#AA3333'
sleep 0.3
shoot contrast-fixes
xdotool key Tab Tab space
sleep 0.4
shoot contrast-fixed

# Palettes: delete both through their context menus, then the empty state
# and the New Palette prompt it opens.
xdotool key ctrl+3
sleep 0.4
for _ in 1 2; do
  click_at 150 110 3
  sleep 0.4
  # Delete is the third item, after Export… and Copy as CSS.
  xdotool key Down Down Down Return
  sleep 0.4
done
shoot palettes-empty
click_at 150 271
sleep 0.6
xdotool type --delay 20 "Spring"
sleep 0.3
shoot_screen palettes-new
xdotool key Escape
sleep 0.4

# Picker with no palettes left ("Create one"), then History emptied with
# its "Clear" button.
xdotool windowfocus --sync "$wid" 2>/dev/null || true
xdotool key ctrl+1
sleep 0.4
shoot picker-no-palettes
xdotool key ctrl+2
sleep 0.4
click_at 265 64
xdotool mousemove 600 500
sleep 0.4
shoot history-empty

echo "screenshots in $out"
