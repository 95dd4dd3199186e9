#!/usr/bin/env bash
# Makes the Python package of a build importable by Debian's python3: a .pth file naming
# <build>/python in the system's site folder (the user's when that is not writable), and the
# package's uic widget plugin copied into PyQt6's plugin folder, where pyuic6 looks.
set -euo pipefail
build=$1
[ -d "$build/python/kelfractionint" ] || exit 0
site=$(/usr/bin/python3 -c 'import site; print(site.getsitepackages()[0])')
if ! mkdir -p "$site" 2>/dev/null || [ ! -w "$site" ]; then
  site=$(/usr/bin/python3 -m site --user-site)
  mkdir -p "$site"
fi
echo "$build/python" > "$site/kelfractionint.pth"
plugins=$(/usr/bin/python3 -c 'import os, PyQt6.uic; print(os.path.join(os.path.dirname(PyQt6.uic.__file__), "widget-plugins"))')
if [ -w "$plugins" ]; then
  cp "$build/python/kelfractionint/uic/kelfractionint_uic.py" "$plugins/kelfractionint_uic.py"
fi
