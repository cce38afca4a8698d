// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/faults/device.h"
#include "tests/faults/effort.h"
#include "tests/faults/process_state.h"
#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"

namespace {

// While it lives, this process can open `more` further files at most.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(rlim_t more) {
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int next = dup(0);
    close(next);
    rlimit limit = before;
    limit.rlim_cur = static_cast<rlim_t>(next) + more;
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
  }
  ~DescriptorLimit() { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0); }
  DescriptorLimit(const DescriptorLimit&) = delete;
  DescriptorLimit& operator=(const DescriptorLimit&) = delete;

 private:
  rlimit before;
};

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

TEST(RepeatedLoads, NeedOneDescriptor) {
  const Device device;
  const DescriptorLimit limit(1);
  expectRightBlock();
  expectRightBlock();
}

}  // namespace
