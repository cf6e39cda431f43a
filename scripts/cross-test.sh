#!/usr/bin/env bash
# Builds the library, the stand-ins, zanfm and the tests for an ARM
# processor and runs the whole test suite under qemu-user.
#   scripts/cross-test.sh armhf      32-bit ARM, hard float (build-armhf/)
#   scripts/cross-test.sh arm64      64-bit ARM (build-arm64/)
# Installs whatever is missing first (scripts/install-deps.sh for the tools
# of this machine, scripts/install-cross-deps.sh for the cross compilers,
# qemu-user and the target's libraries), then builds and tests as
# scripts/test.sh does; see there and docs/porting.md.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ $# -ne 1 ] || { [ "$1" != armhf ] && [ "$1" != arm64 ]; }; then
  echo "usage: cross-test.sh armhf|arm64" >&2
  exit 2
fi
CROSS=$1 exec ./scripts/test.sh
