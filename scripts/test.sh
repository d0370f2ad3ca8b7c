#!/usr/bin/env bash
# Builds RaveloUtils and runs every test. Pass "asan" to run the suite under
# AddressSanitizer and UndefinedBehaviorSanitizer instead.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
bash scripts/build.sh "$preset"
ctest --preset "$preset"
