#!/usr/bin/env bash
# Renders the main window on the offscreen platform, against the box emulator and a fresh demo
# data folder: docs/main-window-idle.png before a session, docs/device-page.png with lamps lit by
# the box, docs/device-settings.png with the box's options, docs/firmware-update.png as "Flash"
# opens it, docs/main-window-session.png during a session.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

source scripts/demo.sh
demo=$(mktemp -d)
cleanup() {
    stop_demo_box
    rm -rf "$demo"
}
trap cleanup EXIT
demo_documents "$demo"
start_demo_box "$demo/box" 10

QT_QPA_PLATFORM=offscreen build/tools/screenshot/tarvelo-screenshot \
    --idle docs/main-window-idle.png --device docs/device-page.png \
    --device-settings docs/device-settings.png --firmware docs/firmware-update.png \
    --running docs/main-window-session.png "$@"
