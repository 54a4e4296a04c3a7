#!/usr/bin/env bash
# The demo of scripts/run.sh without its set-up and its window: the demo documents folder that
# Qt must take as the documents folder, the sample script in it on first use only, the emulator
# on its fixed link, and the screenshot tool rendering the window against both.
# Arguments: the repository root and the build folder.
set -euo pipefail
repo=$1
export TARVELO_BUILD=$2
work=$(mktemp -d)
cd "$repo"
source scripts/demo.sh
trap 'stop_demo_box; rm -rf "$work"' EXIT
fail() {
    echo "FAIL: $*" >&2
    exit 1
}

export HOME=$work/home
mkdir -p "$HOME"
demo=$work/demo
sample=$demo/Mirenthalic/Tarvelo/Scripts/Демо.script
demo_documents "$demo"
cmp -s tools/demo/Демо.script "$sample" || fail "the sample script wasn't put into the demo folder"
rm "$sample"
demo_documents "$demo"
[ ! -e "$sample" ] || fail "a sample script the operator deleted came back"
cp tools/demo/Демо.script "$sample"

start_demo_box "$demo/box" 50
[ -L "$demo/box" ] || fail "no link to the emulator"
[ "$TARVELO_EXTRA_PORTS" = "$demo/box" ] || fail "the port search doesn't look at the link"

QT_QPA_PLATFORM=offscreen "$TARVELO_BUILD/tools/screenshot/tarvelo-screenshot" \
    --idle "$work/idle.png" --running "$work/running.png" --timeout 60 >/dev/null 2>&1 ||
    fail "the screenshot tool failed"
[ "$(head -qc 4 "$work/idle.png" "$work/running.png")" = $'\x89PNG\x89PNG' ] || fail "no PNG pictures"

[ -f "$demo/Mirenthalic/Tarvelo/Settings.xml" ] || fail "the program's data isn't in the demo folder"
[ ! -e "$HOME/Documents" ] || fail "the program wrote into the real documents folder"

stop_demo_box
[ ! -e "$demo/box" ] || fail "the emulator's link outlived it"
echo "demo folder, emulator and screenshots work"
