// SPDX-License-Identifier: Apache-2.0
#include "schema/antenna_selection_pattern.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <stdexcept>
#include <type_traits>

#include "tests/kit/doubles.h"
#include "tests/schema/tree_questions.h"

namespace {

constexpr auto kSwapBytes = EndiannessConversion::SwapBytes;

antenna_selection selected(const std::string& text, EndiannessConversion conversion = kSwapBytes) {
  AntennaSelectionPattern pattern;
  parse(pattern, text);
  return pattern.toAntennaSelection(conversion);
}

// Looks at the shared names before any test has run.
class NamesAtLoad : public testing::Environment {
 public:
  void SetUp() override {
    if (!names.has_value()) names = AntennaSelectionPattern().toAntennaSelection(kSwapBytes);
  }

  static std::optional<antenna_selection> names;
};

std::optional<antenna_selection> NamesAtLoad::names;
const testing::Environment* const kNamesAtLoad = testing::AddGlobalTestEnvironment(new NamesAtLoad);

TEST(AntennaSelectionPattern, SharedNamesAreEmptyAtLoad) {
  EXPECT_EQ(NamesAtLoad::names->ch5, "");
  EXPECT_EQ(NamesAtLoad::names->ch9, "");
}

TEST(AntennaSelectionPattern, TreeOfTwoKeys) {
  AntennaSelectionPattern pattern;
  parse(pattern, "ch9.antenna_selection=ant1");
  EXPECT_EQ(printed(pattern), R"(
ch5
 antenna_selection = <undefined>
ch9
 antenna_selection = ant1)");
}

TEST(AntennaSelectionPattern, IsARoot) {
  EXPECT_EQ(AntennaSelectionPattern().getClass(), "AstRoot");
  EXPECT_FALSE(std::is_copy_constructible_v<AntennaSelectionPattern>);
}

TEST(AntennaSelectionPattern, ChannelsHaveTag10AndNamesNoId) {
  takeLog();
  std::vector<uint8_t> bytes;
  EXPECT_EQ(AntennaSelectionPattern().serialize(bytes, kMostSignificantByteFirst), 8U);
  bytes.resize(4);
  EXPECT_EQ(bytes, (std::vector<uint8_t>{10, 10, 0xDE, 0xCA}));
  EXPECT_LOG(info("AstPrefix::serialize() ch5 1\n"), info("AstPrefix::serialize() ch9 1\n"),
             debug("AstRoot::serialize()  8\n"));
}

TEST(AntennaSelectionPattern, BothNamesAreRequired) {
  AntennaSelectionPattern pattern;
  EXPECT_EQ(missingIn(pattern), (Names{"ch5.antenna_selection", "ch9.antenna_selection"}));
  parse(pattern, "ch5.antenna_selection=ant0");
  EXPECT_EQ(missingIn(pattern), (Names{"ch9.antenna_selection"}));
  parse(pattern, "ch9.antenna_selection=ant1");
  EXPECT_EQ(missingIn(pattern), Names());
}

TEST(AntennaSelectionPattern, EachChannelHasItsNameWhichIsOneWord) {
  const struct {
    const char* text;
    const char* ch5;
    const char* ch9;
  } rows[] = {
      {"ch5.antenna_selection=ant0\nch9.antenna_selection=ant1", "ant0", "ant1"},
      {"ch5.antenna_selection=both\nch9.antenna_selection=both", "both", "both"},
      {"ch9.antenna_selection= \tant1//x\r\nch5.antenna_selection=ant0 spare", "ant0", "ant1//x"},
  };
  for (const auto& row : rows) {
    for (const int conversion : {0, 1, 2}) {
      const antenna_selection selection =
          selected(row.text, static_cast<EndiannessConversion>(conversion));
      EXPECT_EQ(selection.ch5, row.ch5);
      EXPECT_EQ(selection.ch9, row.ch9);
    }
  }
}

TEST(AntennaSelectionPattern, NameIsNeverEmpty) {
  AntennaSelectionPattern pattern;
  EXPECT_THROW(parse(pattern, "ch5.antenna_selection="), std::invalid_argument);
  EXPECT_THROW(parse(pattern, "ch9.antenna_selection= \t\r"), std::invalid_argument);
  EXPECT_EQ(missingIn(pattern), (Names{"ch5.antenna_selection", "ch9.antenna_selection"}));
}

TEST(AntennaSelectionPattern, OtherKeysAreDropped) {
  AntennaSelectionPattern pattern;
  takeLog();
  parse(pattern,
        "version=1\nantenna_selection=a\nch5=a\nch5.antenna=a\nch55.antenna_selection=a\n"
        "ch5.ch9.antenna_selection=a\nant0.ch5.prf64.ant_delay=bad\nxtal_trim=256");
  EXPECT_EQ(missingIn(pattern), (Names{"ch5.antenna_selection", "ch9.antenna_selection"}));
  EXPECT_LOG();
}

TEST(AntennaSelectionPattern, NameThatWasNotReadStaysAsItWas) {
  selected("ch5.antenna_selection=old5\nch9.antenna_selection=old9");
  const antenna_selection five = selected("ch5.antenna_selection=new5");
  EXPECT_EQ(five.ch5, "new5");
  EXPECT_EQ(five.ch9, "old9");
  const antenna_selection nine = selected("ch9.antenna_selection=new9");
  EXPECT_EQ(nine.ch5, "new5");
  EXPECT_EQ(nine.ch9, "new9");
  const antenna_selection none = selected("");
  EXPECT_EQ(none.ch5, "new5");
  EXPECT_EQ(none.ch9, "new9");
}

TEST(AntennaSelectionPattern, SharedNamesAreThoseOfTheLastToBuffer) {
  antenna_selection copy = selected("ch5.antenna_selection=old5\nch9.antenna_selection=old9");
  copy.ch5 = "changed";
  AntennaSelectionPattern pattern;
  parse(pattern, "ch5.antenna_selection=new5\nch9.antenna_selection=new9");
  EXPECT_EQ(selected("").ch5, "old5");
  EXPECT_EQ(selected("").ch9, "old9");
  pattern.toBuffer(kSwapBytes);
  EXPECT_EQ(selected("").ch5, "new5");
  EXPECT_EQ(selected("").ch9, "new9");
  EXPECT_EQ(copy.ch9, "old9");
}

TEST(BuildAntSelectionParams, FillsTheStringItIsGiven) {
  std::string target;
  const auto prefix = AntennaSelectionPattern::buildAntSelectionParams("ch7", &target);
  std::istringstream input("ch7.antenna_selection=patch");
  EXPECT_TRUE(prefix->parse(input));
  prefix->toBuffer(kSwapBytes);
  EXPECT_EQ(target, "patch");
}

}  // namespace
