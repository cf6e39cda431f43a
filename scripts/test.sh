#!/usr/bin/env bash
# Installs what is missing, builds everything and runs the whole test suite.
#   scripts/test.sh               build in build/, run the tests
#   SANITIZE=1 scripts/test.sh    build in build-asan/ with AddressSanitizer
#                                 and UndefinedBehaviorSanitizer, run the tests
#   CROSS=armhf scripts/test.sh   cross-build for ARM in build-armhf/ (or
#   CROSS=arm64 ...)              build-arm64/), run the tests under qemu-user
#                                 (scripts/cross-test.sh)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/install-deps.sh

sanitize=${SANITIZE:-0}
cross=${CROSS:-}
if [ -n "$cross" ]; then
  ./scripts/install-cross-deps.sh "$cross"
  build=${BUILD_DIR:-build-$cross}
  # Benchmarks and fuzz targets measure and search on this machine's own
  # build.  Each test program runs as TEST_SHARDS CTest tests of a share of
  # its tests each, since every start of a program under the emulator costs
  # about half a second (0: one CTest test per test).
  flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/$cross.cmake"
         -DZANSONG_BUILD_BENCH=OFF -DZANSONG_BUILD_FUZZ=OFF
         -DZANSONG_TEST_SHARDS="${TEST_SHARDS:-4}")
elif [ "$sanitize" = 1 ]; then
  build=${BUILD_DIR:-build-asan}
  flags=(-DZANSONG_SANITIZE=ON -DZANSONG_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug)
  export ASAN_OPTIONS=${ASAN_OPTIONS:-abort_on_error=0:detect_leaks=1:halt_on_error=1}
  export UBSAN_OPTIONS=${UBSAN_OPTIONS:-halt_on_error=1:print_stacktrace=1}
else
  build=${BUILD_DIR:-build}
  flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
fi

# The tests work in device images of their own; they must leave the
# instrument's real paths alone.
real_paths=(/usr/local/songs /var/volatile /tmp/.zansong.db /usr/local/www/ctrl/song.json)
before=$(ls -ld "${real_paths[@]}" 2>/dev/null || true)

cmake -S . -B "$build" -G Ninja -DZANSONG_WERROR=ON "${flags[@]}"
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"

after=$(ls -ld "${real_paths[@]}" 2>/dev/null || true)
if [ "$before" != "$after" ]; then
  echo "The tests changed the instrument's real paths:" >&2
  echo "$after" >&2
  exit 1
fi
