#!/usr/bin/env bash
# Builds the library, the stand-ins, zanfm and the tests for an ARM
# processor and runs the whole test suite under qemu-user.
#   scripts/cross-test.sh armhf      32-bit ARM, hard float (build-armhf/)
#   scripts/cross-test.sh arm64      64-bit ARM (build-arm64/)
# Installs whatever is missing first (scripts/install-deps.sh for the tools
# of this machine, scripts/install-cross-deps.sh for the cross compilers,
# qemu-user and the target's libraries).  Benchmarks and fuzz targets are
# not built: they measure and search on this machine's own build.  Each test
# program runs as 4 CTest tests of a share of its tests each (sharding; set
# TEST_SHARDS=0 for one CTest test per test), since every start of a
# program under the emulator costs about half a second.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

[ $# -eq 1 ] && { [ "$1" = armhf ] || [ "$1" = arm64 ]; } ||
  { echo "usage: cross-test.sh armhf|arm64" >&2; exit 2; }
arch=$1
./scripts/install-deps.sh
./scripts/install-cross-deps.sh "$arch"

build=${BUILD_DIR:-build-$arch}
real_paths=(/usr/local/songs /var/volatile /tmp/.zansong.db /usr/local/www/ctrl/song.json)
before=$(ls -ld "${real_paths[@]}" 2>/dev/null || true)

cmake -S . -B "$build" -G Ninja -DZANSONG_WERROR=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/$arch.cmake" \
  -DZANSONG_BUILD_BENCH=OFF -DZANSONG_BUILD_FUZZ=OFF -DZANSONG_TEST_SHARDS="${TEST_SHARDS:-4}"
cmake --build "$build"
ctest --test-dir "$build" --output-on-failure -j"$(nproc)"

after=$(ls -ld "${real_paths[@]}" 2>/dev/null || true)
if [ "$before" != "$after" ]; then
  echo "The tests changed the instrument's real paths:" >&2
  echo "$after" >&2
  exit 1
fi
