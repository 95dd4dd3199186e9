#!/usr/bin/env bash
# Installs every Debian package the project builds, tests and runs with.
# Idempotent: when everything is present it prints nothing and returns at once.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-tools-private-dev qt6-base-private-dev designer-qt6
  libqt6uitools6 qt6-declarative-dev libqt6svg6
  libgl-dev libxkbcommon-dev
  googletest libgtest-dev libbenchmark-dev
  clang libclang-rt-14-dev
  xvfb xauth x11-utils fonts-dejavu-core
  qt6-qpa-plugins
  at-spi2-core python3-pyatspi python3-dbus dbus
  python3-dev python3-pyqt6 python3-pyqt6.sip pyqt6-dev pyqt6-dev-tools sip-tools python3-sipbuild
  python3-pytest python3-pytestqt
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
