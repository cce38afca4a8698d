// SPDX-License-Identifier: Apache-2.0
#include "schema/pattern.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <type_traits>

#include "tests/kit/calibrations.h"
#include "tests/kit/doubles.h"
#include "tests/kit/trees.h"

namespace {

Names missingWith(const std::string& ch5, const std::string& ch9) {
  Pattern pattern({ch5, ch9});
  return missingIn(pattern);
}

// The names of the parameters in the order of the report.
Names keys(const std::string& ch5, bool wiring5, const std::string& ch9, bool wiring9) {
  Names names = {"version"};
  const auto add = [&names](const std::string& antenna, const char* channel, bool wiring) {
    for (const char* key : {"ant_delay", "tx_power", "pg_count", "pg_delay"})
      names.push_back(antenna + "." + channel + ".prf64." + key);
    if (!wiring) return;
    for (const char* key : {"selector_gpio_value", "selector_gpio", "port"})
      names.push_back(antenna + "." + key);
  };
  add(ch5, "ch5", wiring5);
  add(ch9, "ch9", wiring9);
  for (const char* key : {"temperature_reference", "xtal_trim", "wifi_coex_time_gap",
                          "ap_coop_mode", "alternate_pulse_shape", "wifi_coex_min_spacing"})
    names.emplace_back(key);
  return names;
}

using Fields = std::vector<uint32_t>;

Fields fieldsOf(const antenna_calib& a) {
  return {a.selector_gpio, a.selector_gpio_value, a.port, a.ant_delay, a.tx_power, a.pg_count,
          a.pg_delay};
}

// The fields beside the antennas'.
Fields ownFieldsOf(const ccc_calib& c) {
  return {c.version,
          c.temperature_reference,
          c.xtal_trim,
          c.wifi_coex_time_gap,
          c.ap_coop_mode,
          c.alternate_pulse_shape,
          c.wifi_coex_min_spacing};
}

void expectRecord(const ccc_calib& calib, const Fields& ch5, const Fields& ch9, const Fields& own) {
  EXPECT_EQ(fieldsOf(calib.ch5), ch5);
  EXPECT_EQ(fieldsOf(calib.ch9), ch9);
  EXPECT_EQ(ownFieldsOf(calib), own);
}

void expectZeros(const ccc_calib& calib) {
  expectRecord(calib, Fields(7), Fields(7), Fields(7));
}

TEST(Pattern, TreeOfTwoAntennas) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kCalibration);
  EXPECT_EQ(printed(pattern), R"(
version = 258 (0x102)
 ant0
  ch5
   prf64
    ant_delay = 16706 (0x4142)
    tx_power = 287454020 (0x11223344)
    pg_count = 1286 (0x506)
    pg_delay = 33 (0x21)
  selector_gpio_value = 1 (0x1)
  selector_gpio = 7 (0x7)
  port = 49 (0x31)
 ant1
  ch9
   prf64
    ant_delay = 20818 (0x5152)
    tx_power = 2864434397 (0xaabbccdd)
    pg_count = 1800 (0x708)
    pg_delay = 35 (0x23)
  selector_gpio_value = 0 (0x0)
  selector_gpio = 6 (0x6)
  port = 53 (0x35)
temperature_reference = 20 (0x14)
xtal_trim = 40 (0x28)
wifi_coex_time_gap = 3 (0x3)
ap_coop_mode = 9 (0x9)
alternate_pulse_shape = 10 (0xa)
wifi_coex_min_spacing = 11 (0xb))");
}

TEST(Pattern, ParametersOfEveryPairOfNames) {
  const struct {
    std::string ch5;
    std::string ch9;
    size_t count;
    bool wiring5;
    bool wiring9;
    bool same;
  } rows[] = {
      {"ant0", "ant1", 21, true, true, false},
      {"both", "both", 18, true, false, true},
      {"", "", 15, false, false, true},
      {"", "ant1", 18, false, true, false},
      {"ant0", "", 21, true, true, false},
      {"ant", "ant0", 21, true, true, false},
      {"ant0", "ant", 21, true, true, false},
      {"ant0", "Ant0", 21, true, true, false},
      // Names are compared as bytes.
      {std::string("a\0b", 3), std::string("a\0c", 3), 21, true, true, false},
      {std::string("a\0b", 3), std::string("a\0b", 3), 18, true, false, true},
  };
  for (const auto& row : rows) {
    const Names missing = missingWith(row.ch5, row.ch9);
    EXPECT_EQ(missing.size(), row.count) << row.ch5 << ", " << row.ch9;
    EXPECT_EQ(missing, keys(row.ch5, row.wiring5, row.ch9, row.wiring9));
    EXPECT_EQ(Pattern({row.ch5, row.ch9}).sameAntenna, row.same) << row.ch5 << ", " << row.ch9;
  }
}

