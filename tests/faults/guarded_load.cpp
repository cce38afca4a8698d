// SPDX-License-Identifier: Apache-2.0
#include "tests/faults/guarded_load.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tests/faults/device.h"
#include "tests/kit/log_capture.h"

Load load(unsigned int capacity, size_t shift) {
  Load load;
  load.memory.assign(kGuard + shift + capacity + kGuard, kUntouched);
  void* const buffer = load.memory.data() + kGuard + shift;
  try {
    load.result = load_uwb_params_from_files(buffer, capacity);
  } catch (const std::bad_alloc&) {
    load.threw = true;
  }
  return load;
}

std::vector<uint8_t> memoryWith(size_t count, unsigned int capacity, size_t shift) {
  std::vector<uint8_t> memory(kGuard + shift + capacity + kGuard, kUntouched);
  const std::vector<uint8_t> block = deviceBlock();
  std::copy_n(block.begin(), count, memory.begin() + static_cast<ptrdiff_t>(kGuard + shift));
  return memory;
}

void expectRightBlock() {
  const Load next = load(TARNIX_UWB_PARAMS_SIZE);
  EXPECT_FALSE(next.threw);
  EXPECT_EQ(next.result, 82U);
  EXPECT_EQ(next.memory, memoryWith(82, TARNIX_UWB_PARAMS_SIZE));
  takeLog();
}
