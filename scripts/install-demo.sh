#!/usr/bin/env bash
# Copies the demo installation (drive C with the modeller's installation
# folders) into the drive C folder, when that folder is empty or missing.
set -euo pipefail
cd "$(dirname "$0")/.."
drive_c="${RAVELO_DRIVE_C:-${XDG_DATA_HOME:-$HOME/.local/share}/ravelo/drive_c}"
if [ -d "$drive_c" ] && [ -n "$(ls -A "$drive_c")" ]; then
  echo "Drive C ($drive_c) is not empty: the demo installation is not copied."
else
  mkdir -p "$drive_c"
  cp -R demo/drive_c/. "$drive_c/"
  echo "Demo installation copied to drive C: $drive_c"
fi
