// SPDX-License-Identifier: Apache-2.0
#include "grammar/endianness_conversion.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/grammar/nodes.h"

namespace {

TEST(EndiannessConversion, HasTwoValues) {
  EXPECT_EQ(static_cast<int>(EndiannessConversion::NoConversion), 0);
  EXPECT_EQ(static_cast<int>(EndiannessConversion::SwapBytes), 1);
}

TEST(EndiannessConversion, NoConversionKeepsAValue) {
  EXPECT_EQ(converted(uint8_t{0x11}, kNoConversion), 0x11);
  EXPECT_EQ(converted(uint16_t{0x1122}, kNoConversion), 0x1122);
  EXPECT_EQ(converted(uint32_t{0x11223344}, kNoConversion), 0x11223344U);
  EXPECT_EQ(converted(std::string("text"), kNoConversion), "text");
}

TEST(EndiannessConversion, AnyOtherSwapsNumbersOnly) {
  for (const auto conversion : {kSwapBytes, kNeither, static_cast<EndiannessConversion>(-1)}) {
    EXPECT_EQ(converted(uint8_t{0x12}, conversion), 0x12);
    EXPECT_EQ(converted(uint16_t{0x1122}, conversion), 0x2211);
    EXPECT_EQ(converted(uint32_t{0x11223344}, conversion), 0x44332211U);
    EXPECT_EQ(converted(std::string("text"), conversion), "text");
  }
}

TEST(EndiannessConversion, MostSignificantByteFirstIsTheControllersOrder) {
  const uint32_t number = converted(uint32_t{0x11223344}, kMostSignificantByteFirst);
  Bytes bytes(sizeof(number));
  std::memcpy(bytes.data(), &number, sizeof(number));
  EXPECT_EQ(bytes, (Bytes{0x11, 0x22, 0x33, 0x44}));
}

}  // namespace
