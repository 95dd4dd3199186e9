#!/usr/bin/env bash
# Opens a form in the real Qt Designer under a virtual X server; the probe plugin reports the
# form window once Designer is idle. Fails when the form opens modified.
# Usage: realdesigner.sh <designer> <plugin dir> <probe plugin dir> <form.ui>
set -uo pipefail
designer="$1" plugins="$2" probe="$3" form="$4"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cp "$form" "$work/"
QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME="$work/config" QT_PLUGIN_PATH="$plugins:$probe" KEL_PROBE_OUT="$work/report.txt" \
  timeout 90 xvfb-run -a "$designer" "$work/$(basename "$form")" >"$work/designer.log" 2>&1
report="$(cat "$work/report.txt" 2>/dev/null)"
# The form is not dirty and there is nothing to undo.
if [[ "$report" != *" dirty 0 undo 0" ]]; then
  echo "FAIL $form: ${report:-Designer gave no report}"; cat "$work/designer.log"; exit 1
fi
echo "PASS $form: $report"
