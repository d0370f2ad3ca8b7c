#!/usr/bin/env bash
# Quick start: installs what is needed, builds, installs the demo installation
# into drive C (when that folder is empty) and runs the program on it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
bash scripts/build.sh
exe=build/raveloutils
drive_c="${RAVELO_DRIVE_C:-${XDG_DATA_HOME:-$HOME/.local/share}/ravelo/drive_c}"
# The demo installation goes into drive C when that folder is empty; one
# that holds anything (an earlier quick start) is used as it is.
if [ -d "$drive_c" ] && [ -n "$(ls -A "$drive_c")" ]; then
  echo "Drive C ($drive_c) is not empty: using it as it is."
else
  "$exe" --install-demo
fi
echo
"$exe" --version
echo
# The converter rewrites and renames its inputs, so it works on fresh copies.
work="$drive_c/samples"
rm -rf "$work"
mkdir -p "$work"
cp demo/samples/* "$work/"
chmod u+w "$work"/*
echo "== Converting the sample structures in $work (C:\\samples):"
# Host paths into drive C's folder are taken as drive C paths (C:\samples\...).
for f in "$work"/*; do
  echo "raveloutils fileconv $f"
  RAVELO_UI=headless RAVELO_WAIT_SCALE=0 "$exe" fileconv "$f"
done
echo
echo "== What the converter left in $work:"
ls -l "$work"
echo
echo "== The first lines of each structure file written:"
for f in "$work"/*.sxs "$work"/*.xxs; do
  [ -e "$f" ] || continue
  echo "-- $(basename "$f")"
  head -n 3 "$f"
done
echo
echo "== The converter's log: $(cat "${TEMP:-${TMPDIR:-/tmp}}/Ravelo/RaveloFilConvStat.Txt" 2>/dev/null)"
echo
echo "== The main menu, driven by the script host (RAVELO_UI=script):"
printf 'dump RaveloUtils\n' | RAVELO_UI=script RAVELO_WAIT_SCALE=0 "$exe"
