// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_param.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/doubles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AstParamParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }
};

INSTANTIATE_TEST_SUITE_P(Streams, AstParamParse, kAllStreams);

TEST_P(AstParamParse, ValueFollowsTheName) {
  uint8_t target = 0;
  const auto node = param("xtal_trim", &target);
  EXPECT_TRUE(node->parse(*stream("xtal_trim=31 rest")));
  node->toBuffer(kNoConversion);
  EXPECT_EQ(target, 31);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstParamParse, NothingMatchesOnAFailedStream) {
  uint8_t target = 0;
  const auto node = param("xtal_trim", &target);
  const auto input = stream("xtal_trim=31");
  input->setstate(std::ios_base::failbit);
  EXPECT_FALSE(node->parse(*input));
  input->clear();
  EXPECT_TRUE(node->parse(*input)) << "the failed stream was read from";
}

TEST_P(AstParamParse, NothingElseMatches) {
  uint8_t target = 0;
  const auto node = param("xtal_trim", &target);
  for (const char* text : {"", "x", "xtal_tri", "xtal_trim", "xtal_trim 5", "xtal_trim =5",
                           "xtal_trim\t=5", " xtal_trim=5", "\rxtal_trim=5", "xtal_trims=5",
                           "Xtal_trim=5", "xtal_trim:5", "=5", "xtal_trix=5", "axtal_trim=5"}) {
    EXPECT_FALSE(node->parse(*stream(text))) << text;
  }
  EXPECT_THAT(missingIn(*node), ElementsAre("xtal_trim"));
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstParamParse, ReadsAsManyCharactersAsItsName) {
  const auto input = stream("abcxtal");
  const auto other = param<uint8_t>("xyz", nullptr);
  EXPECT_FALSE(other->parse(*input));
  EXPECT_EQ(input->get(), 'x');
}

TEST_P(AstParamParse, NameMayBeEmpty) {
  uint8_t target = 0;
  const auto node = param("", &target);
  EXPECT_FALSE(node->parse(*stream("a=5")));
  EXPECT_TRUE(node->parse(*stream("=5")));
}

TEST_P(AstParamParse, NulCharactersOfANameMustBeInTheText) {
  const std::string name("key\0\0", 5);
  const auto node = param<uint8_t>(name, nullptr);
  EXPECT_FALSE(node->parse(*stream("key")));
  EXPECT_FALSE(node->parse(*stream(std::string("key\0", 4))));
  EXPECT_FALSE(node->parse(*stream("key=5")));
  EXPECT_TRUE(node->parse(*stream(name + "=5")));
}

TEST_P(AstParamParse, BadValueThrows) {
  uint8_t target = 0;
  const auto node = param("xtal_trim", &target);
  EXPECT_THROW(node->parse(*stream("xtal_trim=256")), std::invalid_argument);
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n")));
  EXPECT_THROW(node->parse(*stream("xtal_trim=")), std::invalid_argument);
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n")));
  EXPECT_TRUE(node->parse(*stream("xtal_trim=255")));
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstParamParse, IdPlaysNoPart) {
  uint8_t target = 0;
  const auto node = param("port", &target, 7);
  EXPECT_FALSE(node->parse(*stream("port7=1")));
  EXPECT_TRUE(node->parse(*stream("port=1")));
}

TEST_P(AstParamParse, TargetIsWrittenByToBufferOnly) {
  uint8_t target = 99;
  const auto node = param("port", &target);
  EXPECT_TRUE(node->parse(*stream("port=1")));
  EXPECT_EQ(target, 99);
  node->toBuffer(kNoConversion);
  EXPECT_EQ(target, 1);
}

template <typename T>
T& read(AstParam<T>& node, const std::string& text, T& target) {
  std::istringstream input(text);
  EXPECT_TRUE(node.parse(input));
  return target;
}

TEST(AstParamToBuffer, NoConversionStoresTheValue) {
  uint8_t byte = 0;
  uint16_t half = 0;
  uint32_t whole = 0;
  const auto a = param("a", &byte);
  const auto b = param("b", &half);
  const auto c = param("c", &whole);
  read(*a, "a=0x12", byte);
  read(*b, "b=0x1234", half);
  read(*c, "c=0x12345678", whole);
  a->toBuffer(kNoConversion);
  b->toBuffer(kNoConversion);
  c->toBuffer(kNoConversion);
  EXPECT_EQ(byte, 0x12);
  EXPECT_EQ(half, 0x1234);
  EXPECT_EQ(whole, 0x12345678U);
}

TEST(AstParamToBuffer, AnyOtherConversionSwapsNumbers) {
  for (const auto conversion : {kSwapBytes, kNeither}) {
    uint8_t byte = 0;
    uint16_t half = 0;
    uint32_t whole = 0;
    const auto a = param("a", &byte);
    const auto b = param("b", &half);
    const auto c = param("c", &whole);
    read(*a, "a=0x12", byte);
    read(*b, "b=0x1234", half);
    read(*c, "c=0x12345678", whole);
    a->toBuffer(conversion);
    b->toBuffer(conversion);
    c->toBuffer(conversion);
    EXPECT_EQ(byte, 0x12);
    EXPECT_EQ(half, 0x3412);
    EXPECT_EQ(whole, 0x78563412U);
  }
}

TEST(AstParamToBuffer, WordIsAssignedUnchanged) {
  for (const auto conversion : {kNoConversion, kSwapBytes, kNeither}) {
    std::string target = "earlier";
    const auto node = param("name", &target);
    EXPECT_EQ(read(*node, "name=ant0 spare", target), "earlier");
    node->toBuffer(conversion);
    EXPECT_EQ(target, "ant0");
  }
}

