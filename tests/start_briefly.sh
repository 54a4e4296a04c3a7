#!/usr/bin/env bash
# Starts the program with an empty home on a virtual screen of its own and waits until its main
# window is shown there: start-up, splash, style sheet and window without a crash. The data
# folder must be laid out by then.
set -u
if [ -z "${TARVELO_ON_XVFB:-}" ]; then
    TARVELO_ON_XVFB=1 exec xvfb-run -a -s "-screen 0 1280x1024x24" "$0" "$@"
fi
unset QT_QPA_PLATFORM
home=$(mktemp -d)
trap 'kill "$program" 2>/dev/null; rm -rf "$home"' EXIT
HOME=$home "$1" >/dev/null 2>&1 &
program=$!
shown() {
    local window
    window=$(xwininfo -root -tree | grep -m1 -E '"(Тарвело|Tarvelo) [0-9.]*":' | awk '{print $1}')
    [ -n "$window" ] && xwininfo -id "$window" | grep -q "Map State: IsViewable"
}
for _ in $(seq 150); do
    kill -0 "$program" 2>/dev/null || { echo "the program ended early"; exit 1; }
    if shown; then
        [ -d "$home/Documents/Mirenthalic/Tarvelo/Scripts" ] || { echo "no data folder"; exit 1; }
        echo "main window shown; data folder laid out"
        exit 0
    fi
    sleep 0.2
done
echo "no main window shown"
exit 1
