// SPDX-License-Identifier: Apache-2.0
#include "grammar/plain_number.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <string_view>

#include "grammar/text_stream.h"
#include "tests/kit/piecewise_buffer.h"

namespace {

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();

// What the stream's own extraction makes of a text, the base chosen by the number's prefix.
struct Formatted {
  bool failed;
  uint32_t value;
  std::streamoff end;
};

Formatted formatted(const std::string& text) {
  std::istringstream input(text);
  input.unsetf(std::ios_base::basefield);
  uint32_t value = 0;
  input >> value;
  const bool failed = input.fail();
  input.clear();
  return {failed, value, input.tellg()};
}

struct Plain {
  std::optional<uint32_t> value;
  std::streamoff end;
};

Plain plain(std::string_view text, uint32_t largest = kLargest) {
  TextStream texts;
  std::istream& input = texts.over(text);
  const std::optional<uint32_t> value = readPlainNumber(input, largest);
  EXPECT_TRUE(input.good());
  return {value, input.rdbuf()->pubseekoff(0, std::ios_base::cur, std::ios_base::in)};
}

// A number that is taken is what the stream's own extraction would have made of the text, and a
// text that is not taken is as it was.
void expectAgreement(const std::string& text) {
  const Plain taken = plain(text);
  if (!taken.value.has_value()) {
    ASSERT_EQ(taken.end, 0) << text;
    return;
  }
  const Formatted expected = formatted(text);
  ASSERT_FALSE(expected.failed) << text;
  ASSERT_EQ(*taken.value, expected.value) << text;
  ASSERT_EQ(taken.end, expected.end) << text;
}

void expectAgreementOnAll(std::string_view alphabet, size_t length, const std::string& begin = "") {
  expectAgreement(begin);
  if (length == 0) return;
  for (const char c : alphabet) expectAgreementOnAll(alphabet, length - 1, begin + c);
}

TEST(PlainNumber, AgreesWithTheStreamOnEveryShortText) {
  expectAgreementOnAll("0123456789+-xXabcdefgABCDEFG. \t\n\v\f\r,", 3);
}

TEST(PlainNumber, AgreesWithTheStreamOnEveryLongerTextOfFewCharacters) {
  expectAgreementOnAll("0189fx- ", 5);
}

TEST(PlainNumber, AgreesWithTheStreamAroundTheLongestNumbers) {
  for (const char* const prefix : {"", "0x", "0X", "0", "00", "-", "+"}) {
    for (size_t digits = 7; digits <= 12; ++digits) {
      for (const char digit : {'0', '1', '4', '9', 'f', 'F'}) {
        for (const char* const end : {"", " ", "\r", "x", "8"}) {
          expectAgreement(prefix + std::string(digits, digit) + end);
        }
      }
    }
  }
  for (const char* const text : {"4294967295", "4294967296", "999999999", "1000000000",
                                 "0xffffffff", "0x100000000", "0x0ffffffff"}) {
    expectAgreement(text);
  }
}

TEST(PlainNumber, PlainSpellingsUpToWhiteSpaceAreTaken) {
  const struct {
    const char* text;
    uint32_t value;
    std::streamoff end;
    uint32_t largest = kLargest;
  } rows[] = {
      {"0", 0, 1},          {"7", 7, 1},           {"123456789", 123456789, 9},
      {"0x0", 0, 3},        {"0x1F", 0x1F, 4},     {"999999999", 999999999, 9},
      {"12 3", 12, 2},      {"12\t3", 12, 2},      {"0xFFFFFFFF", kLargest, 10},
      {"12\n", 12, 2},      {"12\v", 12, 2},       {"0x01234567", 0x01234567, 10},
      {"12\f", 12, 2},      {"12\r", 12, 2},       {"0x89abcdef", 0x89ABCDEF, 10},
      {"0 1", 0, 1},        {"0x1F\r", 0x1F, 4},   {"0XABCDEF", 0xABCDEF, 8},
      {"255", 255, 3, 255}, {"0xff", 255, 4, 255}, {"0xffff", 65535, 6, 65535},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(plain(row.text, row.largest).value, row.value) << row.text;
    EXPECT_EQ(plain(row.text, row.largest).end, row.end) << row.text;
  }
}

TEST(PlainNumber, OtherSpellingsAreLeftToTheStream) {
  for (const char* const text :
       {"",     " 5",    "+5",          "-5",  "05", "08",        "00",   "0x",
        "0x 1", "12abc", "1e5",         "5;",  "0;", "0x5;",      "0x1g", "0x000000001",
        "f",    "x1",    "0x123456789", "12=", ".5", "1234567890"}) {
    EXPECT_EQ(plain(text).value, std::nullopt) << text;
    EXPECT_EQ(plain(text).end, 0) << text;
  }
}

TEST(PlainNumber, NumberAboveTheLargestIsLeftToTheStream) {
  EXPECT_EQ(plain("256", 255).value, std::nullopt);
  EXPECT_EQ(plain("256", 255).end, 0);
  EXPECT_EQ(plain("0x10000", 65535).value, std::nullopt);
}

TEST(PlainNumber, TextWithoutAWayBackIsNotTouched) {
  PiecewiseBuffer text("5", 1, Seeking::Nothing);
  text.sgetc();
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_TRUE(input.good());
  EXPECT_EQ(text.sgetc(), '5');
}

TEST(PlainNumber, NumberAcrossAreasIsLeftToTheStream) {
  PiecewiseBuffer text("1234\n", 2, Seeking::Back);
  text.sgetc();  // The first area is there.
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  uint32_t value = 0;
  EXPECT_TRUE(input >> value);
  EXPECT_EQ(value, 1234u);
}

TEST(PlainNumber, NumberAtTheEndOfAnAreaIsTaken) {
  for (const char* const end : {"", " ", "\n5"}) {
    PiecewiseBuffer text(std::string("12") + end, 2, Seeking::Telling);
    text.sgetc();
    std::istream input(&text);
    EXPECT_EQ(readPlainNumber(input, kLargest), 12u);
    EXPECT_TRUE(input.good());
  }
}

TEST(PlainNumber, StreamThatCannotGoBackFails) {
  PiecewiseBuffer text("1234\n", 2, Seeking::Telling);
  text.sgetc();
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_TRUE(input.fail());
}

TEST(PlainNumber, FailedStreamIsNotRead) {
  std::istringstream input("5");
  input.setstate(std::ios_base::eofbit);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_EQ(input.rdbuf()->sgetc(), '5');
}

}  // namespace
