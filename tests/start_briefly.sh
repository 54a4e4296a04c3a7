#!/usr/bin/env bash
# Starts the program on the offscreen platform with an empty home and checks that it is still
# running after a few seconds: start-up, splash, style sheet and window without a crash.
set -u
program=$1
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
HOME=$home QT_QPA_PLATFORM=offscreen timeout 4 "$program"
status=$?
[ "$status" -eq 124 ] || { echo "program ended early with status $status"; exit 1; }
[ -d "$home/Documents/Mirenthalic/Tarvelo/Scripts" ] || { echo "no data folder"; exit 1; }
echo "still running after 4 s; data folder laid out"
