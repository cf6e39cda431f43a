#!/usr/bin/env bash
# The main job: installs what is missing, builds the library and zanfm, then
# runs the zanfm demo: a device image with a generated sample library on the
# internal storage and a USB stick, registered, listed, changed and
# registered again.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
./scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target zanfm
rm -rf build/zanfm-demo
./build/tools/zanfm demo build/zanfm-demo
