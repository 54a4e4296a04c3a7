#!/usr/bin/env bash
# Renders the main window on the offscreen platform, against the box emulator and a fresh demo
# data folder, once on an American English and once on a Russian system: docs/en/ and docs/ru/
# get a picture of every page (script.png, subjects.png with a stored session, device.png with
# lamps lit by the box, settings.png, and session.png during a session), of the device settings
# dialog (device-settings.png) and the firmware dialog as "Flash" opens it (firmware-update.png),
# of the subject editor (subject-editor.png), of the Script page editing (script-editing.png), of
# the script creator (script-creator.png) and of the export's file dialog (export-dialog.png). A
# version service on loopback offers a newer version, so that the button in the corner shows.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh

source scripts/demo.sh
work=$(mktemp -d)
service_pid=""
cleanup() {
    stop_demo_box
    if [ -n "$service_pid" ]; then
        kill "$service_pid" 2>/dev/null || true
        wait "$service_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

# The same answer to every query.
mkdir -p "$work/service/repo"
printf '{"valid": true, "version": "1.1.0", "link": "https://example.invalid/Tarvelo-1.1.0"}' \
    >"$work/service/repo/version.php"
port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
python3 -m http.server --bind 127.0.0.1 --directory "$work/service" "$port" >/dev/null 2>&1 &
service_pid=$!
tries=0
until (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; do
    ((++tries <= 50)) || { echo "The version service didn't start." >&2; exit 1; }
    sleep 0.1
done
export TARVELO_VERSION_URL="http://127.0.0.1:$port/repo/version.php"

for language in en_US ru_RU; do
    demo_documents "$work/$language"
    start_demo_box "$work/$language/box" 10
    folder=docs/${language%_*}
    LC_ALL=$language.UTF-8 QT_QPA_PLATFORM=offscreen build/tools/screenshot/tarvelo-screenshot \
        --new-version --pages "$folder" --running "$folder/session.png" "$@"
    stop_demo_box
done
