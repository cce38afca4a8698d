// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

#include "tests/faults/device.h"
#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"

namespace {

TEST(Buffers, OfEveryCapacityTakeAsMuchOfTheBlockAsFits) {
  const Device device;
  for (unsigned int capacity = 0; capacity <= 200; ++capacity) {
    const uint32_t count = std::min(82U, capacity);
    const Load found(capacity);
    ASSERT_EQ(found.result, count) << "capacity " << capacity;
    ASSERT_EQ(found.memory, guarded(capacity, {kBlock, kBlock + count})) << "capacity " << capacity;
    ASSERT_EQ(takeLog().back(),
              info(std::string("Valid calibration was parsed from entries in ") + kPathFile));
  }
}

TEST(Buffers, MayLieAtAnyAddress) {
  const Device device;
  for (size_t shift = 0; shift < alignof(std::max_align_t); ++shift) {
    const Load found(TARNIX_UWB_PARAMS_SIZE, shift);
    ASSERT_EQ(found.result, 82U) << "shifted by " << shift;
    ASSERT_EQ(found.memory, guarded(82, block(), shift)) << "shifted by " << shift;
  }
}

TEST(Buffers, OfEveryCapacityStayUntouchedByAnInvalidCalibration) {
  const Device device;
  device.write(kCountryFile, std::string(kAntenna5) + ".selector_gpio=8\n");
  for (unsigned int capacity = 0; capacity <= 200; ++capacity) {
    const Load found(capacity);
    ASSERT_EQ(found.result, 0U) << "capacity " << capacity;
    ASSERT_EQ(found.memory, guarded(capacity)) << "capacity " << capacity;
  }
  EXPECT_EQ(takeLog().back(), error("Unable to convert calib to params: GPIO must be 6 or 7"));
}

}  // namespace