TEST(Pattern, IsARootThatCannotBeCopied) {
  EXPECT_EQ(Pattern({"a", "b"}).getClass(), "AstRoot");
  EXPECT_FALSE(std::is_copy_constructible_v<Pattern>);
  EXPECT_FALSE(std::is_copy_assignable_v<Pattern>);
}

TEST(Pattern, EveryValueReachesItsFieldInToBuffer) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kCalibration);
  EXPECT_EQ(missingIn(pattern), Names());
  expectZeros(pattern.calib);
  pattern.toBuffer(kNoConversion);
  expectRecord(pattern.calib, {7, 1, 0x31, 0x4142, 0x11223344, 0x0506, 0x21},
               {6, 0, 0x35, 0x5152, 0xAABBCCDD, 0x0708, 0x23}, {0x0102, 20, 40, 3, 9, 10, 11});
  for (const auto conversion : {kSwapBytes, kNeither}) {
    pattern.toBuffer(conversion);
    expectRecord(pattern.calib, {7, 1, 0x31, 0x4241, 0x44332211, 0x0605, 0x21},
                 {6, 0, 0x35, 0x5251, 0xDDCCBBAA, 0x0807, 0x23}, {0x0201, 20, 40, 3, 9, 10, 11});
  }
}

// Every key, and the number of bits that it takes.
TEST(Pattern, ParametersTakeTheirLargestNumberAndNothingWider) {
  const auto bitsOf = [](const std::string& key) {
    if (key.find("tx_power") != key.npos) return 32;
    const bool half = key == "version" || key.find("ant_delay") != key.npos;
    return half || key.find("pg_count") != key.npos ? 16 : 8;
  };
  for (const std::string& key : keys("a", true, "b", true)) {
    const uint64_t largest = (uint64_t{1} << bitsOf(key)) - 1;
    Pattern pattern({"a", "b"});
    EXPECT_THROW(parse(pattern, key + "=" + std::to_string(largest + 1)), std::invalid_argument)
        << key;
    EXPECT_EQ(missingIn(pattern).size(), 21U) << key;
    parse(pattern, key + "=" + std::to_string(largest));
    EXPECT_EQ(missingIn(pattern).size(), 20U) << key;
    EXPECT_NE(printed(pattern).find(" = " + std::to_string(largest) + " "), std::string::npos);
  }
}

TEST(Pattern, SharedAntennaLeavesTheWiringOfChannel9Zero) {
  Pattern pattern({"both", "both"});
  parse(pattern, calibrationWith("both", "both"));
  EXPECT_EQ(missingIn(pattern), Names());
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(fieldsOf(pattern.calib.ch5), (Fields{7, 1, 0x31, 0x4142, 0x11223344, 0x0506, 0x21}));
  EXPECT_EQ(fieldsOf(pattern.calib.ch9), (Fields{0, 0, 0, 0x5152, 0xAABBCCDD, 0x0708, 0x23}));
}

TEST(Pattern, OtherKeysAreDropped) {
  Pattern pattern({"ant0", "ant1"});
  takeLog();
  parse(pattern,
        "ch5.antenna_selection=ant0\nant2.port=1\nport=1\nant0.ch5.prf16.tx_power=1\n"
        "ant0.ch5.tx_power=1\nant0.xtal_trim=1\nant01.port=1\nant0.prf64.tx_power=1\n"
        // Channel 9 under the antenna of channel 5, and the other way round.
        "ant0.ch9.prf64.tx_power=1\nant0.ch9.prf64.ant_delay=bad\nant1.ch5.prf64.pg_delay=1");
  pattern.toBuffer(kSwapBytes);
  expectZeros(pattern.calib);
  EXPECT_EQ(missingIn(pattern).size(), 21U);
  EXPECT_LOG();
}

TEST(Pattern, LongerKeyIsNoShorterOne) {
  Pattern pattern({"a", "b"});
  parse(pattern, "a.selector_gpio_value=1\nb.selector_gpio=7");
  pattern.toBuffer(kNoConversion);
  expectRecord(pattern.calib, {0, 1, 0, 0, 0, 0, 0}, {7, 0, 0, 0, 0, 0, 0}, Fields(7));
}

