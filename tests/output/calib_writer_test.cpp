// SPDX-License-Identifier: Apache-2.0
#include "output/calib_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <type_traits>

#include "tests/kit/doubles.h"
#include "tests/kit/guards.h"
#include "tests/kit/params.h"

namespace {

// Bytes 1, 2, 3, ... 82, so that each one tells its place.
Bytes countingBytes(size_t count = 82) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), uint8_t{1});
  return bytes;
}

// The header's static_asserts check the offsets of its fields.
TEST(CccParams, IsEightyTwoBytesAtAnyAddress) {
  EXPECT_EQ(sizeof(ccc_params), 82U);
  EXPECT_EQ(alignof(ccc_params), 1U);
  EXPECT_TRUE(std::is_trivially_copyable_v<ccc_params>);
}

TEST(WriteCalibToBuffer, WritesAsMuchOfTheBlockAsFits) {
  const ccc_params params = paramsOf(countingBytes());
  for (const uint32_t size :
       {0U, 1U, 2U, 10U, 81U, 82U, 83U, 100U, 255U, 256U, 65536U, 0x80000000U, 0xFFFFFFFFU}) {
    const uint32_t count = std::min(size, 82U);
    Bytes memory = guarded(100);
    EXPECT_EQ(write_calib_to_buffer(params, memory.data() + kGuard, size), count) << size;
    EXPECT_EQ(memory, guarded(100, countingBytes(count))) << size;
  }
  EXPECT_EQ(bytesOf(params), countingBytes()) << "the block itself changed";
}

TEST(WriteCalibToBuffer, WritesToAnyAddress) {
  for (size_t shift = 0; shift < 4; ++shift) {
    Bytes memory = guarded(100, {}, shift);
    write_calib_to_buffer(paramsOf(countingBytes()), memory.data() + kGuard + shift, 100);
    EXPECT_EQ(memory, guarded(100, countingBytes(), shift)) << shift;
  }
}

TEST(WriteCalibToBuffer, DoesNotLookAtTheContents) {
  const Bytes all_ones(82, 0xFF);
  Bytes memory(82);
  takeLog();
  EXPECT_EQ(write_calib_to_buffer(paramsOf(all_ones), memory.data(), 82), 82U);
  EXPECT_EQ(memory, all_ones);
  EXPECT_LOG();
}

}  // namespace
