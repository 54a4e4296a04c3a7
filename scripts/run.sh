#!/usr/bin/env bash
# Sets everything up and starts the program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting on a virtual screen (xvfb)."
    exec xvfb-run -a build/app/tarvelo
fi
exec build/app/tarvelo
