// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/doubles.h"
#include "tests/kit/standard_library.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string errorOf(AstNode& node, std::istream& input) {
  try {
    node.parse(input);
    return "no error";
  } catch (const std::invalid_argument& e) {
    return e.what();
  }
}

class AstValueParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }

  template <typename T>
  static void accepts(const std::string& text, const T& expected) {
    AstValue<T> node("", 0);
    EXPECT_TRUE(node.parse(*stream(text))) << '"' << text << '"';
    EXPECT_EQ(node.value, std::optional<T>(expected)) << '"' << text << '"';
    EXPECT_THAT(takeLog(), IsEmpty()) << '"' << text << '"';
  }

  template <typename T>
  static void rejects(const std::string& text) {
    AstValue<T> node("", 0);
    EXPECT_EQ(errorOf(node, *stream(text)), "Unexpected value") << '"' << text << '"';
    EXPECT_EQ(node.value, std::nullopt) << '"' << text << '"';
    EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n"))) << '"' << text << '"';
  }

  // Where the two C++ libraries differ.
  template <typename T>
  static void acceptsUnlessStrict(const std::string& text, const T& expected) {
    if (kNumberMustEndAtItsText) {
      rejects<T>(text);
    } else {
      accepts<T>(text, expected);
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Streams, AstValueParse, kAllStreams);

TEST_P(AstValueParse, EightBitsReachFrom0To255) {
  accepts<uint8_t>("0", 0);
  accepts<uint8_t>("1", 1);
  accepts<uint8_t>("127", 127);
  accepts<uint8_t>("128", 128);
  accepts<uint8_t>("254", 254);
  accepts<uint8_t>("255", 255);
  rejects<uint8_t>("256");
  rejects<uint8_t>("257");
  rejects<uint8_t>("511");
  rejects<uint8_t>("512");
  rejects<uint8_t>("65535");
  rejects<uint8_t>("65536");
  rejects<uint8_t>("65537");
  rejects<uint8_t>("4294967296");
  rejects<uint8_t>("18446744073709551617");
}

TEST_P(AstValueParse, SixteenBitsReachFrom0To65535) {
  accepts<uint16_t>("0", 0);
  accepts<uint16_t>("255", 255);
  accepts<uint16_t>("256", 256);
  accepts<uint16_t>("16400", 16400);
  accepts<uint16_t>("65535", 65535);
  rejects<uint16_t>("65536");
  rejects<uint16_t>("65537");
  rejects<uint16_t>("70000");
  rejects<uint16_t>("4294967295");
  rejects<uint16_t>("4294967296");
  rejects<uint16_t>("18446744073709551617");
}

TEST_P(AstValueParse, ThirtyTwoBitsReachFrom0To4294967295) {
  accepts<uint32_t>("0", 0);
  accepts<uint32_t>("65535", 65535);
  accepts<uint32_t>("65536", 65536);
  accepts<uint32_t>("4294967295", 4294967295);
  rejects<uint32_t>("4294967296");
  rejects<uint32_t>("4294967297");
  rejects<uint32_t>("18446744073709551615");
  rejects<uint32_t>("18446744073709551617");
}

TEST_P(AstValueParse, PrefixTellsHexadecimal) {
  accepts<uint8_t>("0x1F", 31);
  accepts<uint8_t>("0X1f", 31);
  accepts<uint8_t>("0xff", 255);
  accepts<uint8_t>("0x0000ff", 255);
  rejects<uint8_t>("0x100");
  accepts<uint16_t>("0xFFFF", 65535);
  rejects<uint16_t>("0x10000");
  accepts<uint32_t>("0x11223344", 0x11223344);
  accepts<uint32_t>("0xFFFFFFFF", 4294967295);
  rejects<uint32_t>("0x100000000");
  rejects<uint8_t>("0x");
  rejects<uint16_t>("0x ");
  rejects<uint32_t>("0xg");
}

TEST_P(AstValueParse, LeadingZeroTellsOctal) {
  accepts<uint8_t>("010", 8);
  accepts<uint8_t>("00", 0);
  accepts<uint8_t>("0377", 255);
  rejects<uint8_t>("0400");
  accepts<uint16_t>("010", 8);
  accepts<uint16_t>("0177777", 65535);
  rejects<uint16_t>("0200000");
  accepts<uint32_t>("010", 8);
  accepts<uint32_t>("037777777777", 4294967295);
  rejects<uint32_t>("040000000000");
}

TEST_P(AstValueParse, SignIsPartOfANumber) {
  accepts<uint8_t>("+5", 5);
  accepts<uint16_t>("+0x10", 16);
  accepts<uint16_t>("-1", 65535);
  accepts<uint16_t>("-65535", 1);
  rejects<uint16_t>("-65536");
  accepts<uint32_t>("-1", 4294967295);
  accepts<uint32_t>("-4294967295", 1);
  rejects<uint32_t>("-4294967296");
}

// An 8-bit number is extracted as one of 16 bits, so a sign wraps at 65536.
TEST_P(AstValueParse, NegativeEightBitNumberWrapsAt65536) {
  rejects<uint8_t>("-1");
  rejects<uint8_t>("-255");
  rejects<uint8_t>("-65280");
  accepts<uint8_t>("-65281", 255);
  accepts<uint8_t>("-65535", 1);
}

TEST_P(AstValueParse, WhatIsNoNumberIsRejected) {
  for (const char* text : {"", " ", "\t \r", "x", "#5", "//5", ";5", "=5", ".5", "-", "+", "- 5",
                           "+-5", "--5", "ant0", "[CCC]5"}) {
    rejects<uint8_t>(text);
    rejects<uint16_t>(text);
    rejects<uint32_t>(text);
  }
}

TEST_P(AstValueParse, TextAfterANumberIsNotLookedAt) {
  for (const char* rest : {" ", "\r", "\t9", " 9", "//note", "// note", "#", " # 256", ";note", "g",
                           ",000", ".5", "+1", "-1", "=", "[CCC]", "_", "\x80"}) {
    accepts<uint8_t>(std::string("12") + rest, 12);
    accepts<uint16_t>(std::string("0x12") + rest, 18);
    accepts<uint32_t>(std::string("012") + rest, 10);
  }
}

TEST_P(AstValueParse, CharactersOfAnotherBaseFollowThePlatform) {
  acceptsUnlessStrict<uint8_t>("08", 0);
  acceptsUnlessStrict<uint8_t>("019", 1);
  acceptsUnlessStrict<uint8_t>("12abc", 12);
  acceptsUnlessStrict<uint8_t>("1e5", 1);
  acceptsUnlessStrict<uint16_t>("08", 0);
  acceptsUnlessStrict<uint16_t>("12abc", 12);
  acceptsUnlessStrict<uint16_t>("1e5", 1);
  acceptsUnlessStrict<uint32_t>("08", 0);
  acceptsUnlessStrict<uint32_t>("12abc", 12);
  acceptsUnlessStrict<uint32_t>("1e5", 1);
  acceptsUnlessStrict<uint32_t>("1x", 1);
}

TEST_P(AstValueParse, NulEndsANumberLikeAnyOtherCharacter) {
  accepts<uint8_t>(std::string("1\0002", 3), 1);
  rejects<uint8_t>(std::string("\0001", 2));
}

TEST_P(AstValueParse, WhiteSpaceBeforeAValueIsSkipped) {
  for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r", " \t  "}) {
    accepts<uint8_t>(blank + std::string("7"), 7);
    accepts<uint16_t>(blank + std::string("0x7"), 7);
    accepts<uint32_t>(blank + std::string("07"), 7);
    accepts<std::string>(blank + std::string("seven"), "seven");
  }
  for (const char* other : {"\x08", "\x0e", "\x1f", "\xa0"}) {
    rejects<uint8_t>(other + std::string("7"));
    accepts<std::string>(other + std::string("7"), other + std::string("7"));
  }
}

