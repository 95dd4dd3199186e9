#!/usr/bin/env bash
# Counts non-blank, non-comment lines of test code (tests/ and fuzz/) against
# the rest of the code. Counted file types: C++ sources and headers (.cpp .h
# .hpp .cc and .h.in templates), SIP binding files (.sip), JavaScript (.js),
# CMake (CMakeLists.txt, .cmake), shell (.sh), Python (.py) and Qt Designer
# forms (.ui). bench/,
# examples/, docs/, build trees, Markdown and plain text, data and corpus
# files are left aside.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"

# Lines of the given files without blank lines and comments (// and /* */ for
# C++, # for CMake, shell and Python, <!-- --> for .ui).
count() {
  local total=0 n f
  while IFS= read -r f; do
    case "$f" in
      *.cpp|*.h|*.hpp|*.cc|*.h.in|*.js|*.sip)
        n=$(sed -e 's:/\*.*\*/::g' "$f" | awk '
          /\/\*/ { incomment = 1; sub(/\/\*.*/, "") ; if ($0 ~ /[^[:space:]]/) print; next }
          incomment { if (/\*\//) { incomment = 0; sub(/.*\*\//, ""); if ($0 ~ /[^[:space:]]/) print } ; next }
          /^[[:space:]]*\/\// { next }
          /[^[:space:]]/ { print }' | wc -l) ;;
      *.ui)
        n=$(grep -v '^[[:space:]]*<!--' "$f" | grep -c '[^[:space:]]' || true) ;;
      *)
        n=$(grep -v '^[[:space:]]*#' "$f" | grep -c '[^[:space:]]' || true) ;;
    esac
    total=$((total + n))
  done
  echo "$total"
}

files() {
  git ls-files -- "$@" | grep -E '(\.(cpp|h|hpp|cc|cmake|sh|py|ui|js|sip)|\.h\.in|CMakeLists\.txt)$' || true
}

tests=$(files tests fuzz | count)
code=$(files . ':!tests' ':!fuzz' ':!bench' ':!examples' ':!docs' | count)
ratio=$(awk -v t="$tests" -v c="$code" 'BEGIN { printf "%.1f", (c ? 100 * t / c : 0) }')
echo "test lines: $tests"
echo "code lines: $code"
echo "ratio: $ratio%"
