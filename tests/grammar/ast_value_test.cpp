// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_value.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/doubles.h"

namespace {

// The C++ libraries differ in one point that a calibration file can show: where a number ends.
//
// libstdc++ stops at the first character that its base does not allow, so `08` is 0 and `12abc` 12.
// libc++ takes all characters that any base allows and then rejects what is no number as a whole.
#ifdef _LIBCPP_VERSION
constexpr bool kNumberMustEndAtItsText = true;
#else
constexpr bool kNumberMustEndAtItsText = false;
#endif

using Number = std::optional<uint32_t>;

constexpr std::nullopt_t kBad = std::nullopt;

// What a node makes of the stream: its value, or nothing after an exception of the right text.
template <typename T>
std::optional<T> read(std::istream& input) {
  AstValue<T> node("", 0);
  try {
    EXPECT_TRUE(node.parse(input));
  } catch (const std::invalid_argument& e) {
    EXPECT_STREQ(e.what(), "Unexpected value");
    EXPECT_EQ(node.value, std::nullopt);
  }
  return node.value;
}

class AstValueParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }

  static Number number(int bits, const std::string& text) {
    if (bits == 8) return read<uint8_t>(*stream(text));
    if (bits == 16) return read<uint16_t>(*stream(text));
    return read<uint32_t>(*stream(text));
  }

  // A bad value is logged, a good one is not.
  static void expectNumber(int bits, const std::string& text, Number expected) {
    EXPECT_EQ(number(bits, text), expected) << bits << " bits of '" << text << "'";
    EXPECT_EQ(takeLog(), expected.has_value() ? Log() : Log{error("Unexpected_value\n")}) << text;
  }

  static void expectWord(const std::string& text, const std::optional<std::string>& expected) {
    EXPECT_EQ(read<std::string>(*stream(text)), expected) << "'" << text << "'";
    EXPECT_EQ(takeLog(), expected.has_value() ? Log() : Log{error("Unexpected_value\n")}) << text;
  }
};

INSTANTIATE_TEST_SUITE_P(Streams, AstValueParse, kAllStreams);

struct NumberRow {
  const char* text;
  Number value;
};

// Decimal, hexadecimal after 0x, octal after 0; a sign is part of a number. An 8-bit number is read
// as one of 16 bits, so it wraps there.
// clang-format off
const NumberRow kNumbersOf8Bits[] = {
    {"0", 0}, {"1", 1}, {"127", 127}, {"128", 128}, {"254", 254}, {"255", 255}, {"256", kBad},
    {"257", kBad}, {"511", kBad}, {"512", kBad}, {"65535", kBad}, {"65536", kBad}, {"65537", kBad},
    {"4294967296", kBad}, {"18446744073709551617", kBad}, {"0x1F", 31}, {"0X1f", 31}, {"0xff", 255},
    {"0x0000ff", 255}, {"0x100", kBad}, {"0x", kBad}, {"010", 8}, {"00", 0}, {"0377", 255},
    {"0400", kBad}, {"+5", 5}, {"-1", kBad}, {"-255", kBad}, {"-65280", kBad}, {"-65281", 255},
    {"-65535", 1}};
const NumberRow kNumbersOf16Bits[] = {
    {"0", 0}, {"255", 255}, {"256", 256}, {"16400", 16400}, {"65535", 65535}, {"65536", kBad},
    {"65537", kBad}, {"70000", kBad}, {"4294967296", kBad}, {"18446744073709551617", kBad},
    {"0xFFFF", 65535}, {"0x10000", kBad}, {"0x ", kBad}, {"010", 8}, {"0177777", 65535},
    {"0200000", kBad}, {"+0x10", 16}, {"-1", 65535}, {"-65535", 1}, {"-65536", kBad}};
const NumberRow kNumbersOf32Bits[] = {
    {"0", 0}, {"65536", 65536}, {"4294967295", 4294967295}, {"4294967296", kBad},
    {"4294967297", kBad}, {"18446744073709551615", kBad}, {"18446744073709551617", kBad},
    {"0x11223344", 0x11223344}, {"0xFFFFFFFF", 4294967295}, {"0x100000000", kBad}, {"0xg", kBad},
    {"010", 8}, {"037777777777", 4294967295}, {"040000000000", kBad}, {"-1", 4294967295},
    {"-4294967295", 1}, {"-4294967296", kBad}};
