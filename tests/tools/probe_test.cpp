// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "tools/probe/number_spelling.h"
#include "tools/probe/schema_probe.h"

namespace {

using Kind = LineEffect::Kind;

struct SpellingRow {
  const char* text;
  const char* gathered;
  const char* number;
  bool alike;
};

std::ostream& operator<<(std::ostream& out, const SpellingRow& row) {
  return out << '"' << row.text << '"';
}

class Spelling : public testing::TestWithParam<SpellingRow> {};

TEST_P(Spelling, TellsWhatEachLibraryReads) {
  const NumberSpelling spelling = spellingOf(GetParam().text);
  EXPECT_EQ(spelling.gathered, GetParam().gathered);
  EXPECT_EQ(spelling.number, GetParam().number);
  EXPECT_EQ(spelling.readAlike(), GetParam().alike);
}

INSTANTIATE_TEST_SUITE_P(
    Alike, Spelling,
    testing::Values(SpellingRow{"12", "12", "12", true}, SpellingRow{"12 ", "12", "12", true},
                    SpellingRow{"12;b", "12", "12", true}, SpellingRow{"0", "0", "0", true},
                    SpellingRow{"017", "017", "017", true},
                    SpellingRow{"0x1F", "0x1F", "0x1F", true},
                    SpellingRow{"0X1fG", "0X1f", "0X1f", true}, SpellingRow{"-5", "-5", "-5", true},
                    SpellingRow{"+5-3", "+5", "+5", true}, SpellingRow{"1.5", "1", "1", true},
                    SpellingRow{"", "", "", true}, SpellingRow{"0x", "0x", "", true},
                    SpellingRow{"x1", "x1", "", true}, SpellingRow{"-", "-", "", true},
                    SpellingRow{"- 5", "-", "", true}));

INSTANTIATE_TEST_SUITE_P(Apart, Spelling,
                         testing::Values(SpellingRow{"12b", "12b", "12", false},
                                         SpellingRow{"08", "08", "0", false},
                                         SpellingRow{"0179", "0179", "017", false},
                                         SpellingRow{"1x1", "1x1", "1", false},
                                         SpellingRow{"00x1", "00x1", "00", false},
                                         SpellingRow{"0x1x", "0x1x", "0x1", false},
                                         SpellingRow{"-5e", "-5e", "-5", false}));

const antenna_selection kAntennas{"a", "b"};

TEST(SchemaProbe, KeysAreThoseOfTheTree) {
  EXPECT_THAT(selectionProbe().feed("ch9.antenna_selection=b").parameter, 1U);
  const SchemaProbe probe = calibrationProbe(kAntennas);
  EXPECT_EQ(probe.keys().size(), 21U);
  EXPECT_EQ(calibrationProbe({"a", "a"}).feed("a.ch9.prf64.tx_power=1").kind, Kind::Sets);
  EXPECT_THAT(probe.keys(), testing::Contains("b.ch9.prf64.pg_delay"));
}

TEST(SchemaProbe, TellsWhatALineDoes) {
  const SchemaProbe probe = calibrationProbe(kAntennas);
  EXPECT_EQ(probe.feed("xtal_trm=1").kind, Kind::Dropped);
  EXPECT_EQ(probe.feed("").kind, Kind::Dropped);
  EXPECT_EQ(probe.feed("# xtal_trim=1").kind, Kind::Comment);
  const LineEffect sets = probe.feed("xtal_trim=0x1F ; factory");
  EXPECT_EQ(sets.kind, Kind::Sets);
  EXPECT_EQ(probe.keys()[sets.parameter], "xtal_trim");
  EXPECT_EQ(sets.value, "31 (0x1f)");
  const LineEffect fails = probe.feed("b.port=300");
  EXPECT_EQ(fails.kind, Kind::Fails);
  EXPECT_EQ(probe.keys()[fails.parameter], "b.port");
}

TEST(SchemaProbe, FindsTheParameterOfANameWithEqualSigns) {
  const SchemaProbe probe = calibrationProbe({"a=b", "c"});
  const LineEffect fails = probe.feed("a=b.port=300");
  EXPECT_EQ(fails.kind, Kind::Fails);
  EXPECT_EQ(probe.keys()[fails.parameter], "a=b.port");
}

TEST(SchemaProbe, EveryKeySetsItsOwnParameter) {
  const SchemaProbe probe = calibrationProbe(kAntennas);
  for (size_t i = 0; i < probe.keys().size(); ++i) {
    EXPECT_EQ(probe.feed(probe.keys()[i] + "=1").parameter, i) << probe.keys()[i];
  }
}

}  // namespace
