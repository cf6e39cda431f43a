# Cross-build for 64-bit ARM (Debian arm64):
#   cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/arm64.cmake
# scripts/cross-test.sh arm64 installs what it needs and does this.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(ZANSONG_CROSS_ARCH arm64)
set(ZANSONG_CROSS_TRIPLE aarch64-linux-gnu)
set(ZANSONG_CROSS_QEMU qemu-aarch64)
set(ZANSONG_CROSS_LOADER ld-linux-aarch64.so.1)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