// clang-format on

TEST_P(AstValueParse, NumbersOfEveryWidthAndBase) {
  for (const NumberRow& row : kNumbersOf8Bits) expectNumber(8, row.text, row.value);
  for (const NumberRow& row : kNumbersOf16Bits) expectNumber(16, row.text, row.value);
  for (const NumberRow& row : kNumbersOf32Bits) expectNumber(32, row.text, row.value);
}

TEST_P(AstValueParse, WhatIsNoNumberIsRejected) {
  for (const char* text : {"", " ", "\t \r", "x", "#5", "//5", ";5", "=5", ".5", "-", "+", "- 5",
                           "+-5", "--5", "ant0", "[CCC]5"}) {
    for (const int bits : {8, 16, 32}) expectNumber(bits, text, kBad);
  }
  expectNumber(8, std::string("\0001", 2), kBad);
}

TEST_P(AstValueParse, TextAfterANumberIsNotLookedAt) {
  for (const char* rest : {" ", "\r", "\t9", " 9", "//note", "// note", "#", " # 256", ";note", "g",
                           ",000", ".5", "+1", "-1", "=", "[CCC]", "_", "\x80"}) {
    expectNumber(8, std::string("12") + rest, 12);
    expectNumber(16, std::string("0x12") + rest, 18);
    expectNumber(32, std::string("012") + rest, 10);
  }
  expectNumber(8, std::string("1\0002", 3), 1);
}

TEST_P(AstValueParse, CharactersOfAnotherBaseFollowThePlatform) {
  const NumberRow rows[] = {{"08", 0}, {"019", 1}, {"12abc", 12}, {"1e5", 1}, {"1x", 1}};
  for (const NumberRow& row : rows) {
    for (const int bits : {8, 16, 32})
      expectNumber(bits, row.text, kNumberMustEndAtItsText ? kBad : row.value);
  }
}

TEST_P(AstValueParse, WhiteSpaceBeforeAValueIsSkipped) {
  for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r", " \t  "}) {
    expectNumber(8, blank + std::string("7"), 7);
    expectNumber(16, blank + std::string("0x7"), 7);
    expectNumber(32, blank + std::string("07"), 7);
    expectWord(blank + std::string("seven"), "seven");
  }
  for (const char* other : {"\x08", "\x0e", "\x1f", "\xa0"}) {
    expectNumber(8, other + std::string("7"), kBad);
    expectWord(other + std::string("7"), other + std::string("7"));
  }
}

TEST_P(AstValueParse, WordRunsToTheNextWhiteSpaceAndIsNeverEmpty) {
  expectWord("A1 B2", "A1");
  for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r"}) {
    expectWord(std::string("ant0") + blank + "spare", "ant0");
    expectWord(blank, kBad);
  }
  for (const char* word : {"ant0//x", "#1;2=3[CCC]", "0x10"}) expectWord(word, word);
  expectWord(std::string("a\0b c", 5), std::string("a\0b", 3));
  expectWord(std::string(5000, 'a') + " b", std::string(5000, 'a'));
  expectWord("", kBad);
  expectWord(" \v\f ", kBad);
}

TEST_P(AstValueParse, ReadsFromTheStreamsPositionToTheEndOfTheValue) {
  const auto input = stream("12 34 0x12gh one two");
  EXPECT_EQ(read<uint8_t>(*input), 12);
  EXPECT_EQ(input->get(), ' ');
  EXPECT_EQ(read<uint8_t>(*input), 34);
  EXPECT_EQ(read<uint32_t>(*input), 0x12U);
  EXPECT_EQ(input->get(), 'g');
  EXPECT_EQ(input->get(), 'h');
  EXPECT_EQ(read<std::string>(*input), "one");
  EXPECT_EQ(input->get(), ' ');
}

TEST_P(AstValueParse, BaseOfTheStreamDoesNotMatter) {
  for (const auto base : {std::ios_base::hex, std::ios_base::oct, std::ios_base::dec}) {
    const auto input = stream("10 0x10 010");
    input->setf(base, std::ios_base::basefield);
    for (const int expected : {10, 16, 8}) {
      EXPECT_EQ(read<uint16_t>(*input), expected);
      EXPECT_EQ(input->flags() & std::ios_base::basefield, std::ios_base::fmtflags{});
    }
  }
}

