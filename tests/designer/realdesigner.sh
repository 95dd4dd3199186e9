#!/usr/bin/env bash
# Opens each form given in the real Qt Designer under a virtual X server; the probe plugin
# reports the form window once Designer is idle. Fails when a form opens modified.
# Usage: realdesigner.sh <designer> <plugin dir> <probe plugin dir> form.ui...
set -uo pipefail
designer="$1" plugins="$2" probe="$3"
shift 3
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
status=0
for form in "$@"; do
  cp "$form" "$work/"
  copy="$work/$(basename "$form")"
  report="$work/report.txt"
  rm -f "$report"
  QT_QPA_PLATFORM=xcb XDG_CONFIG_HOME="$work/config" QT_PLUGIN_PATH="$plugins:$probe" KEL_PROBE_OUT="$report" \
    timeout 90 xvfb-run -a "$designer" "$copy" >"$work/designer.log" 2>&1
  if [ ! -s "$report" ]; then
    echo "FAIL $form: Designer gave no report"; cat "$work/designer.log"; status=1; continue
  fi
  title="$(sed -n 's/^title: //p' "$report")"
  dirty="$(sed -n 's/^dirty: //p' "$report")"
  undo="$(sed -n 's/^undo: //p' "$report")"
  if [[ "$title" == *"*"* || "$dirty" != 0 || "$undo" != 0 ]]; then
    echo "FAIL $form: title '$title', dirty $dirty, undo steps $undo"; status=1
  else
    echo "PASS $form: title '$title'"
  fi
done
exit $status
