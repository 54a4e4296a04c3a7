#!/usr/bin/env bash
# Renders the application icon, resources/desktop/tarvelo.svg, to the bitmaps made from it: the
# desktop's hicolor sizes in resources/desktop/hicolor/ and the window icon resources/tarvelo.png
# (256x256). The build does not run this; its output is committed.
# Dependency: rsvg-convert (Debian package librsvg2-bin).
set -euo pipefail
cd "$(dirname "$0")/../../resources"
for size in 16 22 24 32 48 64 128 256; do
    mkdir -p "desktop/hicolor/${size}x${size}/apps"
    rsvg-convert -w "$size" -h "$size" desktop/tarvelo.svg -o "desktop/hicolor/${size}x${size}/apps/tarvelo.png"
done
cp desktop/hicolor/256x256/apps/tarvelo.png tarvelo.png
