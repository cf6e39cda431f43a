#!/usr/bin/env bash
# Installs the built tree into a temporary prefix and uses it from there as
# any program outside the project would, with no LD_LIBRARY_PATH: the
# installed files carry relative run paths only, the library finds
# libzanmsg.so and libush.so beside it, a small consumer program builds and
# runs twice (with find_package(zansong) and with pkg-config), and the
# installed zanfm runs its help and its demo.
#   consumer_test.sh BUILD_DIR CONSUMER_SOURCE_DIR [EXTRA_CXXFLAGS [CXX [TOOLCHAIN_FILE [EMULATOR...]]]]
# In a cross-build, CXX is the cross compiler, TOOLCHAIN_FILE the build's
# toolchain file and EMULATOR the command that runs the target's programs
# (the target's dynamic loader under qemu-user, see
# cmake/toolchains/debian-cross.cmake).
set -euo pipefail
build=$1; src=$2; extra=${3:-}; cxx=${4:-g++}; toolchain=${5:-}
emulator=("${@:6}")
unset LD_LIBRARY_PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >/dev/null
lib=$(find "$prefix" -name 'libzansong.so' | head -n1)
libdir=$(dirname "$lib")

fail() { echo "consumer_test: $*" >&2; exit 1; }

# The shared libraries a library loads and where they are found: ldd, or in
# a cross-build the target's loader under the emulator, which lists them
# the same way.
list_libraries() {
  if [ ${#emulator[@]} -gt 0 ]; then "${emulator[@]}" --list "$1"; else ldd "$1"; fi
}

# Run paths: relative ($ORIGIN) only.
runpath() { readelf -d "$1" | sed -n 's/.*(RUNPATH).*\[\(.*\)\]/\1/p'; }
[ "$(runpath "$(readlink -f "$lib")")" = '$ORIGIN' ] || fail "libzansong.so run path: $(runpath "$lib")"
[ "$(runpath "$prefix/bin/zanfm")" = "\$ORIGIN/$(realpath --relative-to="$prefix/bin" "$libdir")" ] \
  || fail "zanfm run path: $(runpath "$prefix/bin/zanfm")"
while IFS= read -r -d '' f; do
  if readelf -h "$f" >/dev/null 2>&1 && runpath "$f" | tr ':' '\n' | grep -q '^/'; then
    fail "absolute run path in $f: $(runpath "$f")"
  fi
done < <(find "$prefix" -type f -print0)
# Read whole first: grep -q stops reading at the match, and a lister that
# then writes into the closed pipe would fail the pipeline.
libraries=$(list_libraries "$lib")
for platform in libzanmsg.so libush.so; do
  grep -q "$platform => $libdir/$platform" <<<"$libraries" \
    || fail "libzansong.so does not find $platform beside it: $libraries"
done

# With find_package.
cmake_args=(-DCMAKE_PREFIX_PATH="$prefix")
if [ -n "$toolchain" ]; then
  # A cross toolchain searches only its target tree; name the package's
  # folder directly.
  cross_root=$(sed -n 's/^ZANSONG_CROSS_ROOT:[A-Z]*=//p' "$build/CMakeCache.txt")
  cmake_args=(-DCMAKE_TOOLCHAIN_FILE="$toolchain" -DZANSONG_CROSS_ROOT="$cross_root"
              -Dzansong_DIR="$libdir/cmake/zansong")
fi
cmake -S "$src" -B "$work/cmake-build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
      "${cmake_args[@]}" -DCMAKE_CXX_FLAGS="$extra" >/dev/null
cmake --build "$work/cmake-build" >/dev/null
"${emulator[@]}" "$work/cmake-build/consumer"

# With pkg-config; the consumer names the prefix's library directory as its
# own run path, as a program built against a private prefix does.  The
# build's own linker flags come too: in a cross-build they tell the linker
# where the target's libraries are.
export PKG_CONFIG_PATH="$libdir/pkgconfig"
ldflags=$(sed -n 's/^CMAKE_EXE_LINKER_FLAGS:STRING=//p' "$build/CMakeCache.txt")
# shellcheck disable=SC2046,SC2086
"$cxx" -std=c++17 $extra -o "$work/consumer-pc" "$src/consumer.cpp" $(pkg-config --cflags --libs zansong) \
    $ldflags -Wl,-rpath,"$(pkg-config --variable=libdir zansong)"
"${emulator[@]}" "$work/consumer-pc"

# The installed command-line host, from its prefix.
"${emulator[@]}" "$prefix/bin/zanfm" --help >"$work/help.txt" || fail "zanfm --help: $(cat "$work/help.txt")"
grep -q 'demo' "$work/help.txt" || fail "zanfm --help shows no demo"
"${emulator[@]}" "$prefix/bin/zanfm" demo "$work/demo" >"$work/demo.txt" 2>&1 \
  || fail "zanfm demo failed: $(tail -n 20 "$work/demo.txt")"
grep -q 'registered   #12 Classics/04 Prelude.mid' "$work/demo.txt" \
  || fail "zanfm demo did not register the changes: $(tail -n 20 "$work/demo.txt")"
[ -x "$work/demo/usr/local/bin/songdb2json" ] || fail "the demo image has no exporter"
[ -s "$work/demo/usr/local/www/ctrl/song.json" ] || fail "the demo wrote no JSON export"
echo "consumer ok: find_package, pkg-config, zanfm from $prefix"
