#!/usr/bin/env bash
# The program as the desktop sees it, from the build tree BUILD:
#   install BUILD   installs under an unusual prefix into a temporary DESTDIR: the menu entry
#                   validates, its icon and the licences are there, the program starts
#   package BUILD   builds the Debian package: it holds program, entry and icons, and its
#                   dependencies resolve on this system
# Exits 77, which ctest counts as skipped, when a tool it needs is missing.
set -euo pipefail
mode=$1 build=$2
fail() { echo "FAILED: $*" >&2; exit 1; }
need() {
    for tool; do
        command -v "$tool" >/dev/null || { echo "SKIPPED: no $tool here (scripts/setup.sh installs it)"; exit 77; }
    done
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if [ "$mode" = install ]; then
    need desktop-file-validate
    root=$work/opt/tarvelo-check
    DESTDIR=$work cmake --install "$build" --prefix /opt/tarvelo-check >/dev/null
    entry=$root/share/applications/tarvelo.desktop
    desktop-file-validate "$entry" || fail "the desktop entry does not validate"
    icon=$(sed -n 's/^Icon=//p' "$entry")
    for size in 16x16/apps/$icon.png 48x48/apps/$icon.png 256x256/apps/$icon.png scalable/apps/$icon.svg; do
        [ -s "$root/share/icons/hicolor/$size" ] || fail "no icon $size"
    done
    for file in bin/tarvelo-devsim share/doc/tarvelo/copyright share/doc/tarvelo/LICENSE-RobotoCondensed.txt; do
        [ -s "$root/$file" ] || fail "no $file"
    done
    exec "$(dirname "$0")/start_briefly.sh" "$root/bin/$(sed -n 's/^Exec=//p' "$entry")"
fi

need cpack dpkg-deb dpkg-shlibdeps apt-get
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work" >"$work/cpack.log" || { cat "$work/cpack.log"; fail "cpack"; }
deb=$(echo "$work"/*.deb)
listing=$(dpkg-deb -c "$deb")
for file in bin/tarvelo bin/tarvelo-devsim share/applications/tarvelo.desktop \
    share/icons/hicolor/48x48/apps/tarvelo.png share/icons/hicolor/scalable/apps/tarvelo.svg; do
    grep -q " \./usr/$file\$" <<<"$listing" || fail "the package lacks /usr/$file"
done
depends=$(dpkg-deb -f "$deb" Depends)
for package in libqt5serialport5 libqt5svg5 libxlsxwriter4; do
    grep -q "$package" <<<"$depends" || fail "$package is not among the dependencies: $depends"
done
apt-get install --simulate "$deb" >"$work/apt.log" 2>&1 || { cat "$work/apt.log"; fail "the dependencies do not resolve"; }
echo "$(basename "$deb") holds the program, its entry and icons; Depends: $depends"
