#!/usr/bin/env bash
# Configures and builds RaveloUtils into build/ (the executable is build/raveloutils).
# Pass a preset name (dev, release, asan) to build another configuration.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$(nproc)"
