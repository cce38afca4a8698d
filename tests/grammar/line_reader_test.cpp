// SPDX-License-Identifier: Apache-2.0
#include "grammar/line_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/kit/any_stream.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(std::istream& input) {
  std::vector<std::string> lines;
  LineReader reader(input);
  for (Line line; reader.next(line);) lines.emplace_back(line.text());
  return lines;
}

// The same by the language's own means.
std::vector<std::string> expectedLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) {
    if (line.find('=') != line.npos) lines.push_back(line);
  }
  return lines;
}

class LineReaderOf : public testing::TestWithParam<StreamKind> {
 protected:
  std::vector<std::string> linesOfText(const std::string& text) const {
    return linesOf(*streamOf(GetParam(), text));
  }
};

INSTANTIATE_TEST_SUITE_P(Streams, LineReaderOf,
                         testing::Values(StreamKind::Input, StreamKind::InputAndOutput,
                                         StreamKind::OneCharacterAtATime));

TEST_P(LineReaderOf, EmptyTextHasNoLines) {
  EXPECT_THAT(linesOfText(""), IsEmpty());
}

TEST_P(LineReaderOf, LinesWithoutAnEqualSignAreSkipped) {
  EXPECT_THAT(linesOfText("a\n\nb=1\n# c\n\nd=2\ne\n"), ElementsAre("b=1", "d=2"));
  EXPECT_THAT(linesOfText("a\n"), IsEmpty());
  EXPECT_THAT(linesOfText("a"), IsEmpty());
  EXPECT_THAT(linesOfText("\n"), IsEmpty());
}

TEST_P(LineReaderOf, LastLineMayLackItsLineFeed) {
  EXPECT_THAT(linesOfText("a=1\nb=2"), ElementsAre("a=1", "b=2"));
  EXPECT_THAT(linesOfText("a=1\nb"), ElementsAre("a=1"));
  EXPECT_THAT(linesOfText("="), ElementsAre("="));
}

TEST_P(LineReaderOf, OnlyTheLineFeedEndsALine) {
  EXPECT_THAT(linesOfText("a=1\r\n\v\f=\n"), ElementsAre("a=1\r", "\v\f="));
  EXPECT_THAT(linesOfText(std::string("a=\0b\nc\0=\n", 9)),
              ElementsAre(std::string("a=\0b", 4), std::string("c\0=", 3)));
}

TEST_P(LineReaderOf, KeyEndsAtTheFirstEqualSign) {
  const auto input = streamOf(GetParam(), "x\nab=c=d\n");
  LineReader reader(*input);
  Line line;
  ASSERT_TRUE(reader.next(line));
  EXPECT_EQ(line.key(), "ab");
  EXPECT_EQ(line.text(), "ab=c=d");
}

TEST_P(LineReaderOf, LinesOfEveryLengthAroundABlockAreWhole) {
  for (const size_t length :
       {1000u, 2047u, 2048u, 4090u, 4094u, 4095u, 4096u, 4097u, 8191u, 8192u, 8193u, 20000u}) {
    for (const std::string& filler : {std::string(length, 'c'), std::string(length, '\n')}) {
      for (const std::string ending : {"", "\n", "\nlast", "\nlast=1", "\nlast=1\n"}) {
        const std::string text = "k=" + filler + "=" + ending;
        EXPECT_EQ(linesOfText(text), expectedLines(text)) << length << ' ' << ending;
        const std::string late = filler + "\nk=1" + filler + ending;
        EXPECT_EQ(linesOfText(late), expectedLines(late)) << length << ' ' << ending;
      }
    }
  }
}

TEST(LineReader, ALineMayBeChangedUpToItsEnd) {
  std::istringstream input("abc=1\ndef=2\nghi=3");
  LineReader reader(input);
  for (Line line; reader.next(line);) {
    std::fill(line.begin, line.end, '=');
    *line.end = '\0';
  }
  input.clear();
  input.str("abc=1\ndef=2\nghi=3");
  EXPECT_THAT(linesOf(input), ElementsAre("abc=1", "def=2", "ghi=3"));
}

TEST(LineReader, ChangesToALineDoNotReachTheNextOne) {
  std::istringstream input("abc=1\ndef=2");
  LineReader reader(input);
  Line line;
  ASSERT_TRUE(reader.next(line));
  std::fill(line.begin, line.end + 1, '#');
  ASSERT_TRUE(reader.next(line));
  EXPECT_EQ(line.text(), "def=2");
  *line.end = '=';
  EXPECT_FALSE(reader.next(line));
}

TEST(LineReader, ReadsTheStreamToItsEnd) {
  std::istringstream input("a=1\nb\n");
  EXPECT_THAT(linesOf(input), ElementsAre("a=1"));
  EXPECT_TRUE(input.eof());
}

TEST(LineReader, AFailedStreamHasNoLines) {
  std::istringstream input("a=1\n");
  input.setstate(std::ios_base::failbit);
  EXPECT_THAT(linesOf(input), IsEmpty());
}

}  // namespace
