// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>

#include "output/calib_converter.h"
#include "schema/pattern.h"
#include "tools/block/fields.h"

// The command's table of fields, parameters and selector codes, compared with the library.

namespace {

template <typename T>
Bytes bytesOf(const T& record) {
  Bytes bytes(sizeof(record));
  std::memcpy(bytes.data(), &record, sizeof(record));
  return bytes;
}

// The first offset at which they differ, and the number of bytes up to the last one.
std::pair<size_t, size_t> difference(const Bytes& a, const Bytes& b, size_t from = 0) {
  size_t first = from;
  while (first < a.size() && a[first] == b[first]) ++first;
  size_t end = a.size();
  while (end > first && a[end - 1] == b[end - 1]) --end;
  return {first, end - first};
}

std::vector<std::string> keysFor(const antenna_selection& selection) {
  std::vector<std::string> keys;
  Pattern(selection).validate(keys, {});
  return keys;
}

// The record for a text of one line.
ccc_calib recordFor(const std::string& line, const antenna_selection& selection) {
  Pattern pattern(selection);
  // An initialiser may leave the bytes between the fields as they were.
  std::memset(&pattern.calib, 0, sizeof(pattern.calib));
  std::istringstream text(line);
  pattern.parse(text);
  pattern.toBuffer(kMostSignificantByteFirst);
  return pattern.calib;
}

// Which bytes of the block move with the lowest bit of this byte of the record.
std::pair<size_t, size_t> blockBytesFedFrom(size_t record_offset) {
  ccc_calib calib{};
  calib.ch5.selector_gpio = calib.ch9.selector_gpio = 6;
  ccc_calib changed = calib;
  reinterpret_cast<uint8_t*>(&changed)[record_offset] ^= 1;
  const size_t after_crc = offsetof(ccc_params, version);
  return difference(bytesOf(CalibConverter::convert(calib)),
                    bytesOf(CalibConverter::convert(changed)), after_crc);
}

class ParameterTable : public testing::TestWithParam<antenna_selection> {};

TEST_P(ParameterTable, ParametersAreThoseOfTheTreeInItsOrder) {
  const std::vector<std::string> keys = keysFor(GetParam());
  const std::vector<const Parameter*> parameters = parametersFor(GetParam());
  ASSERT_EQ(keys.size(), parameters.size());
  const Bytes empty(sizeof(ccc_calib));
  for (size_t i = 0; i < keys.size(); ++i) {
    SCOPED_TRACE(keys[i]);
    const Parameter& parameter = *parameters[i];
    const std::string largest = keys[i] + "=" + std::to_string(parameter.largest());
    EXPECT_EQ(difference(bytesOf(recordFor(largest, GetParam())), empty),
              std::make_pair(parameter.record_offset, parameter.size));
    const std::string larger = keys[i] + "=" + std::to_string(uint64_t{parameter.largest()} + 1);
    EXPECT_THROW(recordFor(larger, GetParam()), std::invalid_argument);
    for (size_t byte = 0; byte < parameter.size; ++byte) {
      const size_t moved = blockBytesFedFrom(parameter.record_offset + byte).first;
      EXPECT_EQ(&fieldAt(moved), &parameter.field()) << byte;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, ParameterTable,
                         testing::Values(antenna_selection{"a", "b"}, antenna_selection{"a", "a"}));

TEST(Facts, RolesAreWhatTheConverterMakesOfTheNumbers) {
  for (const Parameter& parameter : kParameters) {
    ccc_calib calib{};
    calib.ch5.selector_gpio = calib.ch9.selector_gpio = 6;
    auto* const bytes = reinterpret_cast<uint8_t*>(&calib);
    bytes[parameter.record_offset] = 7;
    const bool refused = [&] {
      try {
        CalibConverter::convert(calib);
        return false;
      } catch (const std::invalid_argument&) {
        return true;
      }
    }();
    EXPECT_EQ(refused, parameter.role == Role::SelectorLevel) << parameter.field().name;
    if (refused) continue;
    const uint8_t found = bytesOf(CalibConverter::convert(calib))[parameter.block_offset];
    const std::map<Role, uint8_t> expected = {
        {Role::Number, 7}, {Role::Port, 8}, {Role::SelectorLine, 0x04}};
    EXPECT_EQ(found, expected.at(parameter.role)) << parameter.field().name;
  }
}

TEST(Facts, SelectorsAreAllThatTheConverterTakes) {
  std::vector<std::vector<unsigned>> taken;
  for (unsigned line = 0; line <= 0xFF; ++line) {
    for (unsigned level = 0; level <= 0xFF; ++level) {
      try {
        taken.push_back({line, level,
                         CalibConverter::computeAntennaSelection(static_cast<uint8_t>(line),
                                                                 static_cast<uint8_t>(level))});
      } catch (const std::invalid_argument&) {
        continue;
      }
    }
  }
  std::vector<std::vector<unsigned>> known;
  for (const Selector& s : kSelectors) known.push_back({s.line, s.level, s.code});
  EXPECT_EQ(known, taken);
}

TEST(Facts, OnlyNumbersOfSelectorsAreLinesAndLevels) {
  for (unsigned number = 0; number <= 0x10000; ++number) {
    EXPECT_EQ(hasSelector(Role::SelectorLine, number), number == 6 || number == 7) << number;
    EXPECT_EQ(hasSelector(Role::SelectorLevel, number), number <= 1) << number;
    EXPECT_TRUE(hasSelector(Role::Number, number) && hasSelector(Role::Port, number)) << number;
  }
}

TEST(Facts, OnlyTheseCodesHaveASelector) {
  for (unsigned code = 0; code <= 0xFF; ++code) {
    const Selector* const selector = selectorOf(static_cast<uint8_t>(code));
    const bool known = code == 0x01 || code == 0x03 || code == 0x04 || code == 0x0C;
    ASSERT_EQ(selector != nullptr, known) << code;
    if (known) {
      EXPECT_EQ(selector->code, code);
    }
  }
}

}  // namespace
