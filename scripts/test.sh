#!/usr/bin/env bash
# Sets everything up and runs the whole test suite: the tests, the tests of the core built
# without widgets, the same tests under AddressSanitizer and UndefinedBehaviorSanitizer, and a
# short run of every fuzz target.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
jobs=$(nproc 2>/dev/null || echo 2)
(cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j"$jobs")
bash scripts/core.sh
bash scripts/sanitize.sh
bash scripts/fuzz.sh --seconds "${TARVELO_FUZZ_SECONDS:-20}"
echo "All tests, the core without widgets, the sanitizer run and the fuzz runs passed."
