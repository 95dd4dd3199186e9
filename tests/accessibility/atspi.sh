#!/usr/bin/env bash
# Runs the screen-reader check in a private X server and D-Bus session: the form under test and
# the checking script meet on an accessibility bus of their own. Exit 77 (skipped) when the
# pieces of the accessibility stack are missing.
set -euo pipefail
form=$1
here=$(cd "$(dirname "$0")" && pwd)
for tool in xvfb-run dbus-run-session /usr/libexec/at-spi-bus-launcher; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed (at-spi2-core, dbus, xvfb)"; exit 77; }
done
/usr/bin/python3 -c 'import pyatspi, dbus' 2>/dev/null || { echo "SKIP: python3-pyatspi or python3-dbus is not installed"; exit 77; }
exec xvfb-run -a -s "-screen 0 1024x768x24" \
  dbus-run-session -- /usr/bin/python3 "$here/atspi_check.py" "$form"
