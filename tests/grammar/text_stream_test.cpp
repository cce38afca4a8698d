// SPDX-License-Identifier: Apache-2.0
#include "grammar/text_stream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string readAll(std::istream& input) {
  return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

TEST(TextStream, ReadsItsText) {
  TextStream texts;
  EXPECT_EQ(readAll(texts.over("a b\n")), "a b\n");
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

TEST(TextStream, EndsWhereItsTextEnds) {
  const std::string text = "1234";
  TextStream texts;
  std::istream& stream = texts.over(std::string_view(text).substr(0, 2));
  int number = 0;
  stream >> number;
  EXPECT_EQ(number, 12);
  EXPECT_TRUE(stream.eof());
}

TEST(TextStream, NulIsAnOrdinaryCharacter) {
  TextStream texts;
  EXPECT_EQ(readAll(texts.over(std::string_view("a\0b", 3))), std::string("a\0b", 3));
}

TEST(TextStream, OneStreamServesManyTexts) {
  TextStream texts;
  EXPECT_EQ(readAll(texts.over("first")), "first");
  EXPECT_EQ(readAll(texts.over("second")), "second");
  EXPECT_EQ(readAll(texts.over("")), "");
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

TEST(TextStream, CanBeSoughtFromEveryEnd) {
  TextStream texts;
  std::istream& stream = texts.over("abcdef");
  stream.seekg(4);
  EXPECT_EQ(stream.get(), 'e');
  stream.seekg(-2, std::ios_base::cur);
  EXPECT_EQ(stream.get(), 'd');
  stream.seekg(-1, std::ios_base::end);
  EXPECT_EQ(stream.get(), 'f');
  stream.seekg(1, std::ios_base::beg);
  EXPECT_EQ(stream.get(), 'b');
}

TEST(TextStream, CanBeSoughtToItsEndAndNotBeyond) {
  TextStream texts;
  std::istream& stream = texts.over("abc");
  stream.seekg(3);
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(stream.get(), std::istream::traits_type::eof());
  stream.clear();
  stream.seekg(4);
  EXPECT_TRUE(stream.fail());
  stream.clear();
  stream.seekg(-1, std::ios_base::beg);
  EXPECT_TRUE(stream.fail());
}

TEST(TextStream, AFailedSeekKeepsThePosition) {
  TextStream texts;
  std::istream& stream = texts.over("abc");
  stream.get();
  stream.seekg(9);
  stream.clear();
  EXPECT_EQ(stream.get(), 'b');
}

TEST(TextStream, HasNoPositionForWriting) {
  TextStream texts;
  std::istream& stream = texts.over("abc");
  EXPECT_EQ(stream.rdbuf()->pubseekpos(0, std::ios_base::out), std::streampos(std::streamoff(-1)));
  EXPECT_EQ(stream.rdbuf()->pubseekoff(0, std::ios_base::cur, std::ios_base::out),
            std::streampos(std::streamoff(-1)));
}

}  // namespace
