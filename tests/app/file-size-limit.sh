#!/usr/bin/env bash
# A save over `ulimit -f` is reported, not fatal: merging a conflict copy at
# start saves palettes.json, far over the limit. Usage: file-size-limit.sh <tintwright>
set -euo pipefail
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_DATA_HOME=$scratch/data XDG_STATE_HOME=$scratch/state XDG_RUNTIME_DIR=$scratch/runtime QT_QPA_PLATFORM=offscreen
mkdir -p "$XDG_DATA_HOME/Tintwright" -m 700 "$XDG_RUNTIME_DIR"
colors=$(for i in $(seq 100 199); do printf '{"id": "00000000-0000-4000-8000-000000000%s", "name": "c", "red": 0.5, "green": 0.25, "blue": 0.75, "alpha": 1, "dateAdded": "2025-01-02T03:04:05Z"},' $i; done)
printf '[{"id": "11111111-0000-4000-8000-000000000001", "name": "theirs", "colors": [%s], "dateCreated": "2025-01-02T03:04:05Z"}]' \
  "${colors%,}" >"$XDG_DATA_HOME/Tintwright/palettes.sync-conflict-20250102-030405-ABCDEFG.json"
# 2 blocks of 512 bytes: room for the instance's lock file, not the palettes.
out=$( (ulimit -f 2; exec timeout -s TERM 3 "$1") ) && rc=0 || rc=$?
echo "$out"
[[ $rc -eq 124 ]] || { echo "FAIL: exit $rc, not still running after 3 s" >&2; exit 1; }
grep -q '^Failed to save palettes: ' <<<"$out"
