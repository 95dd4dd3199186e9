#!/usr/bin/env bash
# Mutation check: applies each fault of scripts/mutants.txt alone, rebuilds
# incrementally in a dedicated build tree, runs the test executables the
# changed folder affects and counts the fault as caught when one fails.
# Usage: scripts/mutants.sh [pattern]   (only mutants whose line matches)
# Environment: MUTANT_BUILD (build tree, default build-mutants), MUTANT_JOBS.
set -uo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
cd "$root"
list="$root/scripts/mutants.txt"
build="${MUTANT_BUILD:-$root/build-mutants}"
jobs="${MUTANT_JOBS:-2}"
filter="${1:-}"
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8

if [ ! -f "$build/build.ninja" ]; then
  cmake -S . -B "$build" -G Ninja -DKEL_WERROR=OFF -DKEL_BENCH=OFF \
    -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache >/dev/null || exit 2
fi
cmake --build "$build" -j "$jobs" >/dev/null || { echo "the unchanged tree does not build" >&2; exit 2; }

# Tests to run for a changed file: everything links the engine; the other
# folders map to the executables that exercise them.
testsfor() {
  case "$1" in
    engine/*) echo '.' ;;
    control/*) echo 'tst_fractioni|tst_boundary|tst_fractionpages|tst_fractiondemo|script|tst_platform|realdesigner' ;;
    pages/*) echo 'tst_fractionpages|tst_fractionidesigner|tst_fractiondemo|script' ;;
    about/*) echo 'tst_fractionabout|tst_fractiondemo|script' ;;
    tools/fractionscript/*) echo 'script' ;;
    python/*) echo 'py_' ;;
    *) echo '.' ;;
  esac
}

total=0 caught=0 skipped=0
survivors=()
backup="$(mktemp)"
trap 'rm -f "$backup"' EXIT
start=$SECONDS
while IFS=$'\t' read -r file original replacement reason; do
  [[ -z "$file" || "$file" == \#* ]] && continue
  [[ -n "$filter" && "$file$original$reason" != *$filter* ]] && continue
  if [ ! -f "$file" ] || [ "$(grep -cF -- "$original" "$file")" != 1 ] \
     || [ "$(python3 -c 'import sys; print(open(sys.argv[1]).read().count(sys.argv[2]))' "$file" "$original")" != 1 ]; then
    echo "not applicable: $file: $reason"
    skipped=$((skipped + 1))
    continue
  fi
  cp -p "$file" "$backup"
  python3 - "$file" "$original" "$replacement" <<'PY'
import sys
path, old, new = sys.argv[1:4]
text = open(path).read()
open(path, "w").write(text.replace(old, new, 1))
PY
  total=$((total + 1))
  if ! cmake --build "$build" -j "$jobs" >/dev/null 2>&1; then
    verdict=caught   # a mutant that does not compile counts as caught
  elif (cd "$build" && ctest -R "$(testsfor "$file")" -j "$jobs" --timeout 120 \
          --stop-on-failure >/dev/null 2>&1); then
    verdict=SURVIVED
  else
    verdict=caught
  fi
  cp -p "$backup" "$file"
  touch "$file"
  if [ "$verdict" = caught ]; then
    caught=$((caught + 1))
  else
    survivors+=("$file: $reason")
  fi
  printf '%-8s %s: %s\n' "$verdict" "$file" "$reason"
done <"$list"
cmake --build "$build" -j "$jobs" >/dev/null 2>&1

echo "caught $caught/$total mutants ($skipped not applicable) in $((SECONDS - start)) s"
for s in "${survivors[@]}"; do echo "survivor: $s"; done
[ "$total" -gt 0 ]
