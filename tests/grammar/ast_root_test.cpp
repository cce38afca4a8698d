// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_root.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/checksums.h"
#include "tests/kit/doubles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The tree of the examples: version, xtal_trim, antenna_selection and ch5.ant_delay.
class AstRootParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }

  void parse(const std::string& text) {
    const auto input = stream(text);
    EXPECT_TRUE(root.parse(*input));
  }

  // The record after the text.
  std::string parsed(const std::string& text) {
    parse(text);
    return printed(root);
  }

  std::string errorOf(const std::string& text) {
    try {
      root.parse(*stream(text));
      return "no error";
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
  }

  uint16_t version = 0;
  uint8_t xtal_trim = 0;
  std::string selection;
  uint16_t ant_delay = 0;
  AstRoot root{
      "",
      std::nullopt,
      0,
      {param("version", &version), param("xtal_trim", &xtal_trim),
       param("antenna_selection", &selection), group("ch5", {param("ant_delay", &ant_delay)})},
      0};
};

INSTANTIATE_TEST_SUITE_P(Streams, AstRootParse, kAllStreams);

constexpr char kNothing[] =
    "\n"
    "version = <undefined>\n"
    "xtal_trim = <undefined>\n"
    "antenna_selection = <undefined>\n"
    "ch5\n"
    "ant_delay = <undefined>";

TEST_P(AstRootParse, EveryKindOfLine) {
  EXPECT_EQ(parsed("version=2\n"
                   "antenna_selection=A1 B2\n"
                   "xtal_trim= 0x1F ; factory trim\n"
                   "ch5.ant_delay=16400\n"
                   "# xtal_trim=3\n"
                   "xtal_trim\n"),
            "\n"
            "version = 2 (0x2)\n"
            "xtal_trim = 31 (0x1f)\n"
            "antenna_selection = A1\n"
            "ch5\n"
            "ant_delay = 16400 (0x4010)");
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: #xtal_trim=3\n")));
}

TEST_P(AstRootParse, EmptyTextStoresNothing) {
  EXPECT_EQ(parsed(""), kNothing);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, LinesWithoutAnEqualSignAreSkipped) {
  EXPECT_EQ(parsed("\n\n \n\r\nxtal_trim\n# note\n// note\n; note\n[CCC]\nxtal_trim 5"), kNothing);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, UnknownKeysAreDropped) {
  EXPECT_EQ(parsed("=\n=5\nxtal=5\nxtal_trims=5\nch5.x=1\nch5=1\nch9.ant_delay=1\nversion.x=1\n"),
            kNothing);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, BlankBeforeTheEqualSignMatchesNothing) {
  EXPECT_EQ(parsed("xtal_trim =5\nxtal_trim\t=5\n xtal_trim=5\nxtal _trim=5\nch5 .ant_delay=1\n"
                   "ch5. ant_delay=1\n\rversion=1"),
            kNothing);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, LastLineNeedsNoLineFeed) {
  parse("version=1\nxtal_trim=5");
  EXPECT_THAT(missingIn(root), ElementsAre("antenna_selection", "ch5.ant_delay"));
}

TEST_P(AstRootParse, CarriageReturnEndsAValueLikeABlank) {
  EXPECT_EQ(parsed("version=2\r\nxtal_trim=7\r\nantenna_selection=ant0\r\nch5.ant_delay=1\r"),
            "\n"
            "version = 2 (0x2)\n"
            "xtal_trim = 7 (0x7)\n"
            "antenna_selection = ant0\n"
            "ch5\n"
            "ant_delay = 1 (0x1)");
}

TEST_P(AstRootParse, ConsumesTheWholeStream) {
  const auto input = stream("version=1\nnothing\n# a=b\n");
  EXPECT_TRUE(root.parse(*input));
  EXPECT_TRUE(input->eof());
}

TEST_P(AstRootParse, StartsAtTheStreamsPosition) {
  const auto input = stream("xxxversion=1");
  input->ignore(3);
  EXPECT_TRUE(root.parse(*input));
  EXPECT_THAT(missingIn(root), ElementsAre("xtal_trim", "antenna_selection", "ch5.ant_delay"));
}

TEST_P(AstRootParse, FailedStreamHasNoLines) {
  const auto input = stream("version=1");
  input->setstate(std::ios_base::failbit);
  EXPECT_TRUE(root.parse(*input));
  EXPECT_EQ(printed(root), kNothing);
}

