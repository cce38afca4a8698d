// SPDX-License-Identifier: Apache-2.0
#include "output/calib_converter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/kit/byte_order.h"
#include "tests/kit/checksums.h"
#include "tests/kit/doubles.h"

namespace {

using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

constexpr size_t kBlockSize = 82;

// A calibration as the loader hands it over, with a different number in every byte.
ccc_calib completeCalibration() {
  ccc_calib calib{};
  calib.version = mostSignificantFirst(uint16_t{0x0102});
  calib.ch5 = {7,
               0,
               5,
               mostSignificantFirst(uint16_t{0x5152}),
               mostSignificantFirst(uint32_t{0x53545556}),
               mostSignificantFirst(uint16_t{0x5758}),
               0x59};
  calib.ch9 = {6,
               1,
               9,
               mostSignificantFirst(uint16_t{0x9192}),
               mostSignificantFirst(uint32_t{0x93949596}),
               mostSignificantFirst(uint16_t{0x9798}),
               0x99};
  calib.temperature_reference = 0xA1;
  calib.xtal_trim = 0xA2;
  calib.wifi_coex_time_gap = 0xA3;
  calib.ap_coop_mode = 0xA4;
  calib.alternate_pulse_shape = 0xA5;
  calib.wifi_coex_min_spacing = 0xA6;
  return calib;
}

Bytes bytesOf(const ccc_params& params) {
  Bytes bytes(sizeof(params));
  std::memcpy(bytes.data(), &params, sizeof(params));
  return bytes;
}

ccc_params blockOf(const Bytes& bytes) {
  ccc_params params;
  std::memcpy(&params, bytes.data(), sizeof(params));
  return params;
}

Bytes converted(const ccc_calib& calib) {
  return bytesOf(CalibConverter::convert(calib));
}

std::string errorOf(const ccc_calib& calib) {
  try {
    CalibConverter::convert(calib);
    return "no error";
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
}

ccc_calib withSelectors(uint8_t ch5_gpio, uint8_t ch5_value, uint8_t ch9_gpio, uint8_t ch9_value) {
  ccc_calib calib = completeCalibration();
  calib.ch5.selector_gpio = ch5_gpio;
  calib.ch5.selector_gpio_value = ch5_value;
  calib.ch9.selector_gpio = ch9_gpio;
  calib.ch9.selector_gpio_value = ch9_value;
  return calib;
}

// The CRC was computed by another program: Python's binascii.crc_hqx(block[2:], 1).
TEST(CalibConverterConvert, LaysOutTheWholeBlock) {
  Bytes expected = {
      0x88, 0x04,              //  0: crc
      0x01, 0x02,              //  2: version
      0x91, 0x92,              //  4: ch9_ant_delay
      0x51, 0x52,              //  6: ch5_ant_delay
      0x93, 0x94, 0x95, 0x96,  //  8: ch9_tx_power
      0x97, 0x98,              // 12: ch9_pg_count
      0x99,                    // 14: ch9_pg_delay
      0x53, 0x54, 0x55, 0x56,  // 15: ch5_tx_power
      0x57, 0x58,              // 19: ch5_pg_count
      0x59,                    // 21: ch5_pg_delay
      0x00, 0x00, 0x00, 0x00,  // 22: reserved
      0xA1,                    // 26: temperature_reference
      0xA2,                    // 27: xtal_trim
      0x00, 0x00, 0x00,        // 28: reserved
      0xA3,                    // 31: wifi_coex_time_gap
      0xA4,                    // 32: ap_coop_mode
      0x04,                    // 33: ch5_antenna_selection
      0xA5,                    // 34: alternate_pulse_shape
      0xA6,                    // 35: wifi_coex_min_spacing
      0x03,                    // 36: ch9_antenna_selection
      0x06,                    // 37: ch5_port
      0x0A,                    // 38: ch9_port
  };
  expected.resize(kBlockSize);  // 39: reserved
  EXPECT_EQ(converted(completeCalibration()), expected);
}

TEST(CalibConverterConvert, LogsNothing) {
  takeLog();
  CalibConverter::convert(completeCalibration());
  EXPECT_THROW(CalibConverter::convert(withSelectors(8, 0, 8, 0)), std::invalid_argument);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(CalibConverterConvert, KeepsTheBytesOfNumbersAsTheyStand) {
  ccc_calib calib = completeCalibration();
  const uint8_t power[] = {0x11, 0x22, 0x33, 0x44};
  const uint8_t version[] = {0x00, 0x02};
  std::memcpy(&calib.ch5.tx_power, power, sizeof(power));
  std::memcpy(&calib.version, version, sizeof(version));
  const Bytes block = converted(calib);
  EXPECT_EQ(Bytes(block.begin() + 15, block.begin() + 19), (Bytes{0x11, 0x22, 0x33, 0x44}));
  EXPECT_EQ(Bytes(block.begin() + 2, block.begin() + 4), (Bytes{0x00, 0x02}));
}

TEST(CalibConverterConvert, NoNumberIsScaledOrLimited) {
  ccc_calib calib;
  std::memset(&calib, 0xFF, sizeof(calib));
  calib.ch5.selector_gpio = calib.ch9.selector_gpio = 7;
  calib.ch5.selector_gpio_value = calib.ch9.selector_gpio_value = 1;
  Bytes expected(kBlockSize, 0x00);
  for (size_t i = 2; i < 36; ++i) expected[i] = 0xFF;
  for (const size_t reserved : std::set<size_t>{22, 23, 24, 25, 28, 29, 30})
    expected[reserved] = 0x00;
  expected[33] = expected[36] = 0x0C;
  const uint16_t crc = blockCrc16(expected);
  expected[0] = static_cast<uint8_t>(crc >> 8);
  expected[1] = static_cast<uint8_t>(crc & 0xFF);
  EXPECT_EQ(converted(calib), expected);
}

// One changed value, and the offsets at which the block may then differ beside the CRC.
struct Change {
  const char* name;
  void (*apply)(ccc_calib& calib);
  std::set<size_t> offsets;
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.name;
}

template <typename T>
void flip(T& value) {
  value = static_cast<T>(~value);
}

const Change kChanges[] = {
    {"version", [](ccc_calib& c) { flip(c.version); }, {2, 3}},
    {"ch9.ant_delay", [](ccc_calib& c) { flip(c.ch9.ant_delay); }, {4, 5}},
    {"ch5.ant_delay", [](ccc_calib& c) { flip(c.ch5.ant_delay); }, {6, 7}},
    {"ch9.tx_power", [](ccc_calib& c) { flip(c.ch9.tx_power); }, {8, 9, 10, 11}},
    {"ch9.pg_count", [](ccc_calib& c) { flip(c.ch9.pg_count); }, {12, 13}},
    {"ch9.pg_delay", [](ccc_calib& c) { flip(c.ch9.pg_delay); }, {14}},
    {"ch5.tx_power", [](ccc_calib& c) { flip(c.ch5.tx_power); }, {15, 16, 17, 18}},
    {"ch5.pg_count", [](ccc_calib& c) { flip(c.ch5.pg_count); }, {19, 20}},
    {"ch5.pg_delay", [](ccc_calib& c) { flip(c.ch5.pg_delay); }, {21}},
    {"temperature_reference", [](ccc_calib& c) { flip(c.temperature_reference); }, {26}},
    {"xtal_trim", [](ccc_calib& c) { flip(c.xtal_trim); }, {27}},
    {"wifi_coex_time_gap", [](ccc_calib& c) { flip(c.wifi_coex_time_gap); }, {31}},
    {"ap_coop_mode", [](ccc_calib& c) { flip(c.ap_coop_mode); }, {32}},
    {"ch5.selector_gpio", [](ccc_calib& c) { c.ch5.selector_gpio = 6; }, {33}},
    {"ch5.selector_gpio_value", [](ccc_calib& c) { c.ch5.selector_gpio_value = 1; }, {33}},
    {"alternate_pulse_shape", [](ccc_calib& c) { flip(c.alternate_pulse_shape); }, {34}},
    {"wifi_coex_min_spacing", [](ccc_calib& c) { flip(c.wifi_coex_min_spacing); }, {35}},
    {"ch9.selector_gpio", [](ccc_calib& c) { c.ch9.selector_gpio = 7; }, {36}},
    {"ch9.selector_gpio_value", [](ccc_calib& c) { c.ch9.selector_gpio_value = 0; }, {36}},
    {"ch5.port", [](ccc_calib& c) { flip(c.ch5.port); }, {37}},
    {"ch9.port", [](ccc_calib& c) { flip(c.ch9.port); }, {38}},
};

class OneChangedValue : public testing::TestWithParam<Change> {};

TEST_P(OneChangedValue, MovesItsOffsetsOnly) {
  ccc_calib calib = completeCalibration();
  GetParam().apply(calib);
  const Bytes before = converted(completeCalibration());
  const Bytes after = converted(calib);
  std::set<size_t> moved;
  for (size_t i = 2; i < kBlockSize; ++i) {
    if (after[i] != before[i]) moved.insert(i);
  }
  EXPECT_EQ(moved, GetParam().offsets);
}

TEST_P(OneChangedValue, IsSealedAgain) {
  ccc_calib calib = completeCalibration();
  GetParam().apply(calib);
  const Bytes before = converted(completeCalibration());
  const Bytes after = converted(calib);
  EXPECT_EQ(after[0] << 8 | after[1], blockCrc16(after));
  EXPECT_NE(blockCrc16(after), blockCrc16(before));
}

INSTANTIATE_TEST_SUITE_P(Block, OneChangedValue, testing::ValuesIn(kChanges));

TEST(CalibConverterConvert, BothAntennasOnGpio6High) {
  const Bytes block = converted(withSelectors(6, 1, 6, 1));
  EXPECT_EQ(block[33], 0x03);
  EXPECT_EQ(block[36], 0x03);
}

TEST(CalibConverterConvert, EachChannelHasItsOwnSelectorCode) {
  const Bytes block = converted(withSelectors(7, 0, 6, 0));
  EXPECT_EQ(block[33], 0x04);
  EXPECT_EQ(block[36], 0x01);
}

TEST(CalibConverterConvert, SelectorErrorOfChannel5) {
  EXPECT_EQ(errorOf(withSelectors(5, 0, 6, 0)), "GPIO must be 6 or 7");
  EXPECT_EQ(errorOf(withSelectors(7, 2, 6, 0)), "GPIO value must be 0 or 1");
}

TEST(CalibConverterConvert, SelectorErrorOfChannel9) {
  EXPECT_EQ(errorOf(withSelectors(6, 0, 8, 0)), "GPIO must be 6 or 7");
  EXPECT_EQ(errorOf(withSelectors(6, 0, 6, 2)), "GPIO value must be 0 or 1");
}

TEST(CalibConverterConvert, SelectorErrorNamesChannel9First) {
  EXPECT_EQ(errorOf(withSelectors(9, 0, 6, 3)), "GPIO value must be 0 or 1");
  EXPECT_EQ(errorOf(withSelectors(6, 3, 9, 0)), "GPIO must be 6 or 7");
}

TEST(CalibConverterConvert, PortsAreCountedFrom1) {
  const struct {
    uint8_t port;
    uint8_t in_block;
  } rows[] = {{0, 1}, {1, 2}, {127, 128}, {128, 129}, {253, 254}, {254, 255}, {255, 0}};
  for (const auto& row : rows) {
    ccc_calib calib = completeCalibration();
    calib.ch5.port = row.port;
    EXPECT_EQ(converted(calib)[37], row.in_block) << "ch5 port " << unsigned{row.port};
    calib = completeCalibration();
    calib.ch9.port = row.port;
    EXPECT_EQ(converted(calib)[38], row.in_block) << "ch9 port " << unsigned{row.port};
  }
}

TEST(CalibConverterConvert, SharedAntennaHasOneCodeAndOnePort) {
  ccc_calib calib = withSelectors(7, 1, 7, 1);
  calib.ch5.port = calib.ch9.port = 3;
  const Bytes block = converted(calib);
  EXPECT_EQ(block[33], 0x0C);
  EXPECT_EQ(block[36], 0x0C);
  EXPECT_EQ(block[37], 4);
  EXPECT_EQ(block[38], 4);
}

TEST(CalibConverterSelector, FourCodesExist) {
  EXPECT_EQ(CalibConverter::computeAntennaSelection(6, 0), 0x01);
  EXPECT_EQ(CalibConverter::computeAntennaSelection(6, 1), 0x03);
  EXPECT_EQ(CalibConverter::computeAntennaSelection(7, 0), 0x04);
  EXPECT_EQ(CalibConverter::computeAntennaSelection(7, 1), 0x0C);
}

std::string selectorError(uint8_t gpio, uint8_t value) {
  try {
    CalibConverter::computeAntennaSelection(gpio, value);
    return "no error";
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
}

TEST(CalibConverterSelector, NoOtherGpioWhateverTheLevel) {
  for (const uint8_t gpio : Bytes{0, 1, 2, 3, 4, 5, 8, 9, 14, 15, 70, 71, 134, 135, 254, 255}) {
    for (const uint8_t value : Bytes{0, 1, 2, 3, 128, 255}) {
      EXPECT_EQ(selectorError(gpio, value), "GPIO must be 6 or 7")
          << unsigned{gpio} << ", " << unsigned{value};
    }
  }
}

TEST(CalibConverterSelector, NoOtherLevel) {
  for (const uint8_t gpio : Bytes{6, 7}) {
    for (const uint8_t value : Bytes{2, 3, 4, 127, 128, 129, 254, 255}) {
      EXPECT_EQ(selectorError(gpio, value), "GPIO value must be 0 or 1")
          << unsigned{gpio} << ", " << unsigned{value};
    }
  }
}

TEST(CalibConverterSelector, OfAnAntennaIsThatOfItsLineAndLevel) {
  for (const uint8_t gpio : Bytes{6, 7}) {
    for (const uint8_t value : Bytes{0, 1}) {
      antenna_calib antenna{};
      antenna.selector_gpio = gpio;
      antenna.selector_gpio_value = value;
      EXPECT_EQ(CalibConverter::computeAntennaSelection(antenna),
                CalibConverter::computeAntennaSelection(gpio, value));
    }
  }
  antenna_calib antenna{};
  antenna.selector_gpio = 8;
  EXPECT_THROW(CalibConverter::computeAntennaSelection(antenna), std::invalid_argument);
}

TEST(CalibConverterCrc, ZeroBytesGiveDA35WhateverTheCrcField) {
  Bytes bytes(kBlockSize);
  EXPECT_EQ(CalibConverter::computeCrc16(EndiannessConversion::NoConversion, blockOf(bytes)),
            0xDA35);
  bytes[0] = 0xDA;
  bytes[1] = 0x35;
  EXPECT_EQ(CalibConverter::computeCrc16(EndiannessConversion::NoConversion, blockOf(bytes)),
            0xDA35);
}

TEST(CalibConverterCrc, AnyOtherConversionSwapsItsBytes) {
  Bytes bytes(kBlockSize);
  bytes[0] = 0xDA;
  bytes[1] = 0x35;
  const ccc_params params = blockOf(bytes);
  EXPECT_EQ(CalibConverter::computeCrc16(EndiannessConversion::SwapBytes, params), 0x35DA);
  EXPECT_EQ(CalibConverter::computeCrc16(static_cast<EndiannessConversion>(2), params), 0x35DA);
  EXPECT_EQ(CalibConverter::computeCrc16(static_cast<EndiannessConversion>(-1), params), 0x35DA);
}

TEST(CalibConverterCrc, ZeroBlockStoresDABefore35) {
  const uint16_t stored = CalibConverter::computeCrc16(kMostSignificantByteFirst, ccc_params{});
  uint8_t bytes[2];
  std::memcpy(bytes, &stored, sizeof(bytes));
  EXPECT_EQ(bytes[0], 0xDA);
  EXPECT_EQ(bytes[1], 0x35);
}

TEST(CalibConverterCrc, CoversEveryByteButItsOwn) {
  const Bytes bytes = converted(completeCalibration());
  const uint16_t whole =
      CalibConverter::computeCrc16(EndiannessConversion::NoConversion, blockOf(bytes));
  for (size_t i = 0; i < kBlockSize; ++i) {
    for (const uint8_t bit : Bytes{0x01, 0x80}) {
      Bytes changed = bytes;
      changed[i] ^= bit;
      const uint16_t crc =
          CalibConverter::computeCrc16(EndiannessConversion::NoConversion, blockOf(changed));
      EXPECT_EQ(crc == whole, i < 2) << "offset " << i;
      EXPECT_EQ(crc, blockCrc16(changed)) << "offset " << i;
    }
  }
}

TEST(CalibConverterCrc, IsWhatConvertStores) {
  const Bytes block = converted(completeCalibration());
  EXPECT_EQ(CalibConverter::computeCrc16(EndiannessConversion::NoConversion, blockOf(block)),
            block[0] << 8 | block[1]);
}

TEST(CalibConverter, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<CalibConverter>);
}

}  // namespace
