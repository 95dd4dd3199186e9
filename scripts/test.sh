#!/usr/bin/env bash
# The test command: installs what is missing, builds everything with warnings as errors and runs
# the whole test suite (offscreen, no display needed).
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/install-deps.sh"
build=${KEL_BUILD_DIR:-$root/build}
cmake -S "$root" -B "$build" -G Ninja -DKEL_WERROR=ON >/dev/null
cmake --build "$build"
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2 --timeout 300
