#!/usr/bin/env bash
# The main job: installs what is missing, builds everything and starts the demo application.
# Without a display the demo runs offscreen, performs a short scripted run and writes a picture.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/install-deps.sh"
build=${KEL_BUILD_DIR:-$root/build}
cmake -S "$root" -B "$build" -G Ninja >/dev/null
cmake --build "$build"
bash "$root/scripts/python-register.sh" "$build"
if [ -x "$build/bin/fractiondemo" ]; then
  if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    QT_QPA_PLATFORM=offscreen "$build/bin/fractiondemo" --scripted "$root/out/fractiondemo.png"
  else
    "$build/bin/fractiondemo"
  fi
else
  "$build/bin/fractionexample"
fi
