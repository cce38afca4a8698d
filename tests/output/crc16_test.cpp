// SPDX-License-Identifier: Apache-2.0
#include "output/crc16.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

constexpr uint8_t kDigits[] = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};

uint16_t crc(const std::vector<uint8_t>& bytes, uint16_t start) {
  return Crc16().crc(bytes.data(), static_cast<uint32_t>(bytes.size()), start);
}

TEST(Crc16, NineDigitsFromTheBlocksStart) {
  EXPECT_EQ(Crc16().crc(kDigits, sizeof(kDigits), 0x0001), 0x7610);
}

TEST(Crc16, NineDigitsFromOtherStarts) {
  EXPECT_EQ(Crc16().crc(kDigits, sizeof(kDigits), 0x0000), 0x31C3);
  EXPECT_EQ(Crc16().crc(kDigits, sizeof(kDigits), 0xFFFF), 0x29B1);
}

TEST(Crc16, EightyZeroBytesFromTheBlocksStart) {
  EXPECT_EQ(crc(std::vector<uint8_t>(80), 0x0001), 0xDA35);
}

TEST(Crc16, NoBytesLeaveTheStart) {
  EXPECT_EQ(Crc16().crc(kDigits, 0, 0x0001), 0x0001);
  EXPECT_EQ(Crc16().crc(kDigits, 0, 0xFFFF), 0xFFFF);
  EXPECT_EQ(Crc16().crc(nullptr, 0, 0xBEEF), 0xBEEF);
}

TEST(Crc16, ZeroBytesFromZeroStayZero) {
  EXPECT_EQ(crc(std::vector<uint8_t>(80), 0x0000), 0x0000);
}

TEST(Crc16, TakesTheMostSignificantBitFirst) {
  EXPECT_EQ(crc({0x01}, 0x0000), 0x1021);
  EXPECT_EQ(crc({0x80}, 0x0000), 0x9188);
}

TEST(Crc16, ComparesTheTopBitOfTheRegister) {
  EXPECT_EQ(crc({0x00}, 0x8000), 0x9188);
  EXPECT_EQ(crc({0x80}, 0x8000), 0x0000);
}

TEST(Crc16, TakesNoMoreThanItsLength) {
  EXPECT_EQ(Crc16().crc(kDigits, 1, 0x0000), crc({'1'}, 0x0000));
  EXPECT_EQ(Crc16().crc(kDigits, 8, 0x0001), crc({'1', '2', '3', '4', '5', '6', '7', '8'}, 1));
}

TEST(Crc16, GoesOnFromAnEarlierResult) {
  const uint16_t first = Crc16().crc(kDigits, 4, 0x0001);
  EXPECT_EQ(Crc16().crc(kDigits + 4, 5, first), 0x7610);
}

TEST(Crc16, OrderOfBytesMatters) {
  EXPECT_EQ(crc({0xFF, 0x00, 0xAA}, 0x1D0F), 0xCACF);
  EXPECT_NE(crc({0xAA, 0x00, 0xFF}, 0x1D0F), 0xCACF);
}

TEST(Crc16, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<Crc16>);
}

}  // namespace
