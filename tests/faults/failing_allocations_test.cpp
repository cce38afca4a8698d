// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

#include "tests/faults/device.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"

namespace {

const Bytes kUntouched = guarded(TARNIX_UWB_PARAMS_SIZE);
const Bytes kRight = guarded(TARNIX_UWB_PARAMS_SIZE, block());

// A load in which the allocation after `before` others fails.
struct FailedLoad {
  explicit FailedLoad(size_t before) {
    const size_t descriptors_before = openDescriptors();
    const size_t live_before = liveAllocations();
    {
      Bytes memory = guarded(TARNIX_UWB_PARAMS_SIZE);
      const FailingAllocation failure(before);
      try {
        result = load_uwb_params_from_files(memory.data() + GUARD, TARNIX_UWB_PARAMS_SIZE);
      } catch (const OutOfMemory&) {
        threw = true;
      }
      happened = FailingAllocation::reached();
      is_untouched = std::equal(memory.begin(), memory.end(), kUntouched.begin());
      is_right = std::equal(memory.begin(), memory.end(), kRight.begin());
    }
    left_behind = liveAllocations() - live_before;
    descriptors = openDescriptors() - descriptors_before;
    log = takeLog();
  }

  uint32_t result = 0;
  bool threw = false;
  bool happened = false;  // False when a load has fewer allocations.
  bool is_untouched = false;
  bool is_right = false;
  size_t left_behind = 0;
  size_t descriptors = 0;
  Log log;
};

// A failure inside a step that catches it: the rest of the file is ignored, and the load goes on.
bool isLogged(const Log& log) {
  return std::any_of(log.begin(), log.end(), [](const LogLine& line) {
    return line.priority == 6 && (beginsWith(line.text, "Failed to parse calb file ") ||
                                  beginsWith(line.text, "Failed to parse calib from "));
  });
}

// libc++ up to 14 loses the memory of a vector of which an element cannot be copied.
bool isLostInACopy() {
  const std::vector<std::string> strings(2, "longer than a string without memory");
  const size_t before = liveAllocations();
  const FailingAllocation failure(2);
  try {
    const std::vector<std::string> copy = strings;
  } catch (const std::bad_alloc&) {
  }
  return liveAllocations() != before;
}

// A block from which something is missing must not come without a word.
TEST(FailingAllocations, AreThrownOrLoggedAndForgottenByTheNextLoad) {
  const Device device;
  // The standard library keeps what it has looked up once, and the library its antenna names.
  expectRightBlock();
  const bool is_lost = isLostInACopy();
  size_t before = 0;
  size_t thrown = 0;
  for (;; ++before) {
    SCOPED_TRACE("allocation " + std::to_string(before));
    const FailedLoad failed(before);
    if (!failed.happened) break;
    if (failed.threw) ++thrown;
    ASSERT_TRUE(failed.threw || failed.is_right || isLogged(failed.log))
        << testing::PrintToString(failed.log);
    ASSERT_TRUE(failed.result == 82 || (failed.result == 0 && failed.is_untouched));
    ASSERT_TRUE(is_lost || failed.left_behind == 0);
    ASSERT_EQ(failed.descriptors, 0U);
    expectRightBlock();
    ASSERT_FALSE(HasFailure());
  }
  std::printf("%zu allocations failed, %zu of them thrown\n", before, thrown);
  EXPECT_GT(before, 100U) << "the load is the real one";
}

}  // namespace
