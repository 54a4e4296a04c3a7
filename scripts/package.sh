#!/usr/bin/env bash
# Builds the Debian package of the program: a release build in ./build-package, without tests
# and benchmarks, packed by CPack into ./dist/tarvelo_<version>_<arch>.deb. Its dependencies are
# the Debian 12 packages of the libraries it links (dpkg-shlibdeps).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh --packages-only
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B build-package -DCMAKE_BUILD_TYPE=Release -DTARVELO_BUILD_TESTS=OFF \
    -DTARVELO_BUILD_BENCH=OFF "${launcher[@]}" >/dev/null
cmake --build build-package -j"$(nproc 2>/dev/null || echo 2)"
rm -rf dist/_CPack_Packages
cpack -G DEB --config build-package/CPackConfig.cmake -B "$PWD/dist"
rm -rf dist/_CPack_Packages
deb=$(ls -t dist/*.deb | head -n 1)
echo "Built $deb; install it with: sudo apt install ./$deb"
