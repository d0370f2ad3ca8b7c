#!/usr/bin/env bash
# Whole-process benchmark: the converter against gemmi and against the floor
# program (bench/floor.cpp) on large generated inputs, with hyperfine, and the
# peak resident memory of each with /usr/bin/time -v.
#
#   bash scripts/bench.sh            all inputs (42 MB and 10 MB PDB, SD file, CIF library)
#   bash scripts/bench.sh quick      fewer runs
#   RAVELO_BENCH_DIR=/some/folder    where the inputs go (default /tmp/ravelo-bench; no "." in it)
#
# The program rewrites its input, so each of its runs gets a fresh copy
# (hyperfine --prepare). Measure on a quiet machine: the script prints the
# load average first.
set -euo pipefail
cd "$(dirname "$0")/.."
repo="$PWD"
mode="${1:-full}"
runs="${RAVELO_BENCH_RUNS:-10}"
[ "$mode" = quick ] && runs=3

need=()
for tool in hyperfine gemmi /usr/bin/time; do command -v "$tool" >/dev/null || need+=("$tool"); done
if [ ${#need[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get install -y -qq --no-install-recommends hyperfine gemmi time >/dev/null
fi

# The program as users run it, without the desktop host: the converter's own
# cost, not the start-up of a window system it does not use here.
cmake --preset release -DRAVELO_WITH_QT=OFF -DCMAKE_CXX_FLAGS=-Wno-restrict >/dev/null
cmake --build build-release --target raveloutils bench_floor >/dev/null
prog="$repo/build-release/raveloutils"
floor="$repo/build-release/bench/bench_floor"

work="${RAVELO_BENCH_DIR:-/tmp/ravelo-bench}"
case "$work" in *.*) echo "RAVELO_BENCH_DIR must hold no \".\" (the converter cuts names at the first point)" >&2; exit 2 ;; esac
mkdir -p "$work/src" "$work/run" "$work/temp" "$work/drive/programdata/ravelo" "$work/drive/ravelo"
printf '"Kalmodyn","2026","C:"\r\n' > "$work/drive/programdata/ravelo/ravelodrive.dat"
printf 'stand-in\r\n' > "$work/drive/ravelo/Kalmodyn.Exe"
export RAVELO_DRIVE_C="$work/drive" TEMP="$work/temp" RAVELO_WAIT_SCALE=0 RAVELO_UI=headless

make_input() {   # kind count name
  [ -s "$work/src/$3" ] || python3 bench/make_inputs.py "$1" "$2" "$work/src/$3"
}
make_input pdb 525000 big.pdb
make_input pdb 125000 mid.pdb
make_input sdf 20000 many.sdf
make_input cif 500 lib500.cif
make_input cif 1000 lib1000.cif
make_input cif 2000 lib2000.cif

echo "load average: $(cut -d' ' -f1-3 /proc/loadavg) on $(nproc) cores"

# Median seconds of one command from a hyperfine JSON export.
median() { python3 -c 'import json,sys; print("%.3f" % json.load(open(sys.argv[1]))["results"][int(sys.argv[2])]["median"])' "$1" "$2"; }
# Peak resident memory in MB of one run.
peak() { /usr/bin/time -v "$@" 2>&1 >/dev/null | awk -F': ' '/Maximum resident/ {printf "%.1f", $2/1024}'; }

fresh() { rm -rf "$work/run" && mkdir -p "$work/run" && cp "$work/src/$1" "$work/run/$1"; }

rows=()
bench() {   # name [gemmi]
  local name="$1" with_gemmi="$2" mb
  mb=$(python3 -c "import os; print('%.1f' % (os.path.getsize('$work/src/$name') / 1e6))")
  local cmds=(--command-name ours "$prog fileconv $work/run/$name")
  [ "$with_gemmi" = yes ] && cmds+=(--command-name gemmi "gemmi convert $work/src/$name $work/gemmi-out.cif")
  cmds+=(--command-name floor "$floor $work/src/$name $work/floor-out.txt")
  hyperfine -N --warmup 1 --runs "$runs" --prepare "bash -c 'rm -rf $work/run && mkdir -p $work/run && cp $work/src/$name $work/run/$name'" \
    --export-json "$work/$name.json" "${cmds[@]}" >/dev/null
  local ours gemmi="-" fl i=0
  ours=$(median "$work/$name.json" 0)
  if [ "$with_gemmi" = yes ]; then gemmi=$(median "$work/$name.json" 1); i=2; else i=1; fi
  fl=$(median "$work/$name.json" $i)
  fresh "$name"; local m_ours m_gemmi="-" m_floor
  m_ours=$(peak "$prog" fileconv "$work/run/$name")
  [ "$with_gemmi" = yes ] && m_gemmi=$(peak gemmi convert "$work/src/$name" "$work/gemmi-out.cif")
  m_floor=$(peak "$floor" "$work/src/$name" "$work/floor-out.txt")
  local r_gemmi="-" r_floor mbps
  [ "$with_gemmi" = yes ] && r_gemmi=$(python3 -c "print('%.2f' % ($gemmi / $ours))")
  r_floor=$(python3 -c "print('%.2f' % ($ours / $fl))")
  mbps=$(python3 -c "print('%.0f' % ($mb / $ours))")
  rows+=("| $name | $mb | $ours | $gemmi | $fl | $r_gemmi | $r_floor | $mbps | $m_ours | $m_gemmi | $m_floor |")
}

bench big.pdb yes
bench mid.pdb yes
bench many.sdf no
bench lib500.cif no
bench lib1000.cif no
bench lib2000.cif no

echo
echo "| File | MB | Ours (s) | gemmi (s) | Floor (s) | gemmi / ours | ours / floor | Ours MB/s | Peak MB ours | Peak MB gemmi | Peak MB floor |"
echo "|---|---|---|---|---|---|---|---|---|---|---|"
printf '%s\n' "${rows[@]}"
echo
echo "Medians of $runs runs (hyperfine -N, one warm-up); peak resident memory of one run (/usr/bin/time -v)."
# The CIF library's cost per data block, which must not grow with the blocks.
# Wall time per block, and the processor time (user + system) per block,
# which the disk's flushing does not blur.
per_block() {
  python3 -c "import json,sys; r = json.load(open(sys.argv[1]))['results'][0]; n = int(sys.argv[2]); print('%.2f (cpu %.2f)' % (1000 * r['median'] / n, 1000 * (r['user'] + r['system']) / n))" "$work/lib$1.cif.json" "$1"
}
echo "CIF library, ms per data block: $(per_block 500) at 500 blocks, $(per_block 1000) at 1000, $(per_block 2000) at 2000."
echo "gemmi reads neither SD files nor small-molecule CIF libraries as a structure to convert: '-'."
echo "load average after: $(cut -d' ' -f1-3 /proc/loadavg)"
