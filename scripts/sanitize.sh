#!/usr/bin/env bash
# Builds the whole test suite with AddressSanitizer and UndefinedBehaviorSanitizer in
# ./build-asan and runs it.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc 2>/dev/null || echo 2)
[ -f build-asan/CMakeCache.txt ] || cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug \
    -DTARVELO_SANITIZE=ON -DTARVELO_BUILD_BENCH=OFF >/dev/null
cmake --build build-asan -j"$jobs"
cd build-asan
# Leak reports are off: replaced scripts, sessions and subjects are deliberately left alive for
# the views that still show them.
ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$jobs"
