#!/usr/bin/env bash
# Installs what building and testing RaveloUtils needs, from Debian's packages.
set -euo pipefail
packages=(cmake ninja-build g++ googletest libgtest-dev libgmock-dev libbenchmark-dev libcurl4-openssl-dev python3)
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
