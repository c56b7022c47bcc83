#!/usr/bin/env bash
# cmake --install into a scratch prefix puts every file where desktops and
# software centres look for it.
# Usage: install-layout.sh <build dir>
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
id=io.github.tintwright.Tintwright
expected=(
  bin/tintwright
  share/applications/$id.desktop
  share/metainfo/$id.metainfo.xml
  share/icons/hicolor/scalable/apps/$id.svg
  share/doc/tintwright/copyright
)
for size in 16 24 32 48 64 128 256; do
  expected+=(share/icons/hicolor/${size}x${size}/apps/$id.png)
done
status=0
for file in "${expected[@]}"; do
  if [[ ! -s $prefix/$file ]]; then echo "missing: $file" >&2; status=1; fi
done
[[ -x $prefix/bin/tintwright ]] || { echo "bin/tintwright is not executable" >&2; status=1; }
for size in 16 24 32 48 64 128 256; do
  png=$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png
  [[ -f $png ]] || continue
  # PNG header: width and height are big-endian at bytes 16 and 20.
  dims=$(od -An -tu1 -j16 -N8 "$png" | awk '{print $3*256+$4 "x" $7*256+$8}')
  [[ $dims == "${size}x${size}" ]] || { echo "$png is $dims" >&2; status=1; }
done
[[ $status -eq 0 ]] && echo "PASS: ${#expected[@]} files installed"
exit $status
