// SPDX-License-Identifier: Apache-2.0
#include "output/calib_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <vector>

#include "tests/kit/doubles.h"

namespace {

using testing::IsEmpty;

constexpr size_t kBlockSize = 82;
constexpr size_t kGuard = 32;
constexpr uint8_t kUntouched = 0xA5;

// Bytes 1, 2, 3, ... 82, so that each one tells its place.
std::vector<uint8_t> countingBytes() {
  std::vector<uint8_t> bytes(kBlockSize);
  std::iota(bytes.begin(), bytes.end(), uint8_t{1});
  return bytes;
}

ccc_params blockOf(const std::vector<uint8_t>& bytes) {
  ccc_params params;
  std::memcpy(&params, bytes.data(), sizeof(params));
  return params;
}

// What memory looks like when `count` bytes of the block were written behind the first guard.
std::vector<uint8_t> memoryWith(size_t count, size_t size) {
  std::vector<uint8_t> memory(size, kUntouched);
  const std::vector<uint8_t> block = countingBytes();
  std::copy_n(block.begin(), count, memory.begin() + kGuard);
  return memory;
}

struct Row {
  uint32_t size;
  uint32_t written;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << "size " << row.size;
}

class WriteCalibToBuffer : public testing::TestWithParam<Row> {};

TEST_P(WriteCalibToBuffer, WritesAsMuchOfTheBlockAsFits) {
  std::vector<uint8_t> memory(kGuard + kBlockSize + kGuard, kUntouched);
  EXPECT_EQ(
      write_calib_to_buffer(blockOf(countingBytes()), memory.data() + kGuard, GetParam().size),
      GetParam().written);
  EXPECT_EQ(memory, memoryWith(GetParam().written, memory.size()));
  EXPECT_THAT(takeLog(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sizes, WriteCalibToBuffer,
                         testing::Values(Row{0, 0}, Row{1, 1}, Row{2, 2}, Row{10, 10}, Row{81, 81},
                                         Row{82, 82}, Row{83, 82}, Row{100, 82}, Row{255, 82},
                                         Row{256, 82}, Row{65536, 82}, Row{0x80000000, 82},
                                         Row{0xFFFFFFFF, 82}));

TEST(WriteCalibToBufferAnywhere, WritesToAnOddAddress) {
  std::vector<uint8_t> memory(kBlockSize + 4, kUntouched);
  for (size_t offset = 0; offset < 4; ++offset) {
    std::fill(memory.begin(), memory.end(), kUntouched);
    write_calib_to_buffer(blockOf(countingBytes()), memory.data() + offset, 100);
    const std::vector<uint8_t> written(memory.begin() + static_cast<ptrdiff_t>(offset),
                                       memory.begin() + static_cast<ptrdiff_t>(offset + 82));
    EXPECT_EQ(written, countingBytes()) << "at offset " << offset;
  }
}

TEST(WriteCalibToBufferAnywhere, DoesNotLookAtTheContents) {
  std::vector<uint8_t> memory(kBlockSize, kUntouched);
  const std::vector<uint8_t> all_ones(kBlockSize, 0xFF);
  EXPECT_EQ(write_calib_to_buffer(blockOf(all_ones), memory.data(), 82), 82U);
  EXPECT_EQ(memory, all_ones);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(WriteCalibToBufferAnywhere, LeavesTheBlockAsItWas) {
  const ccc_params params = blockOf(countingBytes());
  std::vector<uint8_t> memory(kBlockSize);
  write_calib_to_buffer(params, memory.data(), 82);
  EXPECT_EQ(std::memcmp(&params, countingBytes().data(), kBlockSize), 0);
}

}  // namespace
