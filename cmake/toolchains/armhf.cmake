# SPDX-License-Identifier: Apache-2.0
# 32-bit ARM with the device's C++ library.
set(CMAKE_SYSTEM_PROCESSOR arm)
include(${CMAKE_CURRENT_LIST_DIR}/debian_sysroot.cmake)
use_sysroot(armhf arm-linux-gnueabihf qemu-arm /lib/ld-linux-armhf.so.3)

# The C++ library and the sanitizers' run-time are those of the folder. clang would look for both
# beside itself first.
set(CMAKE_CXX_FLAGS_INIT "-stdlib++-isystem ${CMAKE_SYSROOT}/usr/lib/llvm-15/include/c++/v1")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-fuse-ld=lld -stdlib=libc++ -resource-dir=${CMAKE_SYSROOT}/usr/lib/llvm-14/lib/clang/14.0.6")
endforeach()
