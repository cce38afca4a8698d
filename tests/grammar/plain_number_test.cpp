// SPDX-License-Identifier: Apache-2.0
#include "grammar/plain_number.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "grammar/text_stream.h"
#include "tests/kit/one_way_buffer.h"

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

TEST(PlainNumber, PlainSpellingsAreTaken) {
  EXPECT_EQ(plain("0").value, 0u);
  EXPECT_EQ(plain("7").value, 7u);
  EXPECT_EQ(plain("1234567890").value, std::nullopt);
  EXPECT_EQ(plain("123456789").value, 123456789u);
  EXPECT_EQ(plain("999999999").value, 999999999u);
  EXPECT_EQ(plain("0x1F").value, 0x1Fu);
  EXPECT_EQ(plain("0Xabcdef").value, 0xABCDEFu);
  EXPECT_EQ(plain("0xFFFFFFFF").value, kLargest);
  EXPECT_EQ(plain("0x0").value, 0u);
}

TEST(PlainNumber, EndsAtWhiteSpace) {
  for (const char* const text : {"12 3", "12\t3", "12\n", "12\v", "12\f", "12\r"}) {
    EXPECT_EQ(plain(text).value, 12u);
    EXPECT_EQ(plain(text).end, 2);
  }
  EXPECT_EQ(plain("0 1").value, 0u);
  EXPECT_EQ(plain("0x1F\r").value, 31u);
}

TEST(PlainNumber, EveryDigitIsPlain) {
  uint32_t value = 0;
  for (const char digit : std::string("0123456789abcdef")) {
    EXPECT_EQ(plain(std::string("0x") + digit).value, value++) << digit;
  }
  value = 10;
  for (const char digit : std::string("ABCDEF")) {
    EXPECT_EQ(plain(std::string("0X") + digit).value, value++) << digit;
  }
  EXPECT_EQ(plain("123456789").value, 123456789u);
}

TEST(PlainNumber, OtherSpellingsAreLeftToTheStream) {
  for (const char* const text :
       {"",     " 5",          "+5",    "-5",  "05",          "08",  "00",
        "0x",   "0x 1",        "12abc", "1e5", "5;",          "0;",  "0x5;",
        "0x1g", "0x000000001", "f",     "x1",  "0x123456789", "12=", ".5"}) {
    EXPECT_EQ(plain(text).value, std::nullopt) << text;
    EXPECT_EQ(plain(text).end, 0) << text;
  }
}

TEST(PlainNumber, ANumberAboveTheLargestIsLeftToTheStream) {
  EXPECT_EQ(plain("255", 255).value, 255u);
  EXPECT_EQ(plain("256", 255).value, std::nullopt);
  EXPECT_EQ(plain("256", 255).end, 0);
  EXPECT_EQ(plain("0xffff", 65535).value, 65535u);
  EXPECT_EQ(plain("0x10000", 65535).value, std::nullopt);
}

TEST(PlainNumber, ATextWithoutAWayBackIsNotTouched) {
  OneWayBuffer text("5");
  text.sgetc();
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_TRUE(input.good());
  EXPECT_EQ(text.sgetc(), '5');
}

// Has two characters ready at a time. Tells its position, and goes back only if `seeks`.
class SmallAreas : public std::streambuf {
 public:
  SmallAreas(std::string text, bool seeks) : text(std::move(text)), seeks(seeks) {}

 protected:
  int_type underflow() override {
    begin += egptr() - eback();
    return show(0);
  }
  pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override {
    return begin + (gptr() - eback());
  }
  pos_type seekpos(pos_type place, std::ios_base::openmode) override {
    if (!seeks) return pos_type(off_type(-1));
    begin = place - place % 2;
    show(place % 2);
    return place;
  }

 private:
  int_type show(off_type skipped) {
    char* const first = text.data() + begin;
    setg(first, first + skipped, std::min(first + 2, text.data() + text.size()));
    return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
  }

  std::string text;
  const bool seeks;
  off_type begin = 0;
};

TEST(PlainNumber, ANumberAcrossAreasIsLeftToTheStream) {
  SmallAreas text("1234\n", true);
  text.sgetc();  // The first area is there.
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  uint32_t value = 0;
  EXPECT_TRUE(input >> value);
  EXPECT_EQ(value, 1234u);
}

TEST(PlainNumber, ANumberAtTheEndOfAnAreaIsTaken) {
  for (const char* const end : {"", " ", "\n5"}) {
    SmallAreas text(std::string("12") + end, false);
    text.sgetc();
    std::istream input(&text);
    EXPECT_EQ(readPlainNumber(input, kLargest), 12u);
    EXPECT_TRUE(input.good());
  }
}

TEST(PlainNumber, AStreamThatCannotGoBackFails) {
  SmallAreas text("1234\n", false);
  text.sgetc();
  std::istream input(&text);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_TRUE(input.fail());
}

TEST(PlainNumber, AFailedStreamIsNotRead) {
  std::istringstream input("5");
  input.setstate(std::ios_base::eofbit);
  EXPECT_EQ(readPlainNumber(input, kLargest), std::nullopt);
  EXPECT_EQ(input.rdbuf()->sgetc(), '5');
}

}  // namespace