TEST_P(AstRootParse, MarkerBeforeTheEqualSignMakesAComment) {
  for (const char* line :
       {"//xtal_trim=1", "#xtal_trim=1", ";xtal_trim=1", "xtal_trim//=1", "xtal_trim#=1",
        "xtal_trim;=1", "xtal//_trim=1", "xtal#_trim=1", "xtal;_trim=1", "#=", ";=", "//=", "///=1",
        "#xtal_trim=1#2=3", "a/#=//"}) {
    EXPECT_EQ(parsed(line), kNothing) << line;
    EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: " + std::string(line) + "\n")))
        << line;
  }
}

TEST_P(AstRootParse, CommentReachesNoParameterEvenOfItsName) {
  AstRoot tree("", std::nullopt, 0,
               {param("#a", &xtal_trim), param("//a", &xtal_trim), param(";a", &xtal_trim),
                group("ant#0", {param("a", &xtal_trim)})},
               0);
  EXPECT_TRUE(tree.parse(*stream("#a=1\n//a=1\n;a=1\nant#0.a=1")));
  EXPECT_THAT(missingIn(tree), ElementsAre("#a", "//a", ";a", "ant#0.a"));
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: #a=1\n"),
                                     debug("--------------Ignored: //a=1\n"),
                                     debug("--------------Ignored: ;a=1\n"),
                                     debug("--------------Ignored: ant#0.a=1\n")));
}

TEST_P(AstRootParse, MarkerAfterTheEqualSignMakesNone) {
  for (const char* line : {"xtal_trim=1 // note", "xtal_trim=1//", "xtal_trim=1#", "xtal_trim=1;",
                           "xtal_trim=1 # a=b", "xtal_trim=1 ;=", "xtal_trim=1=//"}) {
    uint8_t trim = 0;
    AstRoot tree("", std::nullopt, 0, {param("xtal_trim", &trim)}, 0);
    EXPECT_TRUE(tree.parse(*stream(line)));
    tree.toBuffer(kNoConversion);
    EXPECT_EQ(trim, 1) << line;
  }
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, MarkerDirectlyAfterTheEqualSignIsTheValue) {
  for (const char* line : {"xtal_trim=//1", "xtal_trim=#1", "xtal_trim=;1"}) {
    EXPECT_EQ(errorOf(line), "Unexpected value") << line;
    EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n"))) << line;
  }
  parse("antenna_selection=#1;//");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(selection, "#1;//");
}

TEST_P(AstRootParse, OneSlashMakesNoComment) {
  EXPECT_EQ(parsed("/xtal_trim=1\nxtal/trim/=1\n/=/\n/=//1"), kNothing);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, CommentsAreFoundAndLoggedWithoutWhiteSpace) {
  parse("/ /x=1\n / \t/ x =\v1 \f2\r\n \t# xtal_trim = 3 ; note\r");
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: //x=1\n"),
                                     debug("--------------Ignored: //x=12\n"),
                                     debug("--------------Ignored: #xtal_trim=3;note\n")));
}

TEST_P(AstRootParse, TwoSlashesMakeACommentBehindSingleOnes) {
  parse("/a/b // c/=1\na/ b / /=2\n");
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: /a/b//c/=1\n"),
                                     debug("--------------Ignored: a/b//=2\n")));
}

TEST_P(AstRootParse, WhiteSpaceIsTheBlankAndControlCharacters9To13) {
  for (const char* blank : {"\t", "\v", "\f", "\r", " "}) {
    parse(std::string("/") + blank + "/=");
    EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: //=\n")));
  }
  for (const char* other : {"\x07", "\x08", "\x0e", "\x1f", "!", "\x7f", "\x85", "\xa0"}) {
    parse(std::string("/") + other + "/=");
    EXPECT_THAT(takeLog(), IsEmpty());
    parse(std::string("#") + other + "=");
    EXPECT_THAT(takeLog(),
                ElementsAre(debug(std::string("--------------Ignored: #") + other + "=\n")));
  }
}

TEST_P(AstRootParse, PercentSignsOfACommentAreLoggedAsTheyStand) {
  parse("# %s%n%d=%%");
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: #%s%n%d=%%\n")));
}

