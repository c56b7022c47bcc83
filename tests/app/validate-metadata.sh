#!/usr/bin/env bash
# The desktop entry and metainfo pass their validators, the newest release
# is the project's version and every screenshot named is in the tree.
# Usage: validate-metadata.sh <source dir> <project version>
set -euo pipefail
cd "$1"
metainfo=data/io.github.tintwright.Tintwright.metainfo.xml
desktop-file-validate data/io.github.tintwright.Tintwright.desktop
appstreamcli validate --no-net "$metainfo"
newest=$(grep -o '<release version="[^"]*"' "$metainfo" | head -1 | cut -d'"' -f2)
[[ $newest == "$2" ]] || { echo "FAIL: newest release $newest, project $2" >&2; exit 1; }
ls $(grep -o 'docs/screenshots/[^<]*' "$metainfo") >/dev/null
