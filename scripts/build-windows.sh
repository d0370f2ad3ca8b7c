#!/usr/bin/env bash
# Cross-compiles the Windows build on Debian with mingw-w64: build-windows/raveloutils.exe.
# Installs what it needs when run as root (the cross compiler, wine for the
# tests, GoogleTest's sources), builds GoogleTest for mingw once from Debian's
# sources, then configures and builds. Pass "test" to run, under wine, the
# golden converter check and the suites that already pass on Windows.
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

# Wine runs the tests (their discovery at build time too). Its background
# services must be up before anything reads its output through a pipe, or
# the reader waits for them to end; the first start also makes its prefix.
export WINEDEBUG=-all
wineserver -p 2>/dev/null || true   # already up when it refuses
wine cmd /c exit >/dev/null 2>&1 || true

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

if [[ "${1:-}" == "test" ]]; then
  python3 "$root/../shared/tools/check-golden.py" "$out/raveloutils.exe"
  # The suites that pass on Windows so far; their throw-away folders go on
  # drive Z: (the host's root under wine), off the drive C: they map.
  export RAVELO_TEST_TEMP='Z:\tmp'
  failed=0
  for suite in runtime ui calc shell convert mollog moldb app fault; do
    (cd "$root/tests" && wine "$out/tests/${suite}_tests.exe" --gtest_brief=1) || failed=1
  done
  exit "$failed"
fi
