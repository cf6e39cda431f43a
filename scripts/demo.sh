#!/usr/bin/env bash
# The main job: installs what is missing, builds the library, lays out a
# device image under build/ and shows what is in it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build
echo
echo "Device image in build/device-image (the system root for the library):"
(cd build/device-image && find . | sort | sed 's/^\.//; /^$/d')
