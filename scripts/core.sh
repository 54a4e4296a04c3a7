#!/usr/bin/env bash
# Builds the core without any widget module in ./build-core, the device emulator and the tests
# of the core with it, and runs those tests: the proof that none of them needs QtWidgets.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=$(nproc 2>/dev/null || echo 2)
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
[ -f build-core/CMakeCache.txt ] || cmake -S . -B build-core -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DTARVELO_GUI=OFF -DTARVELO_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
cmake --build build-core -j"$jobs"
cd build-core
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$jobs"
