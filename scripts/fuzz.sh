#!/bin/bash
# Builds the libFuzzer targets of the song file readers, the package
# decoders and the text functions with clang (in
# build-fuzz/) and runs each one for a fixed number of executions on a copy
# of its seed corpus.  Fails when a target crashes, a sanitizer reports, or
# a target stops before its count.
#
#   scripts/fuzz.sh [--runs N]      (default N = 1000000)
set -euo pipefail

runs=1000000
while [ $# -gt 0 ]; do
  case "$1" in
    --runs) runs="$2"; shift 2 ;;
    --runs=*) runs="${1#--runs=}"; shift ;;
    *) echo "usage: $0 [--runs N]" >&2; exit 2 ;;
  esac
done

root="$(cd "$(dirname "$0")/.." && pwd)"
build="$root/build-fuzz"
targets=(smf_info_fuzzer smf_title_fuzzer wave_fuzzer mp3_fuzzer psong_fuzzer package_fuzzer
  text_fuzzer)

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja \
  -DZANSONG_BUILD_FUZZ=ON -DZANSONG_BUILD_TESTS=OFF -DZANSONG_BUILD_BENCH=OFF \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" --target make_fuzz_seeds "${targets[@]}"

# Inputs are written to files for the readers: keep them in memory when
# /dev/shm is there.
base=/tmp
[ -d /dev/shm ] && [ -w /dev/shm ] && base=/dev/shm
work="$(mktemp -d "$base/zansong-fuzz-run-XXXXXX")"
trap 'rm -rf "$work"' EXIT
"$build/fuzz/make_fuzz_seeds" "$work/seeds"

export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0"
export UBSAN_OPTIONS="halt_on_error=1:print_stacktrace=1"
export TMPDIR="$work"
status=0
for target in "${targets[@]}"; do
  mkdir -p "$work/corpus/$target"
  cp "$work/seeds/$target/"* "$work/corpus/$target/"
  log="$work/$target.log"
  if ! (cd "$work" && "$build/fuzz/$target" -runs="$runs" -seed=1 -print_final_stats=1 \
          "$work/corpus/$target" >"$log" 2>&1); then
    echo "FAIL $target"
    grep -E "ERROR|runtime error|SUMMARY|deadly|Test unit written" "$log" | head -20 || true
    mkdir -p "$root/build-fuzz/failures"
    cp "$log" "$work"/crash-* "$work"/leak-* "$work"/timeout-* "$root/build-fuzz/failures/" \
      2>/dev/null || true
    status=1
    continue
  fi
  if grep -qE "ERROR: AddressSanitizer|ERROR: LeakSanitizer|runtime error:" "$log"; then
    echo "FAIL $target (sanitizer report)"
    status=1
    continue
  fi
  done_runs="$(grep -oE 'stat::number_of_executed_units: [0-9]+' "$log" | grep -oE '[0-9]+$')"
  seconds="$(grep -oE 'Done [0-9]+ runs in [0-9]+ second' "$log" | grep -oE 'in [0-9]+' | grep -oE '[0-9]+')"
  if [ -z "$done_runs" ] || [ "$done_runs" -lt "$runs" ]; then
    echo "FAIL $target: ${done_runs:-no} executions of $runs"
    status=1
    continue
  fi
  echo "ok   $target: $done_runs executions in ${seconds:-?} s, no sanitizer report"
done
exit $status
