# Shared part of the cross-build toolchain files: Debian's cross compilers
# for ZANSONG_CROSS_TRIPLE, the target libraries unpacked by
# scripts/install-cross-deps.sh into ZANSONG_CROSS_ROOT, and qemu-user to run
# the built programs (the tests among them) on this machine.
#
# The emulator runs the target's dynamic loader itself with an explicit
# library path, instead of qemu's -L prefix: with a prefix, qemu shows the
# programs the prefix in place of any path that exists in it, "/" included,
# so that a directory walk from "/" would see the prefix instead of the
# machine's files.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${ZANSONG_CROSS_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${ZANSONG_CROSS_TRIPLE}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${ZANSONG_CROSS_TRIPLE})

if(NOT ZANSONG_CROSS_ROOT)
  set(ZANSONG_CROSS_ROOT /opt/zansong-cross/${ZANSONG_CROSS_ARCH})
endif()
set(ZANSONG_CROSS_ROOT ${ZANSONG_CROSS_ROOT} CACHE PATH "Tree of the target's libraries")
if(NOT EXISTS ${ZANSONG_CROSS_ROOT}/usr/lib/${ZANSONG_CROSS_TRIPLE})
  message(FATAL_ERROR "No ${ZANSONG_CROSS_ARCH} libraries in ${ZANSONG_CROSS_ROOT}: "
    "run scripts/install-cross-deps.sh ${ZANSONG_CROSS_ARCH} ${ZANSONG_CROSS_ROOT}")
endif()

# Headers and libraries come from the target tree and the cross compiler's
# own C library only; programs (the emulator, shells) are this machine's.
set(CMAKE_FIND_ROOT_PATH ${ZANSONG_CROSS_ROOT} /usr/${ZANSONG_CROSS_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(_zansong_cross_libs
  ${ZANSONG_CROSS_ROOT}/usr/lib/${ZANSONG_CROSS_TRIPLE}
  ${ZANSONG_CROSS_ROOT}/lib/${ZANSONG_CROSS_TRIPLE})
# Architecture-specific headers (openssl/configuration.h) sit in the
# multiarch include folder of the tree.
set(CMAKE_C_FLAGS_INIT "-isystem ${ZANSONG_CROSS_ROOT}/usr/include/${ZANSONG_CROSS_TRIPLE}")
set(CMAKE_CXX_FLAGS_INIT "-isystem ${ZANSONG_CROSS_ROOT}/usr/include/${ZANSONG_CROSS_TRIPLE}")
# Libraries needed by the tree's libraries are found in the tree too.
set(_zansong_rpath_link "")
foreach(dir ${_zansong_cross_libs})
  string(APPEND _zansong_rpath_link " -Wl,-rpath-link,${dir}")
endforeach()
set(CMAKE_EXE_LINKER_FLAGS_INIT "${_zansong_rpath_link}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${_zansong_rpath_link}")

# The programs run on the tree's C library, loader and character-set
# converters (GCONV_PATH: the C library looks for them in the target's
# /usr/lib/<triple>/gconv otherwise, which this machine does not have).
list(REVERSE _zansong_cross_libs)
list(JOIN _zansong_cross_libs ":" _zansong_library_path)
set(CMAKE_CROSSCOMPILING_EMULATOR
  ${ZANSONG_CROSS_QEMU}
  -E GCONV_PATH=${ZANSONG_CROSS_ROOT}/usr/lib/${ZANSONG_CROSS_TRIPLE}/gconv
  ${ZANSONG_CROSS_ROOT}/lib/${ZANSONG_CROSS_TRIPLE}/${ZANSONG_CROSS_LOADER}
  --library-path ${_zansong_library_path})
