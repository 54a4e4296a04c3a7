#!/usr/bin/env bash
# Renders the main window on the offscreen platform, against the box emulator and a fresh demo
# data folder: docs/main-window-idle.png before a session, docs/main-window-session.png during
# one, and after it is stopped docs/database-page.png with it stored, docs/subject-editor.png
# and docs/settings-page.png.
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
    --idle docs/main-window-idle.png --running docs/main-window-session.png \
    --database docs/database-page.png --editor docs/subject-editor.png \
    --settings docs/settings-page.png "$@"
