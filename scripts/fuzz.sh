#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ (everything under
# AddressSanitizer and UndefinedBehaviorSanitizer) and runs each of them.
#
#   bash scripts/fuzz.sh ci            every target for a fixed number of runs (CI)
#   bash scripts/fuzz.sh long [SECS]   every target for SECS seconds (default 300)
#   bash scripts/fuzz.sh run TARGET [libFuzzer options...]   one target by hand
#
# Seeds come from tests/data (by file type) and tests/data/fuzz-regressions;
# a target's growing corpus is kept in build-fuzz/corpus/TARGET. Crashing
# inputs land in build-fuzz/crashes/; copy each into
# tests/data/fuzz-regressions/TARGET/ once it is fixed.
set -euo pipefail
cd "$(dirname "$0")/.."
mode="${1:-ci}"
build=build-fuzz
runs="${RAVELO_FUZZ_RUNS:-2000}"

cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DRAVELO_FUZZ=ON -DBUILD_TESTING=OFF -DRAVELO_WITH_QT=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"

extensions=(xyz mol sdf pdb ent cif cmf csd xcc xcx mop alc sch m3d mm2)
targets=()
for ext in "${extensions[@]}"; do targets+=("fuzz_reader_$ext"); done
targets+=(fuzz_sequential fuzz_clean_numeric fuzz_calculx)

# The seed folder of a target: the test files of its type (any case), and
# the regressions kept for it.
seeds() {
  local target="$1" dir="$build/seeds/$1"
  rm -rf "$dir"
  mkdir -p "$dir"
  case "$target" in
    fuzz_reader_*)
      local ext="${target#fuzz_reader_}"
      find tests/data -type f -iname "*.$ext" -size -200k -not -path '*/fuzz-regressions/*' \
        -exec cp -t "$dir" --backup=numbered {} + 2>/dev/null || true ;;
    fuzz_clean_numeric|fuzz_sequential)
      find tests/data/golden/inputs -type f -size -20k -exec cp -t "$dir" --backup=numbered {} + 2>/dev/null || true ;;
    fuzz_calculx)
      # One equation a seed, from the first column of the calculator's cases
      # (the first byte picks the evaluator's mode).
      local n=0
      while IFS=$'\t' read -r equation _; do
        case "$equation" in '#'*|'') continue ;; esac
        n=$((n + 1))
        printf '\000%s' "$equation" > "$dir/eq$n"
      done < <(cat tests/data/calc/*.tsv) ;;
  esac
  if [ -d "tests/data/fuzz-regressions/$target" ]; then cp tests/data/fuzz-regressions/"$target"/* "$dir"/ 2>/dev/null || true; fi
  echo "$dir"
}

# The targets write their input files to a temporary drive C: on a memory
# file system the replacements' flushes to disk cost nothing.
if [ -z "${TMPDIR:-}" ] && [ -d /dev/shm ] && [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
mkdir -p "$build/crashes"

run_one() {
  local target="$1"; shift
  local corpus="$build/corpus/$target"
  mkdir -p "$corpus"
  # -close_fd_mask=2: the program's own messages (run-time errors shown by
  # the headless host) are expected and would drown the fuzzer's report.
  "$build/fuzz/$target" "$corpus" "$(seeds "$target")" -close_fd_mask=2 -timeout=20 -rss_limit_mb=2048 \
    -artifact_prefix="$build/crashes/$target-" "$@"
}

case "$mode" in
  ci)
    # Two targets at a time (CI has two cores); each one's log is shown
    # when it ends, whole when it failed.
    logs="$build/logs"
    mkdir -p "$logs"
    failed=0
    ci_one() {
      local t="$1"
      # A fixed seed: the same runs on every machine.
      if run_one "$t" -runs="$runs" -seed=1 >"$logs/$t.log" 2>&1; then
        echo "== $t: $(grep -E '^Done [0-9]+ runs' "$logs/$t.log" || echo done)"
      else
        echo "== $t FAILED"; cat "$logs/$t.log"; return 1
      fi
    }
    pids=()
    for t in "${targets[@]}"; do
      ci_one "$t" & pids+=($!)
      if [ ${#pids[@]} -ge 2 ]; then
        wait "${pids[0]}" || failed=1
        pids=("${pids[@]:1}")
      fi
    done
    for pid in "${pids[@]}"; do wait "$pid" || failed=1; done
    [ "$failed" -eq 0 ] || { echo "a fuzz target failed (inputs in $build/crashes/)"; exit 1; } ;;
  long)
    # One target after another, each for SECS seconds; a failing target does
    # not stop the others, and all failures are listed at the end.
    secs="${2:-300}"
    failures=()
    for t in "${targets[@]}"; do
      echo "== $t (${secs}s)"
      set +e
      run_one "$t" -max_total_time="$secs" -print_final_stats=1 >"$build/long-$t.log" 2>&1
      status=$?
      set -e
      grep -E '^Done [0-9]+ runs|stat::number_of_executed_units|stat::peak_rss_mb' "$build/long-$t.log" || true
      echo "   corpus: $(find "$build/corpus/$t" -type f | wc -l) inputs"
      if [ "$status" -ne 0 ]; then
        failures+=("$t")
        grep -E 'ERROR|SUMMARY|Test unit written' "$build/long-$t.log" | head -n 5
      fi
    done
    if [ ${#failures[@]} -gt 0 ]; then echo "failed: ${failures[*]} (inputs in $build/crashes/)"; exit 1; fi
    echo "no crash, leak, undefined behaviour or hang in ${#targets[@]} targets" ;;
  run)
    t="${2:?target name}"; shift 2
    run_one "$t" "$@" ;;
  *)
    echo "usage: $0 ci | long [SECS] | run TARGET [options]" >&2; exit 2 ;;
esac
