// SPDX-License-Identifier: Apache-2.0
#include "schema/pattern.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "tests/kit/checksums.h"
#include "tests/kit/doubles.h"
#include "tests/schema/tree_questions.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

constexpr auto kNoConversion = EndiannessConversion::NoConversion;
constexpr auto kSwapBytes = EndiannessConversion::SwapBytes;

constexpr char kTwoAntennas[] = R"(version=0x0102
ant0.selector_gpio=6
ant0.selector_gpio_value=1
ant0.port=3
ant0.ch5.prf64.ant_delay=0x1112
ant0.ch5.prf64.tx_power=0x21222324
ant0.ch5.prf64.pg_count=0x3132
ant0.ch5.prf64.pg_delay=0x41
ant1.selector_gpio=7
ant1.selector_gpio_value=2
ant1.port=4
ant1.ch9.prf64.ant_delay=0x5152
ant1.ch9.prf64.tx_power=0x61626364
ant1.ch9.prf64.pg_count=0x7172
ant1.ch9.prf64.pg_delay=0x81
temperature_reference=11
xtal_trim=12
wifi_coex_time_gap=13
ap_coop_mode=14
alternate_pulse_shape=15
wifi_coex_min_spacing=16
)";

constexpr char kSharedAntenna[] = R"(version=0x0102
both.selector_gpio=6
both.selector_gpio_value=1
both.port=3
both.ch5.prf64.ant_delay=0x1112
both.ch5.prf64.tx_power=0x21222324
both.ch5.prf64.pg_count=0x3132
both.ch5.prf64.pg_delay=0x41
both.ch9.prf64.ant_delay=0x5152
both.ch9.prf64.tx_power=0x61626364
both.ch9.prf64.pg_count=0x7172
both.ch9.prf64.pg_delay=0x81
temperature_reference=11
xtal_trim=12
wifi_coex_time_gap=13
ap_coop_mode=14
alternate_pulse_shape=15
wifi_coex_min_spacing=16
)";

Names missingWith(const std::string& ch5, const std::string& ch9) {
  Pattern pattern({ch5, ch9});
  return missingIn(pattern);
}

std::vector<uint32_t> fieldsOf(const antenna_calib& antenna) {
  return {antenna.selector_gpio, antenna.selector_gpio_value,
          antenna.port,          antenna.ant_delay,
          antenna.tx_power,      antenna.pg_count,
          antenna.pg_delay};
}

// The record may have padding, whose bytes have no value.
bool isZero(const ccc_calib& calib) {
  std::vector<uint32_t> fields = {calib.version,
                                  calib.temperature_reference,
                                  calib.xtal_trim,
                                  calib.ap_coop_mode,
                                  calib.wifi_coex_time_gap,
                                  calib.alternate_pulse_shape,
                                  calib.wifi_coex_min_spacing};
  for (const antenna_calib& antenna : {calib.ch5, calib.ch9}) {
    const std::vector<uint32_t> own = fieldsOf(antenna);
    fields.insert(fields.end(), own.begin(), own.end());
  }
  return fields == std::vector<uint32_t>(21);
}

TEST(Pattern, TreeOfTwoAntennas) {
  EXPECT_EQ(printed(Pattern({"ant0", "ant1"})), R"(
version = <undefined>
 ant0
  ch5
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>
  selector_gpio_value = <undefined>
  selector_gpio = <undefined>
  port = <undefined>
 ant1
  ch9
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>
  selector_gpio_value = <undefined>
  selector_gpio = <undefined>
  port = <undefined>
temperature_reference = <undefined>
xtal_trim = <undefined>
wifi_coex_time_gap = <undefined>
ap_coop_mode = <undefined>
alternate_pulse_shape = <undefined>
wifi_coex_min_spacing = <undefined>)");
}

TEST(Pattern, TreeOfTwoAntennasFilled) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kTwoAntennas);
  EXPECT_EQ(printed(pattern), R"(
version = 258 (0x102)
 ant0
  ch5
   prf64
    ant_delay = 4370 (0x1112)
    tx_power = 555885348 (0x21222324)
    pg_count = 12594 (0x3132)
    pg_delay = 65 (0x41)
  selector_gpio_value = 1 (0x1)
  selector_gpio = 6 (0x6)
  port = 3 (0x3)
 ant1
  ch9
   prf64
    ant_delay = 20818 (0x5152)
    tx_power = 1633837924 (0x61626364)
    pg_count = 29042 (0x7172)
    pg_delay = 129 (0x81)
  selector_gpio_value = 2 (0x2)
  selector_gpio = 7 (0x7)
  port = 4 (0x4)
temperature_reference = 11 (0xb)
xtal_trim = 12 (0xc)
wifi_coex_time_gap = 13 (0xd)
ap_coop_mode = 14 (0xe)
alternate_pulse_shape = 15 (0xf)
wifi_coex_min_spacing = 16 (0x10))");
}

