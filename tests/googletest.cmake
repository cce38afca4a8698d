# SPDX-License-Identifier: Apache-2.0
# googletest_main: GoogleTest, GoogleMock and a main function. Debian's built libraries serve where
# they are of the compiler's C++ library and processor, and Debian's sources anywhere else.
include(CheckCXXSourceCompiles)

check_cxx_source_compiles("
  #include <string>
  #ifdef _LIBCPP_VERSION
  #error libc++
  #endif
  int main() { return 0; }" USES_LIBSTDCXX)

add_library(googletest_main INTERFACE)
if(USES_LIBSTDCXX AND NOT CMAKE_CROSSCOMPILING)
  find_package(GTest REQUIRED)
  target_link_libraries(googletest_main INTERFACE GTest::gmock_main GTest::gmock GTest::gtest)
else()
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  target_link_libraries(googletest_main INTERFACE gmock_main)
endif()