TEST(Pattern, NameOfAnAntennaMayHoldDots) {
  Pattern pattern({"left.upper", "left"});
  parse(pattern, "left.upper.port=1\nleft.port=2");
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.ch5.port, 1);
  EXPECT_EQ(pattern.calib.ch9.port, 2);
}

// The bytes, the magic number and the checksum of all, most significant byte first.
Bytes serialization(Bytes bytes) {
  bytes.insert(bytes.end(), {0xDE, 0xCA});
  const uint32_t crc = crc32Of(bytes);
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<uint8_t>(crc >> shift));
  return bytes;
}

TEST(Pattern, SerializesTagsIdsAndValues) {
  Pattern pattern({"ant0", "ant1"});
  const Bytes empty = {1, 10, 1, 0, 1, 2, 3, 253, 254, 0,  // the antenna of channel 5
                       1, 10, 1, 0, 1, 2, 3, 253, 254, 0,  // the antenna of channel 9
                       3, 4,  5, 6};                       // the root's own
  Bytes bytes;
  takeLog();
  EXPECT_EQ(pattern.serialize(bytes, kMostSignificantByteFirst), 30U);
  EXPECT_EQ(bytes, serialization(empty));
  EXPECT_LOG(info("AstPrefix::serialize() prf64 5\n"), info("AstPrefix::serialize() ch5 6\n"),
             info("AstPrefix::serialize() ant0 10\n"), info("AstPrefix::serialize() prf64 5\n"),
             info("AstPrefix::serialize() ch9 6\n"), info("AstPrefix::serialize() ant1 10\n"),
             debug("AstRoot::serialize()  30\n"));
  parse(pattern, kCalibration);
  const Bytes filled = {
      0x01, 0x02,                                                             // version
      1,    10,   1,                                                          // ant0.ch5.prf64
      0,    0x41, 0x42, 1,  0x11, 0x22, 0x33, 0x44, 2,  0x05, 0x06, 3, 0x21,  // its values
      253,  1,    254,  7,  0,    0x31,                                       // ant0
      1,    10,   1,                                                          // ant1.ch9.prf64
      0,    0x51, 0x52, 1,  0xAA, 0xBB, 0xCC, 0xDD, 2,  0x07, 0x08, 3, 0x23,  // its values
      253,  0,    254,  6,  0,    0x35,                                       // ant1
      3,    20,   4,    40, 5,    3,    6,    9,    10, 11};                  // the root's own
  bytes.clear();
  EXPECT_EQ(pattern.serialize(bytes, kMostSignificantByteFirst), 62U);
  EXPECT_EQ(bytes, serialization(filled));
  bytes.clear();
  EXPECT_EQ(Pattern({"both", "both"}).serialize(bytes, kMostSignificantByteFirst), 27U);
  EXPECT_EQ(bytes,
            serialization({1, 10, 1, 0, 1, 2, 3, 253, 254, 0, 1, 10, 1, 0, 1, 2, 3, 3, 4, 5, 6}));
}

TEST(PatternBuildAntParams, WiringIsLeftOutForTheOtherAntennaItself) {
  antenna_calib target{};
  const std::string channel =
      " a\n"
      "  ch9\n"
      "   prf64\n"
      "    ant_delay = <undefined>\n"
      "    tx_power = <undefined>\n"
      "    pg_count = <undefined>\n"
      "    pg_delay = <undefined>";
  const std::string wiring =
      "\n"
      "  selector_gpio_value = <undefined>\n"
      "  selector_gpio = <undefined>\n"
      "  port = <undefined>";
  EXPECT_EQ(printed(*Pattern::buildAntParams("a", "ch9", &target, "a")), channel);
  EXPECT_EQ(printed(*Pattern::buildAntParams("a", "ch9", &target, "b")), channel + wiring);
}

TEST(PatternBuildAntChanParams, FillsItsTarget) {
  antenna_calib target{};
  const auto channel = Pattern::buildAntChanParams("ch7", &target);
  parse(*channel, "ch7.prf64.tx_power=0x11223344");
  channel->toBuffer(kNoConversion);
  EXPECT_EQ(target.tx_power, 0x11223344U);
  EXPECT_EQ(missingIn(*channel),
            (Names{"ch7.prf64.ant_delay", "ch7.prf64.pg_count", "ch7.prf64.pg_delay"}));
}

}  // namespace
