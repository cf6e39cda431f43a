#!/usr/bin/env bash
# Installs what a cross-build for an ARM processor needs, and nothing that
# is there already:
#   - Debian's cross compilers (crossbuild-essential-ARCH) and qemu-user;
#   - the ARCH builds of the libraries the library, its tests and zanfm use,
#     unpacked into a tree of their own (default /opt/zansong-cross/ARCH),
#     which cmake/toolchains/ARCH.cmake searches and the emulator loads from.
#
#   scripts/install-cross-deps.sh ARCH [TREE]        ARCH: armhf or arm64
#
# The target libraries are fetched with apt-get download and unpacked with
# dpkg-deb, not installed through multiarch: a multiarch install needs each
# shared library at exactly the version installed for this machine, and
# apt refuses whenever the two architectures' package lists are at different
# updates (docs/porting.md).  The tree touches nothing of the machine's own
# packages.  A second run with the same package list does nothing.
set -euo pipefail

usage() { echo "usage: install-cross-deps.sh armhf|arm64 [TREE]" >&2; exit 2; }
[ $# -ge 1 ] && [ $# -le 2 ] || usage
arch=$1
case "$arch" in
  armhf) triple=arm-linux-gnueabihf ;;
  arm64) triple=aarch64-linux-gnu ;;
  *) usage ;;
esac
tree=${2:-/opt/zansong-cross/$arch}

# Packages of this machine's architecture.
host_packages=(crossbuild-essential-"$arch" qemu-user)
# Packages of the target architecture: each runtime library beside its
# development package.  The cross compilers bring the C and C++ libraries
# to link with; the tree gets the target's own as well, to run with (the
# C library's character-set converters among them).
target_packages=(
  libc6 libgcc-s1 libstdc++6
  libsqlite3-dev libsqlite3-0
  libexpat1-dev libexpat1
  libssl-dev libssl3
  libgtest-dev libgmock-dev
  libevent-dev libevent-2.1-7 libevent-core-2.1-7 libevent-extra-2.1-7
  libevent-pthreads-2.1-7 libevent-openssl-2.1-7
)
# Header-only packages, the same for every architecture.
header_packages=(nlohmann-json3-dev libcli11-dev)

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive

updated=0
apt_update() {
  [ "$updated" = 1 ] && return 0
  updated=1
  # An index that cannot be fetched (one architecture of a mirror in the
  # middle of a sync, say) is not fatal: what is needed is looked for in
  # the lists that did arrive, and a missing package fails below.
  "${sudo_cmd[@]}" apt-get update -qq || echo "install-cross-deps.sh: apt-get update reported errors; going on with the lists it has" >&2
}

if ! dpkg --print-foreign-architectures | grep -qx "$arch"; then
  "${sudo_cmd[@]}" dpkg --add-architecture "$arch"
  apt_update
fi

missing=()
for p in "${host_packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  apt_update
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

wanted="$(printf '%s\n' "${target_packages[@]/%/:$arch}" "${header_packages[@]}")"
if [ -f "$tree/.packages" ] && [ "$(cat "$tree/.packages")" = "$wanted" ]; then
  exit 0
fi

echo "Unpacking the $arch libraries into $tree"
apt_update
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# As root, apt downloads as its own user, who must be able to write there.
if [ "$(id -u)" -eq 0 ] && id _apt >/dev/null 2>&1; then chown _apt "$work"; fi
(cd "$work" && apt-get download -qq "${target_packages[@]/%/:$arch}" "${header_packages[@]}")
"${sudo_cmd[@]}" rm -rf "$tree"
"${sudo_cmd[@]}" mkdir -p "$tree"
for deb in "$work"/*.deb; do
  "${sudo_cmd[@]}" dpkg-deb -x "$deb" "$tree"
done
# Links that point to an absolute path (libexpat.so ->
# /lib/<triple>/libexpat.so.1...) must point into the tree instead.
while IFS= read -r link; do
  "${sudo_cmd[@]}" ln -sfn "$tree$(readlink "$link")" "$link"
done < <(find "$tree" -type l -lname '/*')
[ -d "$tree/usr/lib/$triple" ] || { echo "install-cross-deps.sh: no $triple libraries in $tree" >&2; exit 1; }
printf '%s\n' "$wanted" | "${sudo_cmd[@]}" tee "$tree/.packages" >/dev/null