TEST_P(AstValueParse, WordRunsToTheNextWhiteSpace) {
  accepts<std::string>("A1 B2", "A1");
  for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r"}) {
    accepts<std::string>(std::string("ant0") + blank + "spare", "ant0");
  }
  accepts<std::string>("ant0//x", "ant0//x");
  accepts<std::string>("#1;2=3[CCC]", "#1;2=3[CCC]");
  accepts<std::string>("0x10", "0x10");
  accepts<std::string>(std::string("a\0b c", 5), std::string("a\0b", 3));
  accepts<std::string>(std::string(5000, 'a') + " b", std::string(5000, 'a'));
}

TEST_P(AstValueParse, WordIsNeverEmpty) {
  for (const char* text : {"", " ", "\t", "\r", " \v\f "}) rejects<std::string>(text);
}

TEST_P(AstValueParse, StopsBehindTheValue) {
  const auto number = stream("12 34");
  EXPECT_TRUE(AstValue<uint8_t>("", 0).parse(*number));
  EXPECT_EQ(number->get(), ' ');
  const auto hexadecimal = stream("0x12gh");
  EXPECT_TRUE(AstValue<uint32_t>("", 0).parse(*hexadecimal));
  EXPECT_EQ(hexadecimal->get(), 'g');
  const auto word = stream("one two");
  EXPECT_TRUE(AstValue<std::string>("", 0).parse(*word));
  EXPECT_EQ(word->get(), ' ');
}

