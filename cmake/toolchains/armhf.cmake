# Cross-build for 32-bit ARM with hardware floating point (Debian armhf):
#   cmake -S . -B build-armhf -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/armhf.cmake
# scripts/cross-test.sh armhf installs what it needs and does this.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(ZANSONG_CROSS_ARCH armhf)
set(ZANSONG_CROSS_TRIPLE arm-linux-gnueabihf)
set(ZANSONG_CROSS_QEMU qemu-arm)
set(ZANSONG_CROSS_LOADER ld-linux-armhf.so.3)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
