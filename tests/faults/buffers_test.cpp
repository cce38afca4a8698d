// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/faults/device.h"
#include "tests/faults/guarded_load.h"
#include "tests/kit/log_capture.h"

namespace {

TEST(Buffers, OfEveryCapacityTakeAsMuchOfTheBlockAsFits) {
  const Device device;
  for (unsigned int capacity = 0; capacity <= 200; ++capacity) {
    const uint32_t count = std::min(82U, capacity);
    const Load found = load(capacity);
    ASSERT_EQ(found.result, count) << "capacity " << capacity;
    ASSERT_EQ(found.memory, memoryWith(count, capacity)) << "capacity " << capacity;
  }
  takeLog();
}

TEST(Buffers, MayLieAtAnyAddress) {
  const Device device;
  for (size_t shift = 0; shift < alignof(std::max_align_t); ++shift) {
    const Load found = load(TARNIX_UWB_PARAMS_SIZE, shift);
    ASSERT_EQ(found.result, 82U) << "shifted by " << shift;
    ASSERT_EQ(found.memory, memoryWith(82, TARNIX_UWB_PARAMS_SIZE, shift)) << "by " << shift;
  }
  takeLog();
}

TEST(Buffers, OfEveryCapacityStayUntouchedByAnInvalidCalibration) {
  const Device device;
  device.write(kCountryFile, "patch_antenna_on_the_back.selector_gpio=8\n");
  for (unsigned int capacity = 0; capacity <= 200; ++capacity) {
    const Load found = load(capacity);
    ASSERT_EQ(found.result, 0U) << "capacity " << capacity;
    ASSERT_EQ(found.memory, memoryWith(0, capacity)) << "capacity " << capacity;
  }
  EXPECT_EQ(takeLog().back(), error("Unable to convert calib to params: GPIO must be 6 or 7"));
}

TEST(Buffers, NullOnesAreLeftAlone) {
  const Device device;
  takeLog();
  EXPECT_EQ(load_uwb_params_from_files(nullptr, TARNIX_UWB_PARAMS_SIZE), 0U);
  EXPECT_THAT(takeLog(),
              testing::ElementsAre(info("load_uwb_params_from_files entry, version v1.2-RC1")));
}

}  // namespace
