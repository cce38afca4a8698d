// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"

namespace {

// Loads, without what a test keeps of it.
uint32_t bareLoad() {
  uint8_t buffer[TARNIX_UWB_PARAMS_SIZE];
  return load_uwb_params_from_files(buffer, sizeof(buffer));
}

// Runs so many loads that each give `result`, and requires that they leave nothing behind.
void expectLevel(size_t loads, uint32_t result) {
  keepLog(false);
  ASSERT_EQ(bareLoad(), result);
  const size_t allocations = liveAllocations();
  const size_t descriptors = openDescriptors();
  for (size_t i = 0; i < loads; ++i) {
    if (bareLoad() != result) FAIL() << "load " << i;
  }
  EXPECT_EQ(liveAllocations(), allocations);
  EXPECT_EQ(openDescriptors(), descriptors);
  keepLog(true);
}

TEST(RepeatedLoads, LeaveMemoryAndDescriptorsLevel) {
  const Device device;
  expectLevel(effort(10000), 82);
}

TEST(RepeatedLoads, OfInvalidTextsLeaveMemoryAndDescriptorsLevel) {
  const Device device;
  device.write(kCountryFile, "version=x\n");
  device.write(kCommonFile, "ch5.antenna_selection=a\n");
  expectLevel(effort(10000), 0);
}

}  // namespace
