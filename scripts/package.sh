#!/usr/bin/env bash
# Builds a release of Tintwright and packs it as a Debian package.
# Usage: scripts/package.sh [output folder]   (default: build-package/)
# Install it with:  sudo apt install ./build-package/tintwright_<version>_<arch>.deb
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build="${TINTWRIGHT_PACKAGE_BUILD_DIR:-$root/build-package}"
out=$(realpath -m "${1:-$build}")
"$root/scripts/ensure-deps.sh" run
command -v dpkg-shlibdeps >/dev/null && command -v file >/dev/null || {
  echo "Packing needs dpkg-dev and file: apt-get install dpkg-dev file" >&2; exit 1; }
cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr \
  -DTINTWRIGHT_BUILD_TESTS=OFF -DTINTWRIGHT_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" --parallel "$(nproc)"
(cd "$build" && cpack -G DEB -B "$out" >/dev/null)
rm -rf "$out/_CPack_Packages"
ls -1 "$out"/tintwright_*.deb