TEST_P(AstValueParse, ReadsFromTheStreamsPosition) {
  const auto input = stream("12 34");
  AstValue<uint8_t> node("", 0);
  EXPECT_TRUE(node.parse(*input));
  EXPECT_TRUE(node.parse(*input));
  EXPECT_EQ(node.value, 34);
}

TEST_P(AstValueParse, BaseOfTheStreamDoesNotMatter) {
  for (const auto base : {std::ios_base::hex, std::ios_base::oct, std::ios_base::dec}) {
    const auto input = stream("10 0x10 010");
    input->setf(base, std::ios_base::basefield);
    AstValue<uint16_t> node("", 0);
    EXPECT_TRUE(node.parse(*input));
    EXPECT_EQ(node.value, 10);
    EXPECT_EQ(input->flags() & std::ios_base::basefield, std::ios_base::fmtflags{});
    EXPECT_TRUE(node.parse(*input));
    EXPECT_EQ(node.value, 16);
    EXPECT_TRUE(node.parse(*input));
    EXPECT_EQ(node.value, 8);
  }
}

TEST_P(AstValueParse, LaterValueOverwritesAnEarlierOne) {
  AstValue<uint32_t> number("", 0);
  EXPECT_TRUE(number.parse(*stream("5")));
  EXPECT_TRUE(number.parse(*stream("6")));
  EXPECT_EQ(number.value, 6U);
  AstValue<std::string> word("", 0);
  EXPECT_TRUE(word.parse(*stream("a_long_name_of_an_antenna")));
  EXPECT_TRUE(word.parse(*stream("b")));
  EXPECT_EQ(word.value, "b");
}

TEST_P(AstValueParse, BadValueLeavesAnEarlierOne) {
  AstValue<uint8_t> number("", 0);
  EXPECT_TRUE(number.parse(*stream("5")));
  EXPECT_THROW(number.parse(*stream("256")), std::invalid_argument);
  EXPECT_EQ(number.value, 5);
  AstValue<std::string> word("", 0);
  EXPECT_TRUE(word.parse(*stream("a")));
  EXPECT_THROW(word.parse(*stream(" ")), std::invalid_argument);
  EXPECT_EQ(word.value, "a");
}

TEST_P(AstValueParse, FailedStreamHasNoValue) {
  const auto input = stream("5");
  input->setstate(std::ios_base::failbit);
  AstValue<uint8_t> node("", 0);
  EXPECT_EQ(errorOf(node, *input), "Unexpected value");
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n")));
}

template <typename T>
AstValue<T>& filled(AstValue<T>& node, const T& value) {
  node.value = value;
  return node;
}

template <typename T>
std::string printedValue(const T& value) {
  AstValue<T> node("", 0);
  return printed(filled(node, value));
}

TEST(AstValueParseWithoutBuffer, HasNoValue) {
  std::istream input(nullptr);
  EXPECT_THROW(AstValue<uint8_t>("", 0).parse(input), std::invalid_argument);
  EXPECT_THROW(AstValue<std::string>("", 0).parse(input), std::invalid_argument);
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n"), error("Unexpected_value\n")));
}

TEST(AstValuePrint, NoValueIsUndefined) {
  EXPECT_EQ(printed(AstValue<uint8_t>("", 0)), " = <undefined>");
  EXPECT_EQ(printed(AstValue<uint16_t>("", 0)), " = <undefined>");
  EXPECT_EQ(printed(AstValue<uint32_t>("", 0)), " = <undefined>");
  EXPECT_EQ(printed(AstValue<std::string>("", 0)), " = <undefined>");
}

TEST(AstValuePrint, NumberStandsInBothBases) {
  EXPECT_EQ(printedValue<uint8_t>(0), " = 0 (0x0)");
  EXPECT_EQ(printedValue<uint8_t>(26), " = 26 (0x1a)");
  EXPECT_EQ(printedValue<uint8_t>(255), " = 255 (0xff)");
  EXPECT_EQ(printedValue<uint16_t>(10), " = 10 (0xa)");
  EXPECT_EQ(printedValue<uint16_t>(65535), " = 65535 (0xffff)");
  EXPECT_EQ(printedValue<uint32_t>(256), " = 256 (0x100)");
  EXPECT_EQ(printedValue<uint32_t>(4294967295), " = 4294967295 (0xffffffff)");
}

