# SPDX-License-Identifier: Apache-2.0
# A big-endian processor.
set(CMAKE_SYSTEM_PROCESSOR s390x)
include(${CMAKE_CURRENT_LIST_DIR}/debian_sysroot.cmake)
use_sysroot(s390x s390x-linux-gnu qemu-s390x /lib/ld64.so.1)

# libc++ of this port cannot be linked, and lld does not know the processor.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "--ld-path=s390x-linux-gnu-ld")
endforeach()
