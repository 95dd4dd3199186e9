#!/usr/bin/env bash
# Builds the test suite once more with AddressSanitizer and UndefinedBehaviorSanitizer and runs it.
# The Python bindings stay out: an instrumented extension does not load into python3.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
bash "$root/scripts/install-deps.sh"
build=${KEL_SANITIZE_DIR:-$root/build-sanitize}
cmake -S "$root" -B "$build" -G Ninja -DKEL_WERROR=ON -DKEL_SANITIZE=ON -DKEL_BENCH=OFF -DKEL_PYTHON=OFF \
      -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build "$build"
cd "$build"
# Qt's own libraries are not instrumented and keep caches until exit: leaks are checked by the
# fuzz run on the engine instead.
export ASAN_OPTIONS=detect_leaks=0:strict_string_checks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2 --timeout 600
