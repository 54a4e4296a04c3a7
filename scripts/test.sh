#!/usr/bin/env bash
# Sets everything up and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
jobs=$(nproc 2>/dev/null || echo 2)
cd build
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$jobs"