TEST(Pattern, TreeOfASharedAntenna) {
  EXPECT_EQ(printed(Pattern({"both", "both"})), R"(
version = <undefined>
 both
  ch5
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>
  selector_gpio_value = <undefined>
  selector_gpio = <undefined>
  port = <undefined>
 both
  ch9
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>
temperature_reference = <undefined>
xtal_trim = <undefined>
wifi_coex_time_gap = <undefined>
ap_coop_mode = <undefined>
alternate_pulse_shape = <undefined>
wifi_coex_min_spacing = <undefined>)");
}

TEST(Pattern, TwoAntennasHave21Parameters) {
  const Names missing = missingWith("ant0", "ant1");
  EXPECT_EQ(missing.size(), 21U);
  EXPECT_THAT(
      missing,
      ElementsAre("version", "ant0.ch5.prf64.ant_delay", "ant0.ch5.prf64.tx_power",
                  "ant0.ch5.prf64.pg_count", "ant0.ch5.prf64.pg_delay", "ant0.selector_gpio_value",
                  "ant0.selector_gpio", "ant0.port", "ant1.ch9.prf64.ant_delay",
                  "ant1.ch9.prf64.tx_power", "ant1.ch9.prf64.pg_count", "ant1.ch9.prf64.pg_delay",
                  "ant1.selector_gpio_value", "ant1.selector_gpio", "ant1.port",
                  "temperature_reference", "xtal_trim", "wifi_coex_time_gap", "ap_coop_mode",
                  "alternate_pulse_shape", "wifi_coex_min_spacing"));
}

TEST(Pattern, SharedAntennaHas18Parameters) {
  const Names missing = missingWith("both", "both");
  EXPECT_EQ(missing.size(), 18U);
  EXPECT_THAT(
      missing,
      ElementsAre("version", "both.ch5.prf64.ant_delay", "both.ch5.prf64.tx_power",
                  "both.ch5.prf64.pg_count", "both.ch5.prf64.pg_delay", "both.selector_gpio_value",
                  "both.selector_gpio", "both.port", "both.ch9.prf64.ant_delay",
                  "both.ch9.prf64.tx_power", "both.ch9.prf64.pg_count", "both.ch9.prf64.pg_delay",
                  "temperature_reference", "xtal_trim", "wifi_coex_time_gap", "ap_coop_mode",
                  "alternate_pulse_shape", "wifi_coex_min_spacing"));
}

TEST(Pattern, TwoEmptyNamesHave15Parameters) {
  const Names missing = missingWith("", "");
  EXPECT_EQ(missing.size(), 15U);
  EXPECT_THAT(missing,
              ElementsAre("version", ".ch5.prf64.ant_delay", ".ch5.prf64.tx_power",
                          ".ch5.prf64.pg_count", ".ch5.prf64.pg_delay", ".ch9.prf64.ant_delay",
                          ".ch9.prf64.tx_power", ".ch9.prf64.pg_count", ".ch9.prf64.pg_delay",
                          "temperature_reference", "xtal_trim", "wifi_coex_time_gap",
                          "ap_coop_mode", "alternate_pulse_shape", "wifi_coex_min_spacing"));
}

TEST(Pattern, EmptyNameOfChannel5HasItsChannelOnly) {
  EXPECT_THAT(
      missingWith("", "ant1"),
      ElementsAre("version", ".ch5.prf64.ant_delay", ".ch5.prf64.tx_power", ".ch5.prf64.pg_count",
                  ".ch5.prf64.pg_delay", "ant1.ch9.prf64.ant_delay", "ant1.ch9.prf64.tx_power",
                  "ant1.ch9.prf64.pg_count", "ant1.ch9.prf64.pg_delay", "ant1.selector_gpio_value",
                  "ant1.selector_gpio", "ant1.port", "temperature_reference", "xtal_trim",
                  "wifi_coex_time_gap", "ap_coop_mode", "alternate_pulse_shape",
                  "wifi_coex_min_spacing"));
}

TEST(Pattern, EmptyNameOfChannel9HasItsWiring) {
  const Names missing = missingWith("ant0", "");
  EXPECT_EQ(missing.size(), 21U);
  EXPECT_EQ(missing[12], ".selector_gpio_value");
  EXPECT_EQ(missing[13], ".selector_gpio");
  EXPECT_EQ(missing[14], ".port");
}