template <typename T>
void expectLastGoodValue(const std::vector<std::string>& texts, const T& expected) {
  AstValue<T> node("", 0);
  for (const std::string& text : texts) {
    if (text == "bad" || text == " ") {
      EXPECT_THROW(parse(node, text), std::invalid_argument);
    } else {
      EXPECT_TRUE(parse(node, text));
    }
  }
  EXPECT_EQ(node.value, expected);
}

TEST(AstValue, LaterValueOverwritesAnEarlierOneUnlessItIsBad) {
  expectLastGoodValue<uint8_t>({"5", "6", "bad"}, 6);
  expectLastGoodValue<uint16_t>({"5", "6", "bad"}, 6);
  expectLastGoodValue<uint32_t>({"5", "6", "bad"}, 6);
  expectLastGoodValue<std::string>({"a_long_name_of_an_antenna", "b", " "}, "b");
  takeLog();
}

TEST_P(AstValueParse, FailedStreamHasNoValue) {
  const auto input = stream("5");
  input->setstate(std::ios_base::failbit);
  EXPECT_EQ(read<uint8_t>(*input), kBad);
  std::istream none(nullptr);
  EXPECT_EQ(read<uint8_t>(none), kBad);
  EXPECT_EQ(read<std::string>(none), kBad);
  const LogLine bad = error("Unexpected_value\n");
  EXPECT_LOG(bad, bad, bad);
}

template <typename T>
AstValue<T>& filled(AstValue<T>& node, const T& value) {
  node.value = value;
  return node;
}

template <typename T>
std::string printedValue(const T& value) {
  AstValue<T> node("", 0);
  EXPECT_EQ(printed(node), " = <undefined>");
  return printed(filled(node, value));
}

TEST(AstValuePrint, NumberStandsInBothBasesAndAWordAsItIs) {
  EXPECT_EQ(printedValue<uint8_t>(0), " = 0 (0x0)");
  EXPECT_EQ(printedValue<uint8_t>('A'), " = 65 (0x41)");
  EXPECT_EQ(printedValue<uint8_t>(255), " = 255 (0xff)");
  EXPECT_EQ(printedValue<uint16_t>(10), " = 10 (0xa)");
  EXPECT_EQ(printedValue<uint16_t>(65535), " = 65535 (0xffff)");
  EXPECT_EQ(printedValue<uint32_t>(256), " = 256 (0x100)");
  EXPECT_EQ(printedValue<uint32_t>(4294967295), " = 4294967295 (0xffffffff)");
  EXPECT_EQ(printedValue<std::string>("ant0"), " = ant0");
  EXPECT_EQ(printedValue<std::string>(""), " = ");
}

TEST(AstValuePrint, NumberLeavesTheStreamInHexadecimal) {
  std::ostringstream out;
  out << std::oct;
  AstValue<std::string> word("", 0);
  filled<std::string>(word, "ant0").print(out);
  AstValue<uint8_t> node("", 0);
  node.print(out);
  EXPECT_EQ(out.flags() & std::ios_base::basefield, std::ios_base::oct);
  filled(node, uint8_t{16}).print(out);
  EXPECT_EQ(out.flags() & std::ios_base::basefield, std::ios_base::hex);
  node.print(out);
  EXPECT_EQ(out.str(), " = ant0 = <undefined> = 16 (0x10) = 16 (0x10)");
}

// ast_root_test.cpp tests how numbers are written.
TEST(AstValueSerialize, WordIsWrittenAsTheStringObject) {
  AstValue<std::string> node("", 0);
  filled<std::string>(node, "ant0");
  Bytes object(sizeof(std::string));
  std::memcpy(object.data(), static_cast<const void*>(&*node.value), object.size());
  EXPECT_EQ(serialized(node, kNoConversion), object);
  EXPECT_EQ(serialized(node, kNeither), object);
  EXPECT_EQ(serialized(node, kSwapBytes), Bytes(object.rbegin(), object.rend()));
}

}  // namespace
