# SPDX-License-Identifier: Apache-2.0
# clang for another of Debian's processors, against the folder that script/sysroot makes, with qemu
# to run what it builds.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER clang-14)
set(CMAKE_CXX_COMPILER clang++-14)

# arch is Debian's name of the architecture, loader the path of its dynamic linker.
macro(use_sysroot arch triple emulator loader)
  set(CMAKE_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/${arch})
  cmake_path(NORMAL_PATH CMAKE_SYSROOT)
  if(NOT EXISTS ${CMAKE_SYSROOT})
    message(FATAL_ERROR "No ${CMAKE_SYSROOT}: run script/sysroot ${arch} first")
  endif()
  set(CMAKE_C_COMPILER_TARGET ${triple})
  set(CMAKE_CXX_COMPILER_TARGET ${triple})
  set(CMAKE_LIBRARY_ARCHITECTURE ${triple})

  # Everything for the processor comes from the folder, programs that build it from the machine.
  set(CMAKE_FIND_ROOT_PATH ${CMAKE_SYSROOT})
  set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

  # The folder's own dynamic linker runs a program, so no path of this machine is in the program,
  # and the emulator leaves the paths alone that the program opens. LD_LIBRARY_PATH has no say then.
  set(CMAKE_CROSSCOMPILING_EMULATOR ${emulator} ${CMAKE_SYSROOT}${loader} --library-path
    ${CMAKE_SYSROOT}/lib/${triple}:${CMAKE_SYSROOT}/usr/lib/${triple}:${CMAKE_BINARY_DIR})
endmacro()
