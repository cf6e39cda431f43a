#!/usr/bin/env bash
# Installs the built tree into a temporary prefix, then builds and runs a
# small consumer program against it twice: with find_package(zansong) and
# with pkg-config.
#   consumer_test.sh BUILD_DIR CONSUMER_SOURCE_DIR [EXTRA_CXXFLAGS]
set -euo pipefail
build=$1; src=$2; extra=${3:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
libdir=$(dirname "$(find "$work/prefix" -name 'libzansong.so' | head -n1)")

# With find_package.
cmake -S "$src" -B "$work/cmake-build" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" \
      -DCMAKE_CXX_FLAGS="$extra" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
LD_LIBRARY_PATH="$libdir" "$work/cmake-build/consumer"

# With pkg-config.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
# shellcheck disable=SC2046,SC2086
g++ -std=c++17 $extra -o "$work/consumer-pc" "$src/consumer.cpp" $(pkg-config --cflags --libs zansong)
LD_LIBRARY_PATH="$libdir" "$work/consumer-pc"
