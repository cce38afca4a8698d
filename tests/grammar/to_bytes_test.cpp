// SPDX-License-Identifier: Apache-2.0
#include "grammar/to_bytes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/grammar/nodes.h"
#include "tests/kit/byte_order.h"

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

TEST(ToBytes, AppendsFromTheLastToTheFirstForSwapBytes) {
  Bytes out = {0xEE};
  EXPECT_EQ(to_bytes<uint16_t>(0x1122, out, kSwapBytes), 2U);
  EXPECT_EQ(to_bytes<uint32_t>(0x33445566, out, kSwapBytes), 4U);
  EXPECT_EQ(out, joined({{0xEE},
                         inReversedHostOrder({0x11, 0x22}),
                         inReversedHostOrder({0x33, 0x44, 0x55, 0x66})}));
}

TEST(ToBytes, AppendsFromTheFirstToTheLastForAnythingElse) {
  for (const auto conversion : {kNoConversion, kNeither, static_cast<EndiannessConversion>(-1)}) {
    Bytes out = {0xEE};
    EXPECT_EQ(to_bytes<uint16_t>(0x1122, out, conversion), 2U);
    EXPECT_EQ(to_bytes<uint32_t>(0x33445566, out, conversion), 4U);
    EXPECT_EQ(out,
              joined({{0xEE}, inHostOrder({0x11, 0x22}), inHostOrder({0x33, 0x44, 0x55, 0x66})}));
  }
}

TEST(ToBytes, StringIsTheObjectNotItsCharacters) {
  const std::string text = "a text that is too long to lie in the object itself";
  Bytes object(sizeof(text));
  std::memcpy(object.data(), static_cast<const void*>(&text), sizeof(text));
  Bytes forward;
  EXPECT_EQ(to_bytes(text, forward, kNoConversion), sizeof(std::string));
  EXPECT_EQ(forward, object);
  Bytes backward;
  EXPECT_EQ(to_bytes(text, backward, kSwapBytes), sizeof(std::string));
  EXPECT_EQ(backward, Bytes(object.rbegin(), object.rend()));
}

}  // namespace
