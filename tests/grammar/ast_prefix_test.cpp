// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_prefix.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/doubles.h"
#include "tests/kit/piecewise_buffer.h"

namespace {

// AstRootOrder tests which child takes a line, AstParamParse how a name is read.
class AstPrefixParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }

  // What a group `grp` with a number makes of a line: a match, none, or the exception's text.
  static std::string numbered(const std::string& text) {
    uint8_t port = 0;
    const auto node = numberedGroup("grp", 0, {param("port", &port)});
    try {
      return node->parse(*stream(text)) ? "match" : "no match";
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
  }

  uint8_t first = 0;
  uint8_t second = 0;
};

INSTANTIATE_TEST_SUITE_P(Streams, AstPrefixParse, kAllStreams);

TEST_P(AstPrefixParse, NameAndDotLeadToTheChildren) {
  const auto node = group("ch5", {param("port", &first)});
  EXPECT_TRUE(node->parse(*stream("ch5.port=7")));
  EXPECT_EQ(printed(*node), "ch5\nport = 7 (0x7)");
  EXPECT_LOG();
}

TEST_P(AstPrefixParse, NothingElseMatches) {
  const auto node = group("ch5", {param("port", &first)});
  for (const char* text : {"", "c", "ch", "ch5", "ch5.", "ch5port=7", "ch5,port=7", "ch5 .port=7",
                           "ch5. port=7", " ch5.port=7", "ch9.port=7", "CH5.port=7", "ch5..port=7",
                           "ch55.port=7", "ch50.port=7", "ch5.ports=7", "ch5.port", "ch5.port7"}) {
    EXPECT_FALSE(node->parse(*stream(text))) << text;
  }
  EXPECT_EQ(missingIn(*node), (Names{"ch5.port"}));
  EXPECT_LOG();
}

TEST_P(AstPrefixParse, GroupWithoutChildrenTakesNothing) {
  EXPECT_FALSE(group("ch5", {})->parse(*stream("ch5.port=7")));
  EXPECT_FALSE(group("ch5", {})->parse(*stream("ch5.")));
}

TEST_P(AstPrefixParse, StreamStandsAtTheChildrenOrAfterTheValue) {
  const auto node = group("g", {param("a_name_longer_than_the_line", &first), param("c", &second)});
  for (const char* text : {"g.ab=1", "g.b=1"}) {
    const auto input = stream(text);
    EXPECT_FALSE(node->parse(*input));
    EXPECT_TRUE(input->good());
    EXPECT_EQ(input->get(), text[2]);
  }
  const auto input = stream("g.c=1 x");
  EXPECT_TRUE(node->parse(*input));
  EXPECT_EQ(input->get(), ' ');
}

TEST_P(AstPrefixParse, AnyDecimalNumberFrom0To255FollowsTheNameOfAGroupWithAnId) {
  for (const char* number :
       {"0", "1", "7", "12", "254", "255", "00", "08", "09", "0255", "+7", " 7", "\t7"}) {
    EXPECT_EQ(numbered("grp" + std::string(number) + ".port=1"), "match") << number;
  }
  for (const char* text : {"grp7", "grp7port=1", "grp7 .port=1", "grp7,port=1", "grp7=1",
                           "grp0x7.port=1", "grp1f.port=1"}) {
    EXPECT_EQ(numbered(text), "no match") << text;
  }
  EXPECT_LOG();
}

TEST_P(AstPrefixParse, GroupWithAnIdNeedsANumber) {
  for (const char* number : {"", ".", "x", "-", " ", "256", "257", "0377", "0400", "65535", "65536",
                             "65537", "4294967296", "4294967297", "18446744073709551617", "-1"}) {
    for (const char* rest : {".port=1", ""}) {
      EXPECT_EQ(numbered("grp" + std::string(number) + rest), "Expected value") << number;
      EXPECT_LOG(error("Expected Value")) << number;
    }
  }
}

TEST_P(AstPrefixParse, BaseOfTheStreamDoesNotMatter) {
  for (const auto base : {std::ios_base::hex, std::ios_base::oct, std::ios_base::fmtflags{}}) {
    const auto input = stream("grp199.port=010");
    input->setf(base, std::ios_base::basefield);
    const auto node = numberedGroup("grp", 0, {param("port", &first)});
    EXPECT_TRUE(node->parse(*input));
    EXPECT_EQ(printed(*node), "grp0\nport = 8 (0x8)");
    const auto large = stream("grp0300.port=1");
    large->setf(base, std::ios_base::basefield);
    EXPECT_THROW(node->parse(*large), std::invalid_argument);
  }
}

TEST_P(AstPrefixParse, ExceptionOfAChildPasses) {
  const auto node = group("g", {param("a", &first), param("a", &second)});
  EXPECT_THROW(node->parse(*stream("g.a=256")), std::invalid_argument);
  EXPECT_LOG(error("Unexpected_value\n"));
  EXPECT_EQ(missingIn(*node), (Names{"g.a", "g.a"}));
}

TEST(AstPrefixParseOneWay, NoOtherChildReadsFromWhereTheFirstOneStopped) {
  uint8_t target = 0;
  const auto node = group("g", {param("aa", &target), param("ab", &target)});
  PiecewiseBuffer text("g.abab=1", 1, Seeking::Nothing);
  std::istream input(&text);
  EXPECT_FALSE(node->parse(input));
  EXPECT_EQ(missingIn(*node), (Names{"g.aa", "g.ab"}));
}

