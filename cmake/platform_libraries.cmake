# SPDX-License-Identifier: Apache-2.0
# Finds libbase (system properties) and liblog (the log) as targets platform_base and platform_log.
#
# Debian's packages are the platform's own code. Where they do not exist, or are built with another
# C++ standard library than the one in use, the stand-ins of port/ take their place under the
# device's own file names.
include(CheckCXXSourceCompiles)
include(CMakePushCheckState)

option(TARNIX_STAND_INS "Use the stand-ins of port/ even where libbase and liblog exist" OFF)

set(PLATFORM_IS_REAL FALSE)
if(NOT TARNIX_STAND_INS)
  find_path(PLATFORM_HEADERS android-base/properties.h PATH_SUFFIXES android)
  find_library(PLATFORM_LIBBASE base PATH_SUFFIXES android)
  find_library(PLATFORM_LIBLOG log PATH_SUFFIXES android)
  if(PLATFORM_HEADERS AND PLATFORM_LIBBASE AND PLATFORM_LIBLOG)
    cmake_push_check_state()
    list(APPEND CMAKE_REQUIRED_INCLUDES ${PLATFORM_HEADERS})
    list(APPEND CMAKE_REQUIRED_LIBRARIES ${PLATFORM_LIBBASE} ${PLATFORM_LIBLOG})
    check_cxx_source_compiles("
      #include <android-base/properties.h>
      #include <android/log.h>
      int main() {
        return __android_log_print(ANDROID_LOG_INFO, nullptr, \"%s\",
                                   android::base::GetProperty(\"a\", \"\").c_str());
      }" PLATFORM_LINKS)
    cmake_pop_check_state()
    set(PLATFORM_IS_REAL ${PLATFORM_LINKS})
  endif()
endif()

if(PLATFORM_IS_REAL)
  set(PLATFORM_INCLUDE_DIRS ${PLATFORM_HEADERS})
  add_library(platform_base INTERFACE)
  target_link_libraries(platform_base INTERFACE ${PLATFORM_LIBBASE})
  add_library(platform_log INTERFACE)
  target_link_libraries(platform_log INTERFACE ${PLATFORM_LIBLOG})
else()
  message(NOTICE "-- libbase and liblog of this compiler's C++ library not found: using port/")
  set(PLATFORM_INCLUDE_DIRS ${PROJECT_SOURCE_DIR}/port/include)
  add_library(platform_log SHARED port/liblog.cpp)
  set_target_properties(platform_log PROPERTIES OUTPUT_NAME log)
  add_library(platform_base SHARED port/libbase.cpp)
  set_target_properties(platform_base PROPERTIES OUTPUT_NAME base)
  foreach(target platform_base platform_log)
    target_include_directories(${target} SYSTEM PUBLIC ${PLATFORM_INCLUDE_DIRS})
    target_link_libraries(${target} PRIVATE project_warnings)
  endforeach()
endif()
target_include_directories(platform_base SYSTEM INTERFACE ${PLATFORM_INCLUDE_DIRS})
target_include_directories(platform_log SYSTEM INTERFACE ${PLATFORM_INCLUDE_DIRS})
