#!/usr/bin/env bash
# A save over the file size limit (ulimit -f) is reported, not fatal: the
# program merges a conflict copy at start, which saves palettes.json, with a
# limit far below the file's size, and must say so and keep running.
# Usage: file-size-limit.sh <tintwright>
set -euo pipefail
app=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_DATA_HOME=$scratch/data XDG_RUNTIME_DIR=$scratch/runtime QT_QPA_PLATFORM=offscreen
mkdir -p "$XDG_DATA_HOME/Tintwright" "$XDG_RUNTIME_DIR"; chmod 700 "$XDG_RUNTIME_DIR"
folder=$XDG_DATA_HOME/Tintwright

colors=$(for i in $(seq 100 199); do
  printf '{"id": "00000000-0000-4000-8000-000000000%s", "name": "c%s", "red": 0.5, "green": 0.25, "blue": 0.75, "alpha": 1, "dateAdded": "2025-01-02T03:04:05Z"},' "$i" "$i"
done)
printf '[{"id": "11111111-0000-4000-8000-000000000001", "name": "theirs", "colors": [%s], "dateCreated": "2025-01-02T03:04:05Z"}]' \
  "${colors%,}" >"$folder/palettes.sync-conflict-20250102-030405-ABCDEFG.json"

# 2 blocks of 512 bytes: room for the instance's lock file, not for the palettes.
set +e
out=$( (ulimit -f 2; exec timeout -s TERM 3 "$app") )
rc=$?
set -e
echo "$out"
echo "exit $rc"
[[ $rc -eq 124 ]] || { echo "FAIL: expected to be still running after 3 s (timeout's 124), got $rc" >&2; exit 1; }
grep -q '^Failed to save palettes: ' <<<"$out" || { echo "FAIL: no save failure reported" >&2; exit 1; }
echo "ok"
