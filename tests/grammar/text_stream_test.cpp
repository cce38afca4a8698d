// SPDX-License-Identifier: Apache-2.0
#include "grammar/text_stream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string readAll(std::istream& input) {
  return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

TEST(TextStream, ReadsInPlaceWithoutACopy) {
  std::string text = "1 2";
  TextStream texts;
  std::istream& stream = texts.over(text);
  text[2] = '7';
  int first = 0;
  int second = 0;
  stream >> first >> second;
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 7);
}

TEST(TextStream, OneStreamServesManyTexts) {
  TextStream texts;
  for (const std::string& text : {std::string("a b\n"), std::string("a\0b", 3), std::string()}) {
    EXPECT_EQ(readAll(texts.over(text)), text);
  }
}

TEST(TextStream, EndsWhereItsTextEnds) {
  TextStream texts;
  std::istream& stream = texts.over(std::string_view("1234").substr(0, 2));
  int number = 0;
  stream >> number;
  EXPECT_EQ(number, 12);
  EXPECT_TRUE(stream.eof());
}

TEST(TextStream, IsAsNewForEveryText) {
  TextStream texts;
  std::istream& before = texts.over("x");
  before >> std::hex >> std::noskipws;
  before.width(1);
  before.setstate(std::ios_base::failbit | std::ios_base::badbit);
  EXPECT_THROW(before.exceptions(std::ios_base::failbit), std::ios_base::failure);
  std::istream& stream = texts.over(" 10");
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.exceptions(), std::ios_base::goodbit);
  EXPECT_EQ(stream.flags(), std::istream(nullptr).flags());
  EXPECT_EQ(stream.width(), 0);
  int number = 0;
  stream >> number;
  EXPECT_EQ(number, 10);
}

TEST(TextStream, TellsItsPosition) {
  TextStream texts;
  std::istream& stream = texts.over("abc");
  EXPECT_EQ(stream.tellg(), std::streampos(0));
  stream.get();
  EXPECT_EQ(stream.tellg(), std::streampos(1));
  EXPECT_EQ(texts.over("xyz").tellg(), std::streampos(0));
}

TEST(TextStream, CanBeSoughtInsideItsText) {
  TextStream texts;
  std::istream& stream = texts.over("abcdef");
  EXPECT_EQ(stream.seekg(4).get(), 'e');
  EXPECT_EQ(stream.seekg(-2, std::ios_base::cur).get(), 'd');
  EXPECT_EQ(stream.seekg(-1, std::ios_base::end).get(), 'f');
  EXPECT_EQ(stream.seekg(1, std::ios_base::beg).get(), 'b');
  EXPECT_EQ(stream.seekg(6).get(), std::istream::traits_type::eof());
  for (const int outside : {7, -1}) {
    stream.clear();
    stream.seekg(2);
    EXPECT_TRUE(stream.seekg(outside, std::ios_base::beg).fail());
    stream.clear();
    EXPECT_EQ(stream.get(), 'c') << "a seek that failed moved";
  }
}

TEST(TextStream, HasNoPositionForWriting) {
  TextStream texts;
  std::istream& stream = texts.over("abc");
  EXPECT_EQ(stream.rdbuf()->pubseekpos(0, std::ios_base::out), std::streampos(std::streamoff(-1)));
  EXPECT_EQ(stream.rdbuf()->pubseekoff(0, std::ios_base::cur, std::ios_base::out),
            std::streampos(std::streamoff(-1)));
}

}  // namespace
