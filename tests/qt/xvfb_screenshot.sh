#!/usr/bin/env bash
# Starts the real program on an Xvfb display, as a user's desktop would: no
# RAVELO_UI and no QT_QPA_PLATFORM, so the program itself must choose the
# desktop host because DISPLAY is set. Then takes a picture of the screen
# from outside the program and checks that the main window is on it.
#   xvfb_screenshot.sh RAVELOUTILS SCREENSHOT_FOLDER
# Exits 77 (skipped) when Xvfb or the X tools are not installed.
set -euo pipefail

if [ "${1:-}" != "--on-display" ]; then
  binary=$1
  shots=$2
  for tool in xvfb-run xauth xwininfo import identify; do
    if ! command -v "$tool" >/dev/null 2>&1; then
      echo "skipped: $tool is not installed (scripts/install-deps.sh installs it)"
      exit 77
    fi
  done
  mkdir -p "$shots"
  exec xvfb-run -a -s "-screen 0 1024x768x24" bash "$0" --on-display "$binary" "$shots"
fi

binary=$2
shots=$3
work=$(mktemp -d)
pid=
cleanup() {
  if [ -n "$pid" ] && kill -0 "$pid" 2>/dev/null; then
    kill "$pid"
    wait "$pid" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap cleanup EXIT

# The installation the program looks for on drive C.
mkdir -p "$work/c/programdata/ravelo" "$work/c/ravelo" "$work/temp"
printf '"Kalmodyn","2026","C:"\r\n' >"$work/c/programdata/ravelo/ravelodrive.dat"
printf 'stand-in for the modeller executable\r\n' >"$work/c/ravelo/Kalmodyn.Exe"

unset RAVELO_UI RAVELO_SCRIPT QT_QPA_PLATFORM WAYLAND_DISPLAY
export RAVELO_DRIVE_C="$work/c" TEMP="$work/temp" XDG_RUNTIME_DIR="$work"
"$binary" >"$work/out.txt" 2>"$work/err.txt" &
pid=$!

# The main window appears under its caption.
for _ in $(seq 1 100); do
  if xwininfo -name "Ravelo Utilities" >/dev/null 2>&1; then break; fi
  if ! kill -0 "$pid" 2>/dev/null; then
    echo "the program ended without showing its window:"
    cat "$work/err.txt"
    exit 1
  fi
  sleep 0.1
done
if ! xwininfo -name "Ravelo Utilities" >"$work/window.txt" 2>&1; then
  echo "no window named 'Ravelo Utilities' on the display"
  cat "$work/err.txt"
  exit 1
fi
sleep 0.5   # let the first paint reach the screen
import -window root "$shots/xvfb-RaveloUtils.png"

# Still running (a headless program would have ended at once), and the
# screen shows more than an empty background.
if ! kill -0 "$pid" 2>/dev/null; then
  echo "the program ended instead of waiting for its user"
  exit 1
fi
colours=$(identify -format '%k' "$shots/xvfb-RaveloUtils.png")
width=$(sed -n 's/.*Width: *//p' "$work/window.txt")
height=$(sed -n 's/.*Height: *//p' "$work/window.txt")
echo "window ${width}x${height}, screenshot with $colours colours: $shots/xvfb-RaveloUtils.png"
if [ "$colours" -lt 16 ] || [ "$width" -lt 200 ] || [ "$height" -lt 200 ]; then
  echo "the screen does not show the main window"
  exit 1
fi
