#!/bin/sh
# Runs a command on a session bus of its own that starts no service of the
# machine's (no desktop portal, no document portal): only, with --a11y, the
# accessibility bus that AT-SPI needs.
# Usage: session-bus.sh [--a11y] <command> [arguments]
set -eu
dir=$(mktemp -d /tmp/tintwright-bus.XXXXXX)
trap 'rm -rf "$dir"' EXIT
mkdir "$dir/services"
if [ "$1" = --a11y ]; then
  shift
  cp /usr/share/dbus-1/services/org.a11y.Bus.service "$dir/services/"
fi
cat >"$dir/session.conf" <<CONF
<busconfig><type>session</type><keep_umask/><listen>unix:dir=$dir</listen><auth>EXTERNAL</auth>
<servicedir>$dir/services</servicedir><policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
CONF
status=0
dbus-run-session --config-file="$dir/session.conf" -- "$@" || status=$?
exit $status
