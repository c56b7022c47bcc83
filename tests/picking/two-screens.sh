#!/bin/sh
# Splits the X display into two monitors side by side, which Qt takes for
# two screens, then runs the command: by default 1920 x 1080 and 1400 x
# 1050 (a display of 3320 x 1080); TWO_SCREENS="<w>x<h> <w>x<h>" for others.
# The tests find each screen's pixels in TINTWRIGHT_SCREEN_PIXELS.
# Usage: two-screens.sh <command> [arguments]
set -e
set -- ${TWO_SCREENS:-1920x1080 1400x1050} "$@"
left=$1 right=$2
shift 2
lw=${left%x*} lh=${left#*x} rw=${right%x*} rh=${right#*x}
xrandr --setmonitor left "$lw/$((lw / 4))x$lh/$((lh / 4))+0+0" screen >/dev/null
xrandr --setmonitor right "$rw/$((rw / 4))x$rh/$((rh / 4))+$lw+0" none >/dev/null
export TINTWRIGHT_SCREEN_PIXELS="0,0,$lw,$lh $lw,0,$rw,$rh"
exec "$@"
