#!/usr/bin/env bash
# Installs what building and testing RaveloUtils needs, from Debian's packages
# (clang and its libFuzzer runtime for scripts/fuzz.sh; the benchmark's tools
# are installed by scripts/bench.sh when it runs).
set -euo pipefail
# Qt 6 for the desktop host; Xvfb, the X tools and ImageMagick for its on-display check;
# a font for windows drawn on the offscreen platform.
packages=(cmake ninja-build g++ googletest libgtest-dev libgmock-dev libbenchmark-dev libcurl4-openssl-dev python3 clang libclang-rt-14-dev qt6-base-dev libgl-dev xvfb xauth x11-utils imagemagick fonts-dejavu-core)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
