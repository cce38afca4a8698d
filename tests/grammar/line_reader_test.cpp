// SPDX-License-Identifier: Apache-2.0
#include "grammar/line_reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "grammar/text_stream.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/types.h"

namespace {

// Holds a text and throws where it ends.
class FailingBuffer : public std::streambuf {
 public:
  explicit FailingBuffer(std::string text) : text(std::move(text)) {
    char* const first = this->text.data();
    setg(first, first, first + this->text.size());
  }

 protected:
  int_type underflow() override { throw std::runtime_error("read error"); }

 private:
  std::string text;
};

Names linesOf(std::istream& input) {
  Names lines;
  LineReader reader(input);
  for (Line line; reader.next(line);) lines.emplace_back(line.text);
  return lines;
}

// The same by the language's own means.
Names expectedLines(const std::string& text) {
  Names lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) {
    if (line.find('=') != line.npos) lines.push_back(line);
  }
  return lines;
}

class LineReaderOf : public testing::TestWithParam<StreamKind> {
 protected:
  Names linesOfText(const std::string& text) const { return linesOf(*streamOf(GetParam(), text)); }
};

INSTANTIATE_TEST_SUITE_P(Streams, LineReaderOf, kAllStreams);

TEST_P(LineReaderOf, LinesWithAnEqualSignAreThoseOfGetline) {
  for (const std::string text : {"", "a\n\nb=1\n# c\n\nd=2\ne\n", "a\n", "a", "\n", "a=1\nb=2",
                                 "a=1\nb", "=", "a=1\r\n\v\f=\n"}) {
    EXPECT_EQ(linesOfText(text), expectedLines(text)) << text;
  }
  const std::string with_nul("a=\0b\nc\0=\n", 9);
  EXPECT_EQ(linesOfText(with_nul), expectedLines(with_nul));
}

// Whether the only line of the text with a '=' is a comment.
bool isComment(StreamKind kind, const std::string& text) {
  const auto input = streamOf(kind, text);
  LineReader reader(*input);
  Line line;
  EXPECT_TRUE(reader.next(line)) << text;
  return line.is_comment;
}

TEST_P(LineReaderOf, CommentMarkStandsBeforeTheFirstEqualSign) {
  for (const char* const line : {"#=", "# a=1", "a#=1", " #a=1", ";=", "; a=1", "a ;=1", "//=1",
                                 "// a=1", "a//=1", "/ /=", "/\t/a=1", "a/b/\r/=1", "///="}) {
    for (const char* const before : {"", "x\n", "#\n;\n//\n"}) {
      EXPECT_TRUE(isComment(GetParam(), before + std::string(line) + "\n")) << before << line;
      EXPECT_TRUE(isComment(GetParam(), before + std::string(line))) << before << line;
    }
  }
  for (const char* const line :
       {"=#", "=;", "a=1 # b", "a=;", "a=//", "a=1//=", "/=/", "/a/=1", "/=", "a/=1"}) {
    for (const char* const after : {"", "\n", "\n#\n//", "\n;"}) {
      EXPECT_FALSE(isComment(GetParam(), line + std::string(after))) << line << after;
    }
  }
}

TEST_P(LineReaderOf, EveryLineIsJudgedByItsOwnMarks) {
  const auto input =
      streamOf(GetParam(), "a=1\n#b=1\nc=#\nd=1\n;e\nf=1\ng;=1\n/ /=1\nh=1[CCC]\ni=");
  LineReader reader(*input);
  std::string comments;
  for (Line line; reader.next(line);) {
    comments += line.is_comment ? '#' : '.';
    if (!line.is_comment) {
      EXPECT_EQ(line.has_bracket, line.text.find('[') != line.text.npos) << line.text;
    }
  }
  EXPECT_EQ(comments, ".#...##..");
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

TEST(LineReader, LineLiesWhereTheTextOfTheStreamLies) {
  const std::string text = "x\nabc=1\ndef=2\n";
  TextStream stream;
  LineReader reader(stream.over(text));
  Line line;
  ASSERT_TRUE(reader.next(line));
  EXPECT_EQ(line.text.data(), text.data() + 2);
  ASSERT_TRUE(reader.next(line));
  EXPECT_EQ(line.text.data(), text.data() + 8);
}

TEST(LineReader, LineThatAReadErrorCutsOffIsDropped) {
  FailingBuffer text("a=1\nb=2\nc=3");
  std::istream input(&text);
  EXPECT_EQ(linesOf(input), (Names{"a=1", "b=2"}));
  EXPECT_TRUE(input.bad());
}

TEST(LineReader, ReadsTheStreamToItsEnd) {
  std::istringstream input("a=1\nb\n");
  EXPECT_EQ(linesOf(input), (Names{"a=1"}));
  EXPECT_TRUE(input.eof());
  EXPECT_TRUE(input.fail());
}

TEST(LineReader, ThrowsAtTheEndWhatTheStreamThrows) {
  std::istringstream input("a=1\n");
  input.exceptions(std::ios_base::failbit);
  LineReader reader(input);
  Line line;
  EXPECT_TRUE(reader.next(line));
  EXPECT_THROW(reader.next(line), std::ios_base::failure);
}

// Holds two pieces of text, one after the other, below all memory of the heap and of the stack.
class TwoAreas : public std::streambuf {
 public:
  TwoAreas() { setg(kFirst, kFirst, kFirst + sizeof(kFirst) - 1); }

 protected:
  int_type underflow() override {
    if (eback() == kSecond) return traits_type::eof();
    setg(kSecond, kSecond, kSecond + sizeof(kSecond) - 1);
    return traits_type::to_int_type(*gptr());
  }

 private:
  static inline char kFirst[] = "a=1\nb=";
  static inline char kSecond[] = "2\nc#=1\nd[=1\n e=1\n";
};

TEST(LineReader, MarksAreSearchedForInEveryArea) {
  TwoAreas text;
  std::istream input(&text);
  LineReader reader(input);
  std::string found;
  for (Line line; reader.next(line);) {
    found += std::string(line.text) + (line.is_comment ? " comment" : "");
    found += line.has_bracket ? " bracket;" : ";";
  }
  EXPECT_EQ(found, "a=1;b=2;c#=1 comment;d[=1 bracket; e=1;");
}

TEST(LineReader, FailedStreamAndOneWithoutABufferHaveNoLines) {
  std::istream none(nullptr);
  EXPECT_EQ(linesOf(none), Names());
  std::istringstream failed("a=1\n");
  failed.setstate(std::ios_base::failbit);
  EXPECT_EQ(linesOf(failed), Names());
}

}  // namespace