TEST_P(AstRootParse, CccMarkIsRemoved) {
  for (const char* line : {"[CCC]xtal_trim=7", "xtal_[CCC]trim=7", "xtal_trim[CCC]=7",
                           "xtal_trim=[CCC]7", "xtal_trim= [CCC]7", "xtal_trim=7[CCC]"}) {
    AstRoot tree("", std::nullopt, 0, {param("xtal_trim", &xtal_trim)}, 0);
    EXPECT_TRUE(tree.parse(*stream(line)));
    EXPECT_EQ(printed(tree), "\nxtal_trim = 7 (0x7)") << line;
  }
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_P(AstRootParse, CccMarkInsideAValueJoinsIt) {
  parse("xtal_trim=1[CCC]2");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(xtal_trim, 12);
}

TEST_P(AstRootParse, CccMarkIsRemovedOnce) {
  EXPECT_EQ(parsed("[CCC][CCC]xtal_trim=1\n[C[CCC]CC]xtal_trim=1\nxtal[CCC]_[CCC]trim=1"),
            kNothing);
  parse("[CCC]antenna_selection=[CCC]");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(selection, "[CCC]");
}

TEST_P(AstRootParse, BlanksAroundTheCccMarkStay) {
  EXPECT_EQ(parsed("[CCC] xtal_trim=1\n [CCC]xtal_trim=1\nxtal_trim[CCC] =1"), kNothing);
}

TEST_P(AstRootParse, NothingElseIsACccMark) {
  EXPECT_EQ(parsed("[ccc]version=1\n[CCC version=1\nCCC]version=1\n[CC]version=1\n"
                   "[C CC]version=1\n[CCCC]version=1\n(CCC)version=1"),
            kNothing);
}

TEST_P(AstRootParse, CommentsAreFoundBeforeTheCccMarkIsRemoved) {
  AstRoot tree("", std::nullopt, 0, {param("//x", &xtal_trim)}, 0);
  EXPECT_TRUE(tree.parse(*stream("/[CCC]/x=7\n#[CCC]x=7")));
  EXPECT_EQ(printed(tree), "\n//x = 7 (0x7)");
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: #[CCC]x=7\n")));
}

TEST_P(AstRootParse, LimitsOfEightBits) {
  parse("xtal_trim=255");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(xtal_trim, 255);
  EXPECT_EQ(errorOf("xtal_trim=256"), "Unexpected value");
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n")));
}

TEST_P(AstRootParse, LimitsOfSixteenBits) {
  parse("ch5.ant_delay=65535");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(ant_delay, 65535);
  EXPECT_EQ(errorOf("ch5.ant_delay=65536"), "Unexpected value");
  EXPECT_EQ(errorOf("ch5.ant_delay=70000"), "Unexpected value");
}

TEST_P(AstRootParse, LeadingZeroIsOctal) {
  parse("xtal_trim=010");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(xtal_trim, 8);
}

TEST_P(AstRootParse, MissingValueThrowsForNumbersAndWords) {
  for (const char* line : {"xtal_trim=", "xtal_trim= ", "xtal_trim=\r",
                           "antenna_selection=", "antenna_selection= \t", "ch5.ant_delay=\n"}) {
    EXPECT_EQ(errorOf(line), "Unexpected value") << line;
    EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n"))) << line;
  }
}

// A line ends at its line feed: the next line is never a value.
TEST_P(AstRootParse, ValueStandsOnItsLine) {
  EXPECT_EQ(errorOf("xtal_trim=\n5"), "Unexpected value");
}

TEST_P(AstRootParse, ExceptionLeavesTheRestOfTheText) {
  EXPECT_EQ(errorOf("version=1\nxtal_trim=256\nch5.ant_delay=3\n# a=b"), "Unexpected value");
  EXPECT_THAT(missingIn(root), ElementsAre("xtal_trim", "antenna_selection", "ch5.ant_delay"));
  EXPECT_THAT(takeLog(), ElementsAre(error("Unexpected_value\n")));
}

TEST_P(AstRootParse, LaterLineOverwritesAnEarlierOne) {
  parse("xtal_trim=1\nxtal_trim=2");
  parse("version=1");
  parse("version=3");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(xtal_trim, 2);
  EXPECT_EQ(version, 3);
}

TEST_P(AstRootParse, NulIsAnOrdinaryCharacter) {
  EXPECT_EQ(parsed(std::string("xtal_trim\0=5\n\0version=1", 23)), kNothing);
  parse(std::string("antenna_selection=a\0b\nversion=1", 31));
  root.toBuffer(kNoConversion);
  EXPECT_EQ(selection, std::string("a\0b", 3));
  EXPECT_EQ(version, 1);
}

TEST_P(AstRootParse, LongLineIsReadWhole) {
  parse("version=" + std::string(10000, ' ') + "5" + std::string(10000, '#') + "\nxtal_trim=1");
  root.toBuffer(kNoConversion);
  EXPECT_EQ(version, 5);
  EXPECT_EQ(xtal_trim, 1);
}

// Trees in which several children could take a line.
class AstRootOrder : public AstRootParse {
 protected:
  uint8_t first = 0;
  uint8_t second = 0;
};

INSTANTIATE_TEST_SUITE_P(Streams, AstRootOrder, kAllStreams);

TEST_P(AstRootOrder, FirstOfTwoEqualParametersTakesEveryLine) {
  AstRoot tree("", std::nullopt, 0, {param("a", &first), param("a", &second)}, 0);
  EXPECT_TRUE(tree.parse(*stream("a=1\na=2")));
  EXPECT_EQ(printed(tree), "\na = 2 (0x2)\na = <undefined>");
}

TEST_P(AstRootOrder, FirstGroupOfANameTakesTheLineWhateverItsNumber) {
  for (const char* line : {"grp0.a=5", "grp1.a=5", "grp7.a=5", "grp255.a=5"}) {
    AstRoot tree("", std::nullopt, 0,
                 {numberedGroup("grp", 0, {param("a", &first)}),
                  numberedGroup("grp", 1, {param("a", &second)})},
                 0);
    EXPECT_TRUE(tree.parse(*stream(line)));
    EXPECT_EQ(printed(tree), "\ngrp0\na = 5 (0x5)\ngrp1\na = <undefined>") << line;
    AstRoot reversed("", std::nullopt, 0,
                     {numberedGroup("grp", 1, {param("a", &second)}),
                      numberedGroup("grp", 0, {param("a", &first)})},
                     0);
    EXPECT_TRUE(reversed.parse(*stream(line)));
    EXPECT_EQ(printed(reversed), "\ngrp1\na = 5 (0x5)\ngrp0\na = <undefined>") << line;
  }
}

TEST_P(AstRootOrder, SecondGroupOfANameTakesWhatTheFirstRejects) {
  AstRoot tree("", std::nullopt, 0,
               {group("ant", {group("ch5", {param("a", &first)})}),
                group("ant", {group("ch9", {param("a", &second)})})},
               0);
  EXPECT_TRUE(tree.parse(*stream("ant.ch9.a=5")));
  EXPECT_EQ(printed(tree), "\nant\nch5\na = <undefined>\nant\nch9\na = 5 (0x5)");
}

TEST_P(AstRootOrder, ShorterNameIsTriedAfterALongerOne) {
  AstRoot tree("", std::nullopt, 0,
               {param("a_name_that_is_longer_than_the_line", &first), param("a", &second)}, 0);
  EXPECT_TRUE(tree.parse(*stream("a=1")));
  EXPECT_EQ(printed(tree), "\na_name_that_is_longer_than_the_line = <undefined>\na = 1 (0x1)");
}

TEST_P(AstRootOrder, GroupWithoutItsNumberThrowsBeforeALaterChildIsTried) {
  AstRoot tree("", std::nullopt, 0,
               {numberedGroup("grp", 0, {param("a", &first)}), param("grpx", &second)}, 0);
  EXPECT_THROW(tree.parse(*stream("grpx=1")), std::invalid_argument);
  EXPECT_THAT(takeLog(), ElementsAre(error("Expected Value")));
}

TEST_P(AstRootOrder, EveryLineStartsFromAFreshState) {
  AstRoot tree("", std::nullopt, 0,
               {param("v", &first), numberedGroup("grp", 0, {param("a", &second)})}, 0);
  EXPECT_TRUE(tree.parse(*stream("v=0x10\ngrp08.a=1\nv=010\ngrp099.a=2")));
  EXPECT_EQ(printed(tree), "\nv = 8 (0x8)\ngrp0\na = 2 (0x2)");
  EXPECT_THAT(takeLog(), IsEmpty());
  EXPECT_THROW(tree.parse(*stream("v=0x10\ngrp0377.a=3")), std::invalid_argument);
  EXPECT_THAT(takeLog(), ElementsAre(error("Expected Value")));
}

// The first group has read a number and a value's key when it gives up; the second starts anew.
TEST_P(AstRootOrder, WidthAndExceptionsOfOneLineDoNotReachTheNext) {
  // Reads nothing, and leaves the stream as no other node expects it.
  class Careless : public AstNode {
   public:
    Careless() : AstNode("", 0) {}
    bool parse(std::istream& input) override {
      input.width(1);
      input.exceptions(std::ios_base::eofbit);
      return true;
    }
    size_t serialize(std::vector<uint8_t>&, EndiannessConversion) const override { return 0; }
  };
  std::string word;
  AstRoot root("", std::nullopt, 0, {group("a", {std::make_shared<Careless>()}), param("w", &word)},
               0);
  root.parse(*stream("a.=\nw=long\n"));
  root.toBuffer(kNoConversion);
  EXPECT_EQ(word, "long");
}

TEST_P(AstRootOrder, EveryChildStartsFromTheSameText) {
  AstRoot tree("", std::nullopt, 0,
               {numberedGroup("grp", 0, {group("x", {param("a", &first)})}),
                numberedGroup("grp", 1, {group("y", {param("a", &second)})})},
               0);
  EXPECT_TRUE(tree.parse(*stream("grp010.y.a=010")));
  EXPECT_EQ(printed(tree), "\ngrp0\nx\na = <undefined>\ngrp1\ny\na = 8 (0x8)");
}

TEST_P(AstRootOrder, RootWithoutChildrenTakesNothing) {
  AstRoot tree("", std::nullopt, 0, {}, 0);
  EXPECT_TRUE(tree.parse(*stream("a=1\n# b=2")));
  EXPECT_THAT(takeLog(), ElementsAre(debug("--------------Ignored: #b=2\n")));
}

TEST_P(AstRootOrder, ParametersWithEmptyNames) {
  AstRoot tree("", std::nullopt, 0, {param("", &first), group("", {param("", &second)})}, 0);
  EXPECT_TRUE(tree.parse(*stream("=1\n.=2")));
  EXPECT_EQ(printed(tree), "\n = 1 (0x1)\n\n = 2 (0x2)");
}

TEST_P(AstRootOrder, NameAndNumberOfTheRootMatchNothing) {
  AstRoot tree("root", 7, 0, {param("a", &first)}, 9);
  EXPECT_TRUE(tree.parse(*stream("root7.a=1")));
  EXPECT_THAT(missingIn(tree), ElementsAre("a"));
  EXPECT_TRUE(tree.parse(*stream("a=1")));
  EXPECT_THAT(missingIn(tree), IsEmpty());
}

TEST(AstRootPrint, IsThatOfAGroup) {
  uint8_t target = 0;
  const AstRoot tree("root", 200, 2, {param("a", &target, {}, 3)}, 9);
  EXPECT_EQ(printed(tree), "  root200\n   a = <undefined>");
}

TEST(AstRootValidate, NameOfTheRootIsNoPartOfThePath) {
  uint8_t target = 0;
  AstRoot tree("root", std::nullopt, 0,
               {param("a", &target), group("g", {param("b", &target)}), param("c", &target)}, 0);
  Names missing = {"earlier"};
  EXPECT_FALSE(tree.validate(missing, {}));
  EXPECT_THAT(missing, ElementsAre("earlier", "a", "g.b", "c"));
}

TEST(AstRootValidate, TreeWithoutTargetsLacksNothing) {
  AstRoot tree("root", std::nullopt, 0,
               {param<uint8_t>("a", nullptr), group("g", {param<std::string>("b", nullptr)})}, 0);
  Names missing;
  EXPECT_TRUE(tree.validate(missing, {}));
  EXPECT_THAT(missing, IsEmpty());
}

TEST(AstRootValidate, OneMissingParameterIsEnough) {
  uint8_t target = 0;
  AstRoot tree("", std::nullopt, 0, {param("a", &target), param("b", &target)}, 0);
  std::istringstream input("b=1");
  tree.parse(input);
  Names missing;
  EXPECT_FALSE(tree.validate(missing, {}));
  EXPECT_THAT(missing, ElementsAre("a"));
}

// The magic number and the checksum that follow `bytes` when the serialization began with `before`.
Bytes sealed(const Bytes& before, const Bytes& bytes, Bytes (*order)(Bytes)) {
  const Bytes body = joined({bytes, order({0xDE, 0xCA})});
  const uint32_t crc = crc32Of(joined({before, body}));
  return joined({body, order({static_cast<uint8_t>(crc >> 24), static_cast<uint8_t>(crc >> 16),
                              static_cast<uint8_t>(crc >> 8), static_cast<uint8_t>(crc)})});
}

TEST(AstRootSerialize, WithoutChildrenMagicAndChecksumRemain) {
  const AstRoot tree("root", 7, 0, {}, 9);
  takeLog();
  Bytes out;
  EXPECT_EQ(tree.serialize(out, kSwapBytes), 6U);
  EXPECT_EQ(out, sealed({}, {}, inReversedHostOrder));
  EXPECT_THAT(takeLog(), ElementsAre(debug("AstRoot::serialize() root 6\n")));
  EXPECT_EQ(serialized(tree, kNoConversion), sealed({}, {}, inHostOrder));
  EXPECT_EQ(serialized(tree, kNeither), sealed({}, {}, inHostOrder));
}

// The checksums were computed by another program: Python's zlib.crc32.
TEST(AstRootSerialize, MagicAndChecksumMostSignificantByteFirst) {
  EXPECT_EQ(serialized(AstRoot("", {}, 0, {}, 0), kMostSignificantByteFirst),
            (Bytes{0xDE, 0xCA, 0x25, 0xD3, 0xD1, 0xC0}));
}

TEST(AstRootSerialize, MagicAndChecksumLeastSignificantByteFirst) {
  EXPECT_EQ(serialized(AstRoot("", {}, 0, {}, 0), kHostIsLittleEndian ? kNoConversion : kSwapBytes),
            (Bytes{0xCA, 0xDE, 0xE8, 0xD2, 0xA7, 0x11}));
}

class AstRootSerializeTree : public testing::Test {
 protected:
  void SetUp() override {
    std::istringstream input("v=0x1122\ng1.p=0x33\ng1.w=0x44556677\nw=0x8899AABB");
    tree.parse(input);
    takeLog();
  }

  Bytes body(Bytes (*order)(Bytes)) const {
    return joined({order({0x11, 0x22}),
                   {10, 200, 254, 0x33, 1},
                   order({0x44, 0x55, 0x66, 0x77}),
                   {3},
                   {5},
                   order({0x88, 0x99, 0xAA, 0xBB})});
  }

  uint8_t byte = 0;
  uint16_t half = 0;
  uint32_t whole = 0;
  AstRoot tree{"root",
               7,
               0,
               {param("v", &half),
                std::make_shared<AstPrefix>(
                    "g", 200, 0, Children{param("p", &byte, 254), param("w", &whole, 1)}, 10),
                param("missing", &byte, 3), param("w", &whole, 5)},
               9};
};

TEST_F(AstRootSerializeTree, ChildrenThenMagicThenChecksum) {
  Bytes out;
  EXPECT_EQ(tree.serialize(out, kSwapBytes), 23U);
  EXPECT_EQ(out, sealed({}, body(inReversedHostOrder), inReversedHostOrder));
  EXPECT_THAT(takeLog(), ElementsAre(info("AstPrefix::serialize() g 9\n"),
                                     debug("AstRoot::serialize() root 23\n")));
}

TEST_F(AstRootSerializeTree, AnythingButSwapBytesKeepsTheHostsOrder) {
  for (const auto conversion : {kNoConversion, kNeither}) {
    EXPECT_EQ(serialized(tree, conversion), sealed({}, body(inHostOrder), inHostOrder));
    EXPECT_THAT(takeLog(), ElementsAre(info("AstPrefix::serialize() g 9\n"),
                                       debug("AstRoot::serialize() root 23\n")));
  }
}

TEST_F(AstRootSerializeTree, ChecksumCoversWhatWasThereBefore) {
  const Bytes before = {0xEE, 0xFF};
  Bytes out = before;
  EXPECT_EQ(tree.serialize(out, kSwapBytes), 23U);
  EXPECT_EQ(out, joined({before, sealed(before, body(inReversedHostOrder), inReversedHostOrder)}));
}

TEST_F(AstRootSerializeTree, SecondChecksumCoversTheFirstOutput) {
  const Bytes first = serialized(tree, kSwapBytes);
  Bytes out = first;
  EXPECT_EQ(tree.serialize(out, kSwapBytes), 23U);
  EXPECT_EQ(out, joined({first, sealed(first, body(inReversedHostOrder), inReversedHostOrder)}));
  EXPECT_NE(Bytes(out.begin() + 23, out.end()), first);
}

TEST_F(AstRootSerializeTree, ToBufferReachesEveryChild) {
  tree.toBuffer(kSwapBytes);
  EXPECT_EQ(half, 0x2211);
  EXPECT_EQ(byte, 0x33);
  EXPECT_EQ(whole, 0xBBAA9988U);
}

}  // namespace