TEST(Pattern, KnowsWhetherOneAntennaServesBothChannels) {
  EXPECT_TRUE(Pattern({"both", "both"}).sameAntenna);
  EXPECT_TRUE(Pattern({"", ""}).sameAntenna);
  EXPECT_FALSE(Pattern({"ant0", "ant1"}).sameAntenna);
  EXPECT_FALSE(Pattern({"ant", "ant0"}).sameAntenna);
  EXPECT_FALSE(Pattern({"ant0", "ant"}).sameAntenna);
  EXPECT_FALSE(Pattern({"ant0", "Ant0"}).sameAntenna);
  EXPECT_FALSE(Pattern({"", "ant0"}).sameAntenna);
}

TEST(Pattern, NamesAreComparedAsBytes) {
  const std::string a("a\0b", 3);
  const std::string b("a\0c", 3);
  EXPECT_FALSE(Pattern({a, b}).sameAntenna);
  EXPECT_EQ(missingWith(a, b).size(), 21U);
  EXPECT_TRUE(Pattern({a, a}).sameAntenna);
  EXPECT_EQ(missingWith(a, a).size(), 18U);
}

TEST(Pattern, IsARootThatCannotBeCopied) {
  EXPECT_EQ(Pattern({"a", "b"}).getClass(), "AstRoot");
  EXPECT_FALSE(std::is_copy_constructible_v<Pattern>);
  EXPECT_FALSE(std::is_copy_assignable_v<Pattern>);
}

TEST(Pattern, CalibrationIsZeroUntilToBuffer) {
  Pattern pattern({"ant0", "ant1"});
  EXPECT_TRUE(isZero(pattern.calib));
  parse(pattern, kTwoAntennas);
  EXPECT_THAT(missingIn(pattern), IsEmpty());
  EXPECT_TRUE(isZero(pattern.calib));
}

TEST(Pattern, EveryValueReachesItsField) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kTwoAntennas);
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.version, 0x0102);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio, 6);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio_value, 1);
  EXPECT_EQ(pattern.calib.ch5.port, 3);
  EXPECT_EQ(pattern.calib.ch5.ant_delay, 0x1112);
  EXPECT_EQ(pattern.calib.ch5.tx_power, 0x21222324U);
  EXPECT_EQ(pattern.calib.ch5.pg_count, 0x3132);
  EXPECT_EQ(pattern.calib.ch5.pg_delay, 0x41);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio, 7);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio_value, 2);
  EXPECT_EQ(pattern.calib.ch9.port, 4);
  EXPECT_EQ(pattern.calib.ch9.ant_delay, 0x5152);
  EXPECT_EQ(pattern.calib.ch9.tx_power, 0x61626364U);
  EXPECT_EQ(pattern.calib.ch9.pg_count, 0x7172);
  EXPECT_EQ(pattern.calib.ch9.pg_delay, 0x81);
  EXPECT_EQ(pattern.calib.temperature_reference, 11);
  EXPECT_EQ(pattern.calib.xtal_trim, 12);
  EXPECT_EQ(pattern.calib.wifi_coex_time_gap, 13);
  EXPECT_EQ(pattern.calib.ap_coop_mode, 14);
  EXPECT_EQ(pattern.calib.alternate_pulse_shape, 15);
  EXPECT_EQ(pattern.calib.wifi_coex_min_spacing, 16);
}

TEST(Pattern, SwapBytesSwapsTheWideFields) {
  for (const auto conversion : {kSwapBytes, static_cast<EndiannessConversion>(2)}) {
    Pattern pattern({"ant0", "ant1"});
    parse(pattern, kTwoAntennas);
    pattern.toBuffer(conversion);
    EXPECT_EQ(pattern.calib.version, 0x0201);
    EXPECT_EQ(pattern.calib.ch5.ant_delay, 0x1211);
    EXPECT_EQ(pattern.calib.ch5.tx_power, 0x24232221U);
    EXPECT_EQ(pattern.calib.ch5.pg_count, 0x3231);
    EXPECT_EQ(pattern.calib.ch9.ant_delay, 0x5251);
    EXPECT_EQ(pattern.calib.ch9.tx_power, 0x64636261U);
    EXPECT_EQ(pattern.calib.ch9.pg_count, 0x7271);
    EXPECT_EQ(pattern.calib.ch5.selector_gpio, 6);
    EXPECT_EQ(pattern.calib.xtal_trim, 12);
  }
}

