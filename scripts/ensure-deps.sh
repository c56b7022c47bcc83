#!/usr/bin/env bash
# Installs the Debian packages that building, running or testing needs.
# Usage: scripts/ensure-deps.sh run|test
# On a Debian-like system missing packages are installed with apt-get (with
# sudo when not root); elsewhere the missing list is printed and we stop.
set -euo pipefail

build_packages=(cmake ninja-build g++ pkg-config qt6-base-dev qt6-svg-dev libqt6svg6 qt6-qpa-plugins
                libgl-dev libxkbcommon-dev libxcb1-dev fonts-dejavu-core dpkg-dev file qt6-wayland)
test_packages=(xvfb xauth x11-xserver-utils x11-utils xdotool xclip imagemagick dbus dbus-x11
               python3 desktop-file-utils appstream
               clang libclang-rt-14-dev weston wl-clipboard)

case "${1:-test}" in
  run) wanted=("${build_packages[@]}") ;;
  test) wanted=("${build_packages[@]}" "${test_packages[@]}") ;;
  *) echo "usage: $0 run|test" >&2; exit 2 ;;
esac

missing=()
for package in "${wanted[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

if ! command -v apt-get >/dev/null 2>&1; then
  echo "Tintwright needs these Debian 12 packages (or your system's equivalents):" >&2
  echo "  ${missing[*]}" >&2
  echo "Install them, then run this command again." >&2
  exit 1
fi

sudo=()
if [[ $(id -u) -ne 0 ]]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "Missing packages, and no sudo to install them as root:" >&2
    echo "  apt-get install ${missing[*]}" >&2
    exit 1
  fi
  sudo=(sudo)
fi

echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