TEST(AstValuePrint, EightBitsAreNeverACharacter) {
  EXPECT_EQ(printedValue<uint8_t>('A'), " = 65 (0x41)");
}

TEST(AstValuePrint, WordStandsAsItIs) {
  EXPECT_EQ(printedValue<std::string>("ant0"), " = ant0");
  EXPECT_EQ(printedValue<std::string>(""), " = ");
}

TEST(AstValuePrint, NumberLeavesTheStreamInHexadecimal) {
  std::ostringstream out;
  AstValue<uint8_t> node("", 0);
  filled(node, uint8_t{16}).print(out);
  EXPECT_EQ(out.flags() & std::ios_base::basefield, std::ios_base::hex);
  node.print(out);
  EXPECT_EQ(out.str(), " = 16 (0x10) = 16 (0x10)");
}

TEST(AstValuePrint, WordAndNoValueLeaveTheStreamAsItIs) {
  std::ostringstream out;
  out << std::oct;
  AstValue<std::string> word("", 0);
  filled<std::string>(word, "ant0").print(out);
  AstValue<uint8_t>("", 0).print(out);
  EXPECT_EQ(out.flags() & std::ios_base::basefield, std::ios_base::oct);
}

template <typename T>
Bytes serializedValue(const T& value, EndiannessConversion conversion) {
  AstValue<T> node("", 0);
  return serialized(filled(node, value), conversion);
}

TEST(AstValueSerialize, NoValueHasNoBytes) {
  for (const auto conversion : {kNoConversion, kSwapBytes, kNeither}) {
    Bytes out = {0xEE};
    EXPECT_EQ(AstValue<uint8_t>("", 0).serialize(out, conversion), 0U);
    EXPECT_EQ(AstValue<uint16_t>("", 0).serialize(out, conversion), 0U);
    EXPECT_EQ(AstValue<uint32_t>("", 0).serialize(out, conversion), 0U);
    EXPECT_EQ(AstValue<std::string>("", 0).serialize(out, conversion), 0U);
    EXPECT_EQ(out, Bytes{0xEE});
  }
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(AstValueSerialize, NumbersAreAppendedInTheirWidth) {
  Bytes out = {0xEE};
  AstValue<uint8_t> byte("", 0);
  AstValue<uint16_t> half("", 0);
  AstValue<uint32_t> whole("", 0);
  EXPECT_EQ(filled(byte, uint8_t{0x11}).serialize(out, kSwapBytes), 1U);
  EXPECT_EQ(filled(half, uint16_t{0x2233}).serialize(out, kSwapBytes), 2U);
  EXPECT_EQ(filled(whole, uint32_t{0x44556677}).serialize(out, kSwapBytes), 4U);
  EXPECT_EQ(out, joined({{0xEE},
                         {0x11},
                         inReversedHostOrder({0x22, 0x33}),
                         inReversedHostOrder({0x44, 0x55, 0x66, 0x77})}));
}

TEST(AstValueSerialize, OnlySwapBytesReverses) {
  EXPECT_EQ(serializedValue<uint8_t>(0x11, kNoConversion), Bytes{0x11});
  EXPECT_EQ(serializedValue<uint8_t>(0x11, kSwapBytes), Bytes{0x11});
  for (const auto conversion : {kNoConversion, kNeither}) {
    EXPECT_EQ(serializedValue<uint16_t>(0x2233, conversion), inHostOrder({0x22, 0x33}));
    EXPECT_EQ(serializedValue<uint32_t>(0x44556677, conversion),
              inHostOrder({0x44, 0x55, 0x66, 0x77}));
  }
}

TEST(AstValueSerialize, WordIsWrittenAsTheStringObject) {
  AstValue<std::string> node("", 0);
  filled<std::string>(node, "ant0");
  Bytes object(sizeof(std::string));
  std::memcpy(object.data(), static_cast<const void*>(&*node.value), object.size());
  EXPECT_EQ(serialized(node, kNoConversion), object);
  EXPECT_EQ(serialized(node, kNeither), object);
  EXPECT_EQ(serialized(node, kSwapBytes), Bytes(object.rbegin(), object.rend()));
}

TEST(AstValue, IsNeitherMissingNorWritten) {
  AstValue<uint8_t> node("", 0);
  Names missing;
  EXPECT_TRUE(node.validate(missing, {"group"}));
  EXPECT_THAT(missing, IsEmpty());
  node.toBuffer(kSwapBytes);
  EXPECT_EQ(node.value, std::nullopt);
}

}  // namespace