TEST(Pattern, LargestValuesFit) {
  Pattern pattern({"a", "b"});
  parse(pattern,
        "version=65535\na.ch5.prf64.ant_delay=65535\na.ch5.prf64.tx_power=4294967295\n"
        "a.ch5.prf64.pg_count=65535\na.ch5.prf64.pg_delay=255\na.selector_gpio=255\n"
        "a.selector_gpio_value=255\na.port=255\nb.selector_gpio=255\n"
        "b.selector_gpio_value=255\nb.port=255\nwifi_coex_min_spacing=255");
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.version, 65535);
  EXPECT_EQ(pattern.calib.ch5.ant_delay, 65535);
  EXPECT_EQ(pattern.calib.ch5.tx_power, 4294967295);
  EXPECT_EQ(pattern.calib.ch5.pg_count, 65535);
  EXPECT_EQ(pattern.calib.ch5.pg_delay, 255);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio, 255);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio_value, 255);
  EXPECT_EQ(pattern.calib.ch5.port, 255);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio, 255);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio_value, 255);
  EXPECT_EQ(pattern.calib.ch9.port, 255);
  EXPECT_EQ(pattern.calib.wifi_coex_min_spacing, 255);
}

TEST(Pattern, NarrowParametersTakeNothingWider) {
  for (const char* line : {"version=65536",
                           "a.ch5.prf64.ant_delay=65536",
                           "a.ch5.prf64.tx_power=4294967296",
                           "a.ch5.prf64.pg_count=65536",
                           "a.ch5.prf64.pg_delay=256",
                           "a.selector_gpio=256",
                           "a.selector_gpio_value=256",
                           "a.port=256",
                           "b.ch9.prf64.ant_delay=65536",
                           "b.ch9.prf64.tx_power=4294967296",
                           "b.ch9.prf64.pg_count=65536",
                           "b.ch9.prf64.pg_delay=256",
                           "b.selector_gpio=256",
                           "b.selector_gpio_value=256",
                           "b.port=256",
                           "temperature_reference=256",
                           "xtal_trim=256",
                           "wifi_coex_time_gap=256",
                           "ap_coop_mode=256",
                           "alternate_pulse_shape=256",
                           "wifi_coex_min_spacing=256"}) {
    Pattern pattern({"a", "b"});
    EXPECT_THROW(parse(pattern, line), std::invalid_argument) << line;
    EXPECT_EQ(missingIn(pattern).size(), 21U) << line;
  }
}

TEST(Pattern, SharedAntennaLeavesTheWiringOfChannel9Zero) {
  Pattern pattern({"both", "both"});
  parse(pattern, kSharedAntenna);
  EXPECT_THAT(missingIn(pattern), IsEmpty());
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio, 6);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio_value, 1);
  EXPECT_EQ(pattern.calib.ch5.port, 3);
  EXPECT_EQ(pattern.calib.ch5.tx_power, 0x21222324U);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio, 0);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio_value, 0);
  EXPECT_EQ(pattern.calib.ch9.port, 0);
  EXPECT_EQ(pattern.calib.ch9.ant_delay, 0x5152);
  EXPECT_EQ(pattern.calib.ch9.tx_power, 0x61626364U);
  EXPECT_EQ(pattern.calib.ch9.pg_count, 0x7172);
  EXPECT_EQ(pattern.calib.ch9.pg_delay, 0x81);
}

TEST(Pattern, Channel9UnderTheAntennaOfChannel5IsDropped) {
  Pattern pattern({"ant0", "ant1"});
  takeLog();
  parse(pattern,
        "ant0.ch9.prf64.tx_power=1\nant0.ch9.prf64.ant_delay=bad\nant1.ch5.prf64.pg_delay=1");
  pattern.toBuffer(kSwapBytes);
  EXPECT_TRUE(isZero(pattern.calib));
  EXPECT_EQ(missingIn(pattern).size(), 21U);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(Pattern, OtherKeysAreDropped) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern,
        "ch5.antenna_selection=ant0\nant2.port=1\nport=1\nant0.ch5.prf16.tx_power=1\n"
        "ant0.ch5.tx_power=1\nant0.xtal_trim=1\nant01.port=1\nant0.prf64.tx_power=1");
  EXPECT_EQ(missingIn(pattern).size(), 21U);
}

TEST(Pattern, LongerKeyOfAnAntennaIsNoShorterOne) {
  Pattern pattern({"a", "b"});
  parse(pattern, "a.selector_gpio_value=1");
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio_value, 1);
  EXPECT_EQ(pattern.calib.ch5.selector_gpio, 0);
  parse(pattern, "b.selector_gpio=7");
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio, 7);
  EXPECT_EQ(pattern.calib.ch9.selector_gpio_value, 0);
}

