#!/usr/bin/env bash
# Installs the built package into a scratch prefix, builds the consumer example against it with
# find_package(kelfractionint) and runs it offscreen.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${KEL_BUILD_DIR:-$root/build}
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
cmake -S "$root/examples/consumer" -B "$prefix/consumer-build" -G Ninja \
      -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$prefix/consumer-build"
QT_QPA_PLATFORM=offscreen "$prefix/consumer-build/fractionconsumer"
test -f "$prefix"/lib/*/qt6/plugins/designer/*.so || test -n "$(find "$prefix" -path '*plugins/designer/*.so' -print -quit)" \
  || { echo "the Designer plugin was not installed"; exit 1; }
if [ -n "$(find "$prefix" -name 'kelfractionint.abi3.so' -print -quit)" ]; then
  pythondir=$(dirname "$(dirname "$(find "$prefix" -name 'kelfractionint.abi3.so' -print -quit)")")
  PYTHONPATH=$pythondir QT_QPA_PLATFORM=offscreen /usr/bin/python3 -c \
    'import kelfractionint; from PyQt6.QtWidgets import QApplication; app = QApplication([]); assert kelfractionint.fractioni().fractiontext() == "4 1/7"' \
    || { echo "the installed Python package does not import"; exit 1; }
fi
echo "package check passed"
