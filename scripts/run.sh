#!/usr/bin/env bash
# Sets everything up and starts the program.
#   bash scripts/run.sh         a demo: an emulated box and a demo data folder in build/demo
#   bash scripts/run.sh --box   the real box and the real documents folder
# A box plugged in by USB (/dev/ttyUSB*, /dev/ttyACM*) means --box as well.
set -euo pipefail
cd "$(dirname "$0")/.."

real_box=0
case "${1:-}" in
    "") ;;
    --box) real_box=1 ;;
    *)
        echo "usage: bash scripts/run.sh [--box]" >&2
        exit 2
        ;;
esac
if ((!real_box)) && { compgen -G "/dev/ttyUSB*" || compgen -G "/dev/ttyACM*"; } >/dev/null; then
    echo "A serial device is attached: running against the real box and the real documents folder."
    real_box=1
fi

bash scripts/setup.sh

if ((!real_box)); then
    source scripts/demo.sh
    demo_documents build/demo
    trap stop_demo_box EXIT
    start_demo_box build/demo/box 4
    echo "Demo: an emulated box at build/demo/box, data in build/demo/Mirenthalic/Tarvelo."
    echo "For the real box and the real documents folder: bash scripts/run.sh --box"
fi

program=(build/main/tarvelo)
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "No display found: starting on a virtual screen (xvfb)."
    program=(xvfb-run -a build/main/tarvelo)
fi
# Not exec: the emulator is stopped when the program ends.
status=0
"${program[@]}" || status=$?
exit "$status"
