#!/usr/bin/env bash
# cmake --install puts every file where desktops and software centres look,
# the icons at their sizes. Usage: install-layout.sh <build dir>
set -euo pipefail
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$1" --prefix "$prefix" >/dev/null
cd "$prefix" && id=io.github.tintwright.Tintwright
test -x bin/tintwright
ls share/applications/$id.desktop share/metainfo/$id.metainfo.xml share/icons/hicolor/scalable/apps/$id.svg \
  share/doc/tintwright/copyright >/dev/null
for size in 16 24 32 48 64 128 256; do
  # PNG header: width and height big-endian at bytes 16 and 20.
  dims=$(od -An -tu1 -j16 -N8 share/icons/hicolor/${size}x$size/apps/$id.png | awk '{print $3*256+$4 "x" $7*256+$8}')
  [[ $dims == "${size}x$size" ]] || { echo "FAIL: the ${size}px icon is $dims" >&2; exit 1; }
done
