// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_param.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/doubles.h"

namespace {

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
  EXPECT_LOG();
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
  EXPECT_EQ(missingIn(*node), (Names{"xtal_trim"}));
  EXPECT_LOG();
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
  EXPECT_LOG(error("Unexpected_value\n"));
  EXPECT_THROW(node->parse(*stream("xtal_trim=")), std::invalid_argument);
  EXPECT_LOG(error("Unexpected_value\n"));
  EXPECT_TRUE(node->parse(*stream("xtal_trim=255")));
  EXPECT_LOG();
}

TEST_P(AstParamParse, IdPlaysNoPart) {
  uint8_t target = 0;
  const auto node = param("port", &target, 7);
  EXPECT_FALSE(node->parse(*stream("port7=1")));
  EXPECT_TRUE(node->parse(*stream("port=1")));
}

// What lies in a field of type T before its line is read, and after it without and with a swap.
template <typename T>
void expectWrittenByToBufferOnly(const char* line, const T& before, const T& kept,
                                 const T& swapped) {
  T target = before;
  const auto node = param("a", &target);
  for (const auto conversion : {kNoConversion, kSwapBytes}) node->toBuffer(conversion);
  EXPECT_EQ(missingIn(*node), Names{"a"});
  EXPECT_TRUE(parse(*node, line));
  EXPECT_EQ(target, before);
  node->toBuffer(kNoConversion);
  EXPECT_EQ(target, kept);
  for (const auto conversion : {kSwapBytes, kNeither, kSwapBytes}) {
    target = before;
    node->toBuffer(conversion);
    EXPECT_EQ(target, swapped);
  }
  Names missing;
  EXPECT_TRUE(node->validate(missing, {"group"}));
  EXPECT_EQ(missing, Names());
}

TEST(AstParam, ValueIsWrittenByToBufferOnly) {
  expectWrittenByToBufferOnly<uint8_t>("a=0x12", 1, 0x12, 0x12);
  expectWrittenByToBufferOnly<uint16_t>("a=0x1234", 2, 0x1234, 0x3412);
  expectWrittenByToBufferOnly<uint32_t>("a=0x12345678", 3, 0x12345678, 0x78563412);
  expectWrittenByToBufferOnly<std::string>("a=ant0 spare", "four", "ant0", "ant0");
}

template <typename T>
void expectNeitherMissingNorWritten() {
  const auto node = param<T>("a", nullptr);
  Names missing;
  EXPECT_TRUE(node->validate(missing, {}));
  EXPECT_EQ(missing, Names());
  EXPECT_TRUE(parse(*node, "a=7"));
  node->toBuffer(kSwapBytes);
  EXPECT_EQ(printed(*node).rfind("a = 7", 0), 0U);
}

TEST(AstParam, WithoutATargetIsNeitherMissingNorWritten) {
  expectNeitherMissingNorWritten<uint8_t>();
  expectNeitherMissingNorWritten<uint16_t>();
  expectNeitherMissingNorWritten<uint32_t>();
  expectNeitherMissingNorWritten<std::string>();
}

TEST(AstParam, MissingNameFollowsItsGroups) {
  uint32_t target = 0;
  const auto node = param("tx_power", &target);
  Names missing = {"earlier"};
  for (const Names& path : {Names{}, Names{"ch5"}, Names{"ch5", "prf64"}, Names{"", ""}}) {
    EXPECT_FALSE(node->validate(missing, path));
  }
  EXPECT_EQ(missing,
            (Names{"earlier", "tx_power", "ch5.tx_power", "ch5.prf64.tx_power", "..tx_power"}));
}

TEST(AstParam, PrintsItsValueAfterItsNameAndDepth) {
  uint8_t target = 0;
  const auto node = param("port", &target, 254, 2);
  EXPECT_EQ(printed(*node), "  port = <undefined>");
  parse(*node, "port=26");
  EXPECT_EQ(printed(*node), "  port = 26 (0x1a)");
}

TEST(AstParam, SerializesItsIdAndItsValue) {
  uint32_t target = 0;
  takeLog();
  for (const auto id : {std::optional<uint8_t>(253), std::optional<uint8_t>()}) {
    const auto node = param("a", &target, id);
    const Bytes tag = id.has_value() ? Bytes{253} : Bytes();
    Bytes out = {0xEE};
    EXPECT_EQ(node->serialize(out, kSwapBytes), tag.size());
    EXPECT_EQ(out, joined({{0xEE}, tag}));
    parse(*node, "a=0x11223344");
    EXPECT_EQ(node->serialize(out, kSwapBytes), tag.size() + 4);
    const Bytes number = {0x11, 0x22, 0x33, 0x44};
    EXPECT_EQ(out, joined({{0xEE}, tag, tag, inReversedHostOrder(number)}));
    EXPECT_EQ(serialized(*node, kNoConversion), joined({tag, inHostOrder(number)}));
  }
  EXPECT_LOG();
}

}  // namespace