void parseLines(AstPrefix& node, const Names& lines) {
  for (const std::string& line : lines) EXPECT_TRUE(parse(node, line)) << line;
}

TEST(AstPrefixPrint, LineOfItsOwnHasDepthNameAndNumber) {
  EXPECT_EQ(printed(AstPrefix("ch5", std::nullopt, 2, {}, 10)), "  ch5");
  EXPECT_EQ(printed(AstPrefix("grp", 255, 1, {}, 10)), " grp255");
  EXPECT_EQ(printed(AstPrefix("", std::nullopt, 0, {}, 10)), "");
}

TEST(AstPrefixPrint, ChildrenFollowOnLinesOfTheirOwn) {
  uint8_t byte = 0;
  uint32_t whole = 0;
  std::string word;
  const auto node = numberedGroup("grp", 0,
                                  {param("a", &byte, {}, 1), param("b", &whole, {}, 1),
                                   numberedGroup("inner", 200, {param("c", &byte, {}, 2)}),
                                   param("d", &word, {}, 1), param("e", &word, {}, 1)});
  parseLines(*node, {"grp0.a=26", "grp1.b=0xabcdef", "grp2.d=ant0"});
  EXPECT_EQ(printed(*node),
            "grp0\n"
            " a = 26 (0x1a)\n"
            " b = 11259375 (0xabcdef)\n"
            "inner200\n"  // In decimal, after a hexadecimal value.
            "  c = <undefined>\n"
            " d = ant0\n"
            " e = <undefined>");
}

TEST(AstPrefixValidate, NamesOfGroupsLeadToEveryMissingParameter) {
  uint8_t target = 0;
  const auto node = group("g", {numberedGroup("grp", 0, {param("a", &target)}), param("b", &target),
                                numberedGroup("grp", 1, {param("a", &target)}),
                                group("h", {group("i", {param("c", &target)})})});
  EXPECT_EQ(missingIn(*node), (Names{"g.grp.a", "g.b", "g.grp.a", "g.h.i.c"}));
  parseLines(*node, {"g.h.i.c=1", "g.grp0.a=1"});
  Names missing = {"earlier"};
  EXPECT_FALSE(node->validate(missing, {"ant0"}));
  EXPECT_EQ(missing, (Names{"earlier", "ant0.g.b", "ant0.g.grp.a"}));
}

TEST(AstPrefixValidate, CompleteOrEmptyGroupLacksNothing) {
  uint8_t target = 0;
  const auto node = group("g", {param("a", &target)});
  parseLines(*node, {"g.a=1"});
  Names missing;
  EXPECT_TRUE(node->validate(missing, {}));
  EXPECT_TRUE(group("g", {})->validate(missing, {}));
  EXPECT_EQ(missing, Names());
}

TEST(AstPrefixToBuffer, ReachesEveryChild) {
  uint16_t half = 0;
  uint32_t whole = 0;
  uint8_t untouched = 9;
  const auto node =
      group("g", {param("a", &half), group("h", {param("b", &whole)}), param("c", &untouched)});
  parseLines(*node, {"g.a=0x1122", "g.h.b=0x11223344"});
  node->toBuffer(kNoConversion);
  EXPECT_EQ(half, 0x1122);
  EXPECT_EQ(whole, 0x11223344U);
  node->toBuffer(kSwapBytes);
  EXPECT_EQ(half, 0x2211);
  EXPECT_EQ(whole, 0x44332211U);
  EXPECT_EQ(untouched, 9);
}

TEST(AstPrefixSerialize, TagThenIdThenChildren) {
  uint16_t half = 0;
  uint8_t byte = 0;
  for (const auto id : {std::optional<uint8_t>(7), std::optional<uint8_t>()}) {
    AstPrefix node("g", id, 0, {param("a", &half, 3), param("b", &byte)}, 10);
    const Bytes head = id.has_value() ? Bytes{10, 7, 3} : Bytes{10, 3};
    Bytes out = {0xEE};
    takeLog();
    EXPECT_EQ(node.serialize(out, kSwapBytes), head.size());
    EXPECT_EQ(out, joined({{0xEE}, head}));
    EXPECT_LOG(info("AstPrefix::serialize() g " + std::to_string(head.size()) + "\n"));
    const std::string number = id.has_value() ? "7" : "";
    parseLines(node, {"g" + number + ".a=0x1122", "g" + number + ".b=0x33"});
    for (const auto conversion : {kSwapBytes, kNoConversion, kNeither}) {
      const auto order = conversion == kSwapBytes ? inReversedHostOrder : inHostOrder;
      EXPECT_EQ(serialized(node, conversion), joined({head, order({0x11, 0x22}), {0x33}}));
      EXPECT_LOG(info("AstPrefix::serialize() g " + std::to_string(head.size() + 3) + "\n"));
    }
  }
}

TEST(AstPrefixSerialize, InnerGroupIsLoggedFirst) {
  const auto node = group("outer%s", {numberedGroup("inner", 2, {})});
  takeLog();
  Bytes out;
  EXPECT_EQ(node->serialize(out, kSwapBytes), 3U);
  EXPECT_EQ(out, (Bytes{1, 1, 2}));
  EXPECT_LOG(info("AstPrefix::serialize() inner 2\n"), info("AstPrefix::serialize() outer%s 3\n"));
}

}  // namespace