TEST(AstParamToBuffer, NoValueLeavesTheField) {
  uint8_t byte = 1;
  uint16_t half = 2;
  uint32_t whole = 3;
  std::string word = "four";
  for (const auto conversion : {kNoConversion, kSwapBytes}) {
    param("a", &byte)->toBuffer(conversion);
    param("b", &half)->toBuffer(conversion);
    param("c", &whole)->toBuffer(conversion);
    param("d", &word)->toBuffer(conversion);
  }
  EXPECT_EQ(byte, 1);
  EXPECT_EQ(half, 2);
  EXPECT_EQ(whole, 3U);
  EXPECT_EQ(word, "four");
}

TEST(AstParamToBuffer, NoTargetIsNotWritten) {
  const auto number = param<uint32_t>("a", nullptr);
  const auto word = param<std::string>("a", nullptr);
  std::istringstream one("a=1");
  std::istringstream two("a=2");
  EXPECT_TRUE(number->parse(one));
  EXPECT_TRUE(word->parse(two));
  number->toBuffer(kSwapBytes);
  word->toBuffer(kSwapBytes);
  EXPECT_EQ(printed(*number), "a = 1 (0x1)");
  EXPECT_EQ(printed(*word), "a = 2");
}

TEST(AstParamToBuffer, CanBeRepeated) {
  uint16_t target = 0;
  const auto node = param("a", &target);
  read(*node, "a=0x1234", target);
  node->toBuffer(kSwapBytes);
  node->toBuffer(kSwapBytes);
  EXPECT_EQ(target, 0x3412);
}

TEST(AstParamValidate, MissingNameIsBareAtTheRoot) {
  uint8_t target = 0;
  const auto node = param("port", &target);
  Names missing;
  EXPECT_FALSE(node->validate(missing, {}));
  EXPECT_THAT(missing, ElementsAre("port"));
}

TEST(AstParamValidate, MissingNameFollowsItsGroups) {
  uint32_t target = 0;
  const auto node = param("tx_power", &target);
  Names missing = {"earlier"};
  EXPECT_FALSE(node->validate(missing, {"ch5"}));
  EXPECT_FALSE(node->validate(missing, {"ch5", "prf64"}));
  EXPECT_FALSE(node->validate(missing, {"", ""}));
  EXPECT_THAT(missing, ElementsAre("earlier", "ch5.tx_power", "ch5.prf64.tx_power", "..tx_power"));
}

TEST(AstParamValidate, EveryTypeCanBeMissing) {
  uint8_t byte = 0;
  uint16_t half = 0;
  uint32_t whole = 0;
  std::string word;
  EXPECT_THAT(missingIn(*param("a", &byte)), ElementsAre("a"));
  EXPECT_THAT(missingIn(*param("b", &half)), ElementsAre("b"));
  EXPECT_THAT(missingIn(*param("c", &whole)), ElementsAre("c"));
  EXPECT_THAT(missingIn(*param("d", &word)), ElementsAre("d"));
}

TEST(AstParamValidate, ValueIsEnough) {
  uint8_t target = 0;
  const auto node = param("port", &target);
  read(*node, "port=0", target);
  Names missing;
  EXPECT_TRUE(node->validate(missing, {"group"}));
  EXPECT_THAT(missing, IsEmpty());
}

TEST(AstParamValidate, WithoutATargetNothingIsMissing) {
  Names missing;
  EXPECT_TRUE(param<uint8_t>("a", nullptr)->validate(missing, {}));
  EXPECT_TRUE(param<uint16_t>("b", nullptr)->validate(missing, {}));
  EXPECT_TRUE(param<uint32_t>("c", nullptr)->validate(missing, {}));
  EXPECT_TRUE(param<std::string>("d", nullptr)->validate(missing, {}));
  EXPECT_THAT(missing, IsEmpty());
}

TEST(AstParamPrint, ValueFollowsTheNameBehindItsDepth) {
  uint8_t target = 0;
  const auto node = param("port", &target, 254, 2);
  EXPECT_EQ(printed(*node), "  port = <undefined>");
  read(*node, "port=26", target);
  EXPECT_EQ(printed(*node), "  port = 26 (0x1a)");
}

TEST(AstParamSerialize, ValueFollowsTheId) {
  uint32_t target = 0;
  const auto node = param("a", &target, 253);
  read(*node, "a=0x11223344", target);
  Bytes out = {0xEE};
  EXPECT_EQ(node->serialize(out, kSwapBytes), 5U);
  EXPECT_EQ(out, joined({{0xEE}, {253}, inReversedHostOrder({0x11, 0x22, 0x33, 0x44})}));
  EXPECT_EQ(serialized(*node, kNoConversion),
            joined({{253}, inHostOrder({0x11, 0x22, 0x33, 0x44})}));
}

TEST(AstParamSerialize, WithoutAnIdTheValueStandsAlone) {
  uint8_t target = 0;
  const auto node = param("a", &target);
  read(*node, "a=7", target);
  Bytes out;
  EXPECT_EQ(node->serialize(out, kSwapBytes), 1U);
  EXPECT_EQ(out, Bytes{7});
}

TEST(AstParamSerialize, WithoutAValueTheIdStandsAlone) {
  uint8_t target = 0;
  Bytes out;
  EXPECT_EQ(param("a", &target, 0)->serialize(out, kSwapBytes), 1U);
  EXPECT_EQ(out, Bytes{0});
  EXPECT_EQ(param("a", &target)->serialize(out, kSwapBytes), 0U);
  EXPECT_EQ(out, Bytes{0});
  EXPECT_THAT(takeLog(), IsEmpty());
}

}  // namespace
