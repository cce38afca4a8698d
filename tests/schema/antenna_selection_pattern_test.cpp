// SPDX-License-Identifier: Apache-2.0
#include "schema/antenna_selection_pattern.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <type_traits>

#include "tests/kit/doubles.h"
#include "tests/kit/trees.h"

namespace {

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

// Requires the names that are selected after a text.
void expectSelected(const char* text, const char* ch5, const char* ch9,
                    EndiannessConversion conversion = kSwapBytes) {
  const antenna_selection names = selected(text, conversion);
  EXPECT_EQ(names.ch5, ch5);
  EXPECT_EQ(names.ch9, ch9);
}

TEST(AntennaSelectionPattern, EachChannelHasItsNameWhichIsOneWord) {
  for (const auto conversion : {kNoConversion, kSwapBytes, kNeither}) {
    expectSelected("ch5.antenna_selection=ant0\nch9.antenna_selection=ant1", "ant0", "ant1",
                   conversion);
    expectSelected("ch5.antenna_selection=both\nch9.antenna_selection=both", "both", "both",
                   conversion);
    expectSelected("ch9.antenna_selection= \tant1//x\r\nch5.antenna_selection=ant0 spare", "ant0",
                   "ant1//x", conversion);
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
  expectSelected("ch5.antenna_selection=old5\nch9.antenna_selection=old9", "old5", "old9");
  expectSelected("ch5.antenna_selection=new5", "new5", "old9");
  expectSelected("ch9.antenna_selection=new9", "new5", "new9");
  expectSelected("", "new5", "new9");
}

TEST(AntennaSelectionPattern, SharedNamesAreThoseOfTheLastToBuffer) {
  antenna_selection copy = selected("ch5.antenna_selection=old5\nch9.antenna_selection=old9");
  copy.ch5 = "changed";
  AntennaSelectionPattern pattern;
  parse(pattern, "ch5.antenna_selection=new5\nch9.antenna_selection=new9");
  expectSelected("", "old5", "old9");
  pattern.toBuffer(kSwapBytes);
  expectSelected("", "new5", "new9");
  EXPECT_EQ(copy.ch9, "old9");
}

TEST(BuildAntSelectionParams, FillsTheStringItIsGiven) {
  std::string target;
  const auto prefix = AntennaSelectionPattern::buildAntSelectionParams("ch7", &target);
  EXPECT_TRUE(parse(*prefix, "ch7.antenna_selection=patch"));
  prefix->toBuffer(kSwapBytes);
  EXPECT_EQ(target, "patch");
}

}  // namespace
