// SPDX-License-Identifier: Apache-2.0
#include "output/calib_converter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <type_traits>

#include "schema/pattern.h"
#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/params.h"
#include "tests/kit/trees.h"

namespace {

constexpr size_t kBlockSize = 82;

// The tests' calibration as the loader hands it over.
ccc_calib calibration() {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kCalibration);
  pattern.toBuffer(kMostSignificantByteFirst);
  return pattern.calib;
}

Bytes converted(const ccc_calib& calib) {
  return bytesOf(CalibConverter::convert(calib));
}

template <typename Function>
std::string errorOf(Function function) {
  try {
    function();
    return "no error";
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
}

ccc_calib withSelectors(uint8_t ch5_gpio, uint8_t ch5_value, uint8_t ch9_gpio, uint8_t ch9_value) {
  ccc_calib calib = calibration();
  calib.ch5.selector_gpio = ch5_gpio;
  calib.ch5.selector_gpio_value = ch5_value;
  calib.ch9.selector_gpio = ch9_gpio;
  calib.ch9.selector_gpio_value = ch9_value;
  return calib;
}

// tests/loader/lib_test.cpp tests which keys move which offsets, the scenarios the largest values
// and the selector codes of two antennas.
TEST(CalibConverterConvert, LaysOutTheWholeBlock) {
  EXPECT_EQ(converted(calibration()), block());
}

TEST(CalibConverterConvert, SelectorErrorNamesChannel9First) {
  const struct {
    ccc_calib calib;
    const char* error;
  } rows[] = {
      {withSelectors(5, 0, 6, 0), "GPIO must be 6 or 7"},
      {withSelectors(7, 2, 6, 0), "GPIO value must be 0 or 1"},
      {withSelectors(6, 0, 8, 0), "GPIO must be 6 or 7"},
      {withSelectors(6, 0, 6, 2), "GPIO value must be 0 or 1"},
      {withSelectors(9, 0, 6, 3), "GPIO value must be 0 or 1"},
      {withSelectors(6, 3, 9, 0), "GPIO must be 6 or 7"},
  };
  takeLog();
  for (const auto& row : rows) {
    EXPECT_EQ(errorOf([&row] { CalibConverter::convert(row.calib); }), row.error);
  }
  EXPECT_LOG();
}

TEST(CalibConverterConvert, PortsAreCountedFrom1) {
  for (const uint8_t port : Bytes{0, 1, 127, 128, 254, 255}) {
    ccc_calib calib = calibration();
    calib.ch5.port = port;
    calib.ch9.port = static_cast<uint8_t>(port ^ 0x55);
    const Bytes found = converted(calib);
    EXPECT_EQ(found[37], (port + 1) % 256) << unsigned{port};
    EXPECT_EQ(found[38], ((port ^ 0x55) + 1) % 256) << unsigned{port};
  }
}

TEST(CalibConverterSelector, FourCodesExist) {
  const struct {
    uint8_t gpio;
    uint8_t value;
    uint8_t code;
  } rows[] = {{6, 0, 0x01}, {6, 1, 0x03}, {7, 0, 0x04}, {7, 1, 0x0C}};
  for (const auto& row : rows) {
    antenna_calib antenna{};
    antenna.selector_gpio = row.gpio;
    antenna.selector_gpio_value = row.value;
    EXPECT_EQ(CalibConverter::computeAntennaSelection(row.gpio, row.value), row.code);
    EXPECT_EQ(CalibConverter::computeAntennaSelection(antenna), row.code);
  }
}

TEST(CalibConverterSelector, OtherGpiosAreRefusedBeforeOtherLevels) {
  for (unsigned int gpio = 0; gpio < 256; ++gpio) {
    for (const unsigned int value : {0U, 1U, 2U, 3U, 128U, 255U}) {
      const bool is_line = gpio == 6 || gpio == 7;
      const char* const level_error = value < 2 ? "no error" : "GPIO value must be 0 or 1";
      const std::string found = errorOf([gpio, value] {
        CalibConverter::computeAntennaSelection(static_cast<uint8_t>(gpio),
                                                static_cast<uint8_t>(value));
      });
      ASSERT_EQ(found, is_line ? level_error : "GPIO must be 6 or 7") << gpio << ", " << value;
    }
  }
}

TEST(CalibConverterCrc, OfZeroBytesIsDA35WhateverTheCrcField) {
  Bytes bytes(kBlockSize);
  EXPECT_EQ(CalibConverter::computeCrc16(kNoConversion, paramsOf(bytes)), 0xDA35);
  bytes[0] = 0xDA;
  bytes[1] = 0x35;
  const ccc_params params = paramsOf(bytes);
  EXPECT_EQ(CalibConverter::computeCrc16(kNoConversion, params), 0xDA35);
  for (const int other : {1, 2, -1}) {
    EXPECT_EQ(CalibConverter::computeCrc16(static_cast<EndiannessConversion>(other), params),
              0x35DA);
  }
  const uint16_t stored = CalibConverter::computeCrc16(kMostSignificantByteFirst, params);
  EXPECT_EQ(std::memcmp(&stored, bytes.data(), sizeof(stored)), 0);
}

TEST(CalibConverterCrc, CoversEveryByteButItsOwn) {
  for (size_t i = 0; i < kBlockSize; ++i) {
    for (const uint8_t bit : Bytes{0x01, 0x80}) {
      Bytes changed = block();
      changed[i] ^= bit;
      const uint16_t crc = CalibConverter::computeCrc16(kNoConversion, paramsOf(changed));
      EXPECT_EQ(crc == blockCrc16(block()), i < 2) << "offset " << i;
      EXPECT_EQ(crc, blockCrc16(changed)) << "offset " << i;
    }
  }
}

TEST(CalibConverter, CarriesNoData) {
  EXPECT_TRUE(std::is_empty_v<CalibConverter>);
}

}  // namespace
