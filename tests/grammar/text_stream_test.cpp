// SPDX-License-Identifier: Apache-2.0
#include "grammar/text_stream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string readAll(std::istream& input) {
  return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

TEST(TextStream, ReadsItsText) {
  TextStream stream("a b\n");
  EXPECT_EQ(readAll(stream), "a b\n");
}

TEST(TextStream, HasNoTextAtFirst) {
  TextStream stream;
  EXPECT_EQ(stream.get(), std::istream::traits_type::eof());
}

TEST(TextStream, ReadsInPlaceWithoutACopy) {
  std::string text = "1 2";
  TextStream stream(text);
  text[2] = '7';
  int first = 0;
  int second = 0;
  stream >> first >> second;
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 7);
}

TEST(TextStream, EndsWhereItsTextEnds) {
  const std::string text = "1234";
  TextStream stream(std::string_view(text).substr(0, 2));
  int number = 0;
  stream >> number;
  EXPECT_EQ(number, 12);
  EXPECT_TRUE(stream.eof());
}

TEST(TextStream, NulIsAnOrdinaryCharacter) {
  TextStream stream(std::string_view("a\0b", 3));
  EXPECT_EQ(readAll(stream), std::string("a\0b", 3));
}

TEST(TextStream, StartsOverWithAnotherText) {
  TextStream stream("first");
  EXPECT_EQ(readAll(stream), "first");
  stream.setText("second");
  EXPECT_EQ(readAll(stream), "second");
  stream.setText("");
  EXPECT_EQ(readAll(stream), "");
}

TEST(TextStream, ANewTextClearsErrors) {
  TextStream stream("x");
  int number = 0;
  stream >> number;
  EXPECT_TRUE(stream.fail());
  stream.setText("5");
  EXPECT_TRUE(stream.good());
  stream >> number;
  EXPECT_EQ(number, 5);
}

TEST(TextStream, ANewTextIsReadInDecimalWithWhiteSpaceSkipped) {
  TextStream stream("x");
  stream >> std::hex >> std::noskipws;
  stream.setText(" 10");
  EXPECT_EQ(stream.flags(), std::istream(nullptr).flags());
  int number = 0;
  stream >> number;
  EXPECT_EQ(number, 10);
}

TEST(TextStream, TellsItsPosition) {
  TextStream stream("abc");
  EXPECT_EQ(stream.tellg(), std::streampos(0));
  stream.get();
  EXPECT_EQ(stream.tellg(), std::streampos(1));
  stream.setText("xyz");
  EXPECT_EQ(stream.tellg(), std::streampos(0));
}

TEST(TextStream, CanBeSoughtFromEveryEnd) {
  TextStream stream("abcdef");
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
  TextStream stream("abc");
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
  TextStream stream("abc");
  stream.get();
  stream.seekg(9);
  stream.clear();
  EXPECT_EQ(stream.get(), 'b');
}

TEST(TextStream, HasNoPositionForWriting) {
  TextStream stream("abc");
  EXPECT_EQ(stream.rdbuf()->pubseekpos(0, std::ios_base::out), std::streampos(std::streamoff(-1)));
  EXPECT_EQ(stream.rdbuf()->pubseekoff(0, std::ios_base::cur, std::ios_base::out),
            std::streampos(std::streamoff(-1)));
}

}  // namespace
