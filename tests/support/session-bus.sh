#!/bin/sh
# Runs a command on a session bus of its own that starts no service of the
# machine's: no desktop portal, no document portal, no accessibility bus.
# Usage: session-bus.sh <command> [arguments]
set -eu
dir=$(mktemp -d /tmp/tintwright-bus.XXXXXX)
trap 'rm -rf "$dir"' EXIT
cat >"$dir/session.conf" <<CONF
<busconfig><type>session</type><keep_umask/><listen>unix:dir=$dir</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>
CONF
status=0
dbus-run-session --config-file="$dir/session.conf" -- "$@" || status=$?
exit $status
