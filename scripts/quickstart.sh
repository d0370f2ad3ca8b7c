#!/usr/bin/env bash
# Quick start: installs what is needed, builds, installs the demo installation
# into drive C (when that folder is empty) and runs the program on it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
bash scripts/install-demo.sh
exe=build/raveloutils
drive_c="${RAVELO_DRIVE_C:-${XDG_DATA_HOME:-$HOME/.local/share}/ravelo/drive_c}"
echo
"$exe" --version
echo
echo "== The main menu, driven by the script host (RAVELO_UI=script):"
printf 'dump RaveloUtils\nclick RaveloUtils.Label2\ndump RaveloUtils\n' |
  RAVELO_UI=script RAVELO_WAIT_SCALE=0 "$exe"
echo
echo "== Deleting a scratch file with the ravelodelfile command word:"
scratch="$drive_c/ravelo/scratch.tmp"
echo "scratch" > "$scratch"
RAVELO_WAIT_SCALE=0 "$exe" ravelodelfile "$scratch"
if [ -e "$scratch" ]; then echo "still there: $scratch"; else echo "deleted: $scratch"; fi
