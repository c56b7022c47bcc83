#!/usr/bin/env bash
# The desktop entry and the AppStream metainfo pass their validators, the
# metainfo's newest release is the project version, and every screenshot
# it names is in docs/screenshots.
# Usage: validate-metadata.sh <source dir> <project version>
set -euo pipefail
source_dir=$1 version=$2
id=io.github.tintwright.Tintwright
desktop=$source_dir/data/$id.desktop
metainfo=$source_dir/data/$id.metainfo.xml
fail() { echo "FAIL: $*" >&2; exit 1; }

desktop-file-validate "$desktop"
appstreamcli validate --no-net "$metainfo"

newest=$(grep -o '<release version="[^"]*"' "$metainfo" | head -1 | cut -d'"' -f2)
[[ $newest == "$version" ]] || fail "metainfo's newest release is $newest, the project is $version"

grep -q "^Icon=$id$" "$desktop" || fail "desktop entry does not use the icon $id"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo" || fail "metainfo does not launch $id.desktop"

missing=0
for shot in $(grep -o 'docs/screenshots/[^<]*' "$metainfo"); do
  [[ -f $source_dir/$shot ]] || { echo "missing screenshot: $shot" >&2; missing=1; }
done
[[ $missing -eq 0 ]] || fail "screenshots named in the metainfo are missing"
echo "PASS"