TEST(Pattern, NameOfAnAntennaMayHoldDots) {
  Pattern pattern({"left.upper", "left"});
  parse(pattern, "left.upper.port=1\nleft.port=2");
  pattern.toBuffer(kNoConversion);
  EXPECT_EQ(pattern.calib.ch5.port, 1);
  EXPECT_EQ(pattern.calib.ch9.port, 2);
}

TEST(Pattern, EmptyTreeSerializesItsTagsAndIds) {
  Bytes bytes;
  takeLog();
  EXPECT_EQ(Pattern({"ant0", "ant1"}).serialize(bytes, kMostSignificantByteFirst), 30U);
  Bytes expected = {1,    10,  1, 0, 1, 2, 3, 253, 254, 0,  // the antenna of channel 5
                    1,    10,  1, 0, 1, 2, 3, 253, 254, 0,  // the antenna of channel 9
                    3,    4,   5, 6,                        // the root's own
                    0xDE, 0xCA};
  const uint32_t crc = crc32Of(expected);
  for (const int shift : {24, 16, 8, 0}) expected.push_back(static_cast<uint8_t>(crc >> shift));
  EXPECT_EQ(bytes, expected);
  EXPECT_THAT(
      takeLog(),
      ElementsAre(info("AstPrefix::serialize() prf64 5\n"), info("AstPrefix::serialize() ch5 6\n"),
                  info("AstPrefix::serialize() ant0 10\n"),
                  info("AstPrefix::serialize() prf64 5\n"), info("AstPrefix::serialize() ch9 6\n"),
                  info("AstPrefix::serialize() ant1 10\n"), debug("AstRoot::serialize()  30\n")));
}

TEST(Pattern, FilledTreeSerializesItsValues) {
  Pattern pattern({"ant0", "ant1"});
  parse(pattern, kTwoAntennas);
  Bytes bytes;
  EXPECT_EQ(pattern.serialize(bytes, kMostSignificantByteFirst), 62U);
  Bytes expected = {
      0x01, 0x02,                                                             // version
      1,    10,   1,                                                          // ant0.ch5.prf64
      0,    0x11, 0x12, 1,  0x21, 0x22, 0x23, 0x24, 2,  0x31, 0x32, 3, 0x41,  // its values
      253,  1,    254,  6,  0,    3,                                          // ant0
      1,    10,   1,                                                          // ant1.ch9.prf64
      0,    0x51, 0x52, 1,  0x61, 0x62, 0x63, 0x64, 2,  0x71, 0x72, 3, 0x81,  // its values
      253,  2,    254,  7,  0,    4,                                          // ant1
      3,    11,   4,    12, 5,    13,   6,    14,   15, 16,                   // the root's own
      0xDE, 0xCA};
  const uint32_t crc = crc32Of(expected);
  for (const int shift : {24, 16, 8, 0}) expected.push_back(static_cast<uint8_t>(crc >> shift));
  EXPECT_EQ(bytes, expected);
}

TEST(Pattern, SharedAntennaSerializesItsWiringOnce) {
  Bytes bytes;
  EXPECT_EQ(Pattern({"both", "both"}).serialize(bytes, kMostSignificantByteFirst), 27U);
  bytes.resize(23);
  EXPECT_EQ(bytes, (Bytes{1, 10, 1, 0, 1, 2, 3, 253, 254, 0,    1,   10,
                          1, 0,  1, 2, 3, 3, 4, 5,   6,   0xDE, 0xCA}));
}

TEST(PatternBuildAntParams, WiringIsLeftOutForTheOtherAntennaItself) {
  antenna_calib target{};
  EXPECT_EQ(printed(*Pattern::buildAntParams("a", "ch9", &target, "a")), R"( a
  ch9
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>)");
  EXPECT_EQ(printed(*Pattern::buildAntParams("a", "ch9", &target, "b")), R"( a
  ch9
   prf64
    ant_delay = <undefined>
    tx_power = <undefined>
    pg_count = <undefined>
    pg_delay = <undefined>
  selector_gpio_value = <undefined>
  selector_gpio = <undefined>
  port = <undefined>)");
}

TEST(PatternBuildAntChanParams, FillsItsTarget) {
  antenna_calib target{};
  const auto channel = Pattern::buildAntChanParams("ch7", &target);
  parse(*channel, "ch7.prf64.tx_power=0x11223344");
  channel->toBuffer(kNoConversion);
  EXPECT_EQ(target.tx_power, 0x11223344U);
  EXPECT_THAT(missingIn(*channel),
              ElementsAre("ch7.prf64.ant_delay", "ch7.prf64.pg_count", "ch7.prf64.pg_delay"));
}

}  // namespace
