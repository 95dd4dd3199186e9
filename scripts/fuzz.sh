#!/usr/bin/env bash
# Builds the engine's libFuzzer targets with clang (ASan + UBSan) and runs each for N seconds.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
seconds=${1:-30}
bash "$root/scripts/install-deps.sh"
build=${KEL_FUZZ_DIR:-$root/build-fuzz}
CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DKEL_ENGINE_ONLY=ON -DKEL_FUZZ=ON \
      -DKEL_TESTS=OFF -DKEL_BENCH=OFF -DKEL_SANITIZE=ON -DKEL_WERROR=ON >/dev/null
cmake --build "$build"
mkdir -p "$build/corpus"
shopt -s nullglob
targets=("$build"/bin/fuzz_*)
if [ ${#targets[@]} -eq 0 ]; then
  echo "no fuzz targets built"
  exit 1
fi
for target in "${targets[@]}"; do
  name=$(basename "$target")
  mkdir -p "$build/corpus/$name"
  echo "fuzzing $name for ${seconds}s"
  UBSAN_OPTIONS=halt_on_error=1 "$target" -max_total_time="$seconds" -print_final_stats=1 \
      "$build/corpus/$name" "$root/fuzz/corpus/$name" 2>"$build/$name.log" \
    || { tail -n 60 "$build/$name.log"; exit 1; }
  grep -E '^(#[0-9]+.*DONE|stat::number_of_executed_units)' "$build/$name.log" || true
done
