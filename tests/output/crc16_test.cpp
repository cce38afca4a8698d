// SPDX-License-Identifier: Apache-2.0
#include "output/crc16.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "tests/kit/types.h"

namespace {

const Bytes kDigits = {'1', '2', '3', '4', '5', '6', '7', '8', '9'};

uint16_t crc(const Bytes& bytes, uint16_t start) {
  return Crc16().crc(bytes.data(), static_cast<uint32_t>(bytes.size()), start);
}

TEST(Crc16, KnownValues) {
  const struct {
    const char* what;
    Bytes bytes;
    uint16_t start;
    uint16_t crc;
  } rows[] = {
      {"nine digits from the block's start", kDigits, 0x0001, 0x7610},
      {"nine digits from 0", kDigits, 0x0000, 0x31C3},
      {"nine digits from all ones", kDigits, 0xFFFF, 0x29B1},
      {"80 zero bytes from the block's start", Bytes(80), 0x0001, 0xDA35},
      {"80 zero bytes from 0", Bytes(80), 0x0000, 0x0000},
      {"no byte", {}, 0xBEEF, 0xBEEF},
      {"the most significant bit comes first", {0x01}, 0x0000, 0x1021},
      {"the most significant bit alone", {0x80}, 0x0000, 0x9188},
      {"the register's top bit", {0x00}, 0x8000, 0x9188},
      {"both top bits", {0x80}, 0x8000, 0x0000},
      {"bytes in their order", {0xFF, 0x00, 0xAA}, 0x1D0F, 0xCACF},
  };
  for (const auto& row : rows) EXPECT_EQ(crc(row.bytes, row.start), row.crc) << row.what;
}

TEST(Crc16, TakesNoMoreThanItsLengthAndGoesOnFromThere) {
  const uint16_t first = Crc16().crc(kDigits.data(), 4, 0x0001);
  EXPECT_EQ(first, crc({'1', '2', '3', '4'}, 0x0001));
  EXPECT_EQ(Crc16().crc(kDigits.data() + 4, 5, first), 0x7610);
  EXPECT_EQ(Crc16().crc(nullptr, 0, 0x0001), 0x0001);
}

TEST(Crc16, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<Crc16>);
}

}  // namespace
