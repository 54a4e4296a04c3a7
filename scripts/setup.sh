#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running, testing and packaging need, and
# configures and builds the project in ./build (not with --packages-only). Quick when everything
# is already there.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
    cmake g++ make pkg-config
    qtbase5-dev qtbase5-dev-tools libqt5svg5-dev libqt5serialport5-dev
    qttools5-dev qttools5-dev-tools qttranslations5-l10n
    libminizip-dev libxlsxwriter-dev fonts-roboto-unhinted
    clang libclang-rt-14-dev
    python3 python3-openpyxl poppler-utils xvfb xauth x11-utils
    dpkg-dev desktop-file-utils
    avrdude
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
        || missing+=("$package")
done
if ((${#missing[@]})); then
    echo "Installing: ${missing[*]}"
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

[ "${1:-}" = --packages-only ] && exit 0

jobs=$(nproc 2>/dev/null || echo 2)
[ -f build/CMakeCache.txt ] || cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j"$jobs"
