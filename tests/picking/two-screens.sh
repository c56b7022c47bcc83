#!/bin/sh
# Splits the X display (3320 x 1080) into two monitors side by side, 1920 x
# 1080 and 1400 x 1050, which Qt takes for two screens, then runs the
# command. Both sizes are whole at every ratio the tests use.
# Usage: two-screens.sh <command> [arguments]
set -e
xrandr --setmonitor left 1920/508x1080/286+0+0 screen >/dev/null
xrandr --setmonitor right 1400/370x1050/278+1920+0 none >/dev/null
exec "$@"
