// SPDX-License-Identifier: Apache-2.0
#include <dlfcn.h>
#include <gtest/gtest.h>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"

namespace {

constexpr const char* kLibrary = LIBRARY_PATH;

// Opens the library, loads once and closes it. Returns the result of the load, or 0.
uint32_t openLoadClose() {
  void* const library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return 0;
  const auto load = reinterpret_cast<decltype(&load_uwb_params_from_files)>(
      dlsym(library, "load_uwb_params_from_files"));
  uint8_t buffer[TARNIX_UWB_PARAMS_SIZE];
  const uint32_t result = load == nullptr ? 0 : load(buffer, sizeof(buffer));
  return dlclose(library) == 0 ? result : 0;
}

bool isMapped() {
  return dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD) != nullptr;
}

TEST(Unloading, LeavesNothingBehind) {
  const Device device;
  keepLog(false);
  ASSERT_FALSE(isMapped());
  ASSERT_EQ(openLoadClose(), 82U);
  ASSERT_FALSE(isMapped());
  const size_t allocations = liveAllocations();
  const size_t descriptors = openDescriptors();
  const size_t regions = mappedRegions();
  for (size_t i = 0; i < effort(1000); ++i) ASSERT_EQ(openLoadClose(), 82U) << "round " << i;
  EXPECT_FALSE(isMapped());
  EXPECT_EQ(liveAllocations(), allocations);
  EXPECT_EQ(openDescriptors(), descriptors);
  // The C library's own heap may take a region or two; many stays must not add up.
  EXPECT_LE(mappedRegions(), regions + 10);
  keepLog(true);
}

}  // namespace
