// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_root.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/checksums.h"
#include "tests/kit/doubles.h"

namespace {

// The tree of the examples: version, xtal_trim, antenna_selection and ch5.ant_delay.
struct ExampleTree {
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

  // The lines of print that have a value.
  Names values() const {
    Names values;
    std::istringstream lines(printed(root));
    for (std::string line; std::getline(lines, line);) {
      if (line.find(" = ") != line.npos && line.find("<undefined>") == line.npos)
        values.push_back(line);
    }
    return values;
  }
};

LogLine ignored(const std::string& line) {
  return debug("--------------Ignored: " + line + "\n");
}

class AstRootParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }

  // What a text makes of a fresh tree.
  static void expectValues(const std::string& text, const Names& values, const Log& log = {}) {
    ExampleTree tree;
    EXPECT_TRUE(tree.root.parse(*stream(text))) << text;
    EXPECT_EQ(tree.values(), values) << text;
    EXPECT_EQ(takeLog(), log) << text;
  }

  // What was set before the bad value stays.
  static void expectBadValue(const std::string& text, const Names& values = {}) {
    ExampleTree tree;
    try {
      tree.root.parse(*stream(text));
      FAIL() << text;
    } catch (const std::invalid_argument& e) {
      EXPECT_STREQ(e.what(), "Unexpected value") << text;
    }
    EXPECT_EQ(tree.values(), values) << text;
    EXPECT_LOG(error("Unexpected_value\n")) << text;
  }
};

INSTANTIATE_TEST_SUITE_P(Streams, AstRootParse, kAllStreams);

TEST_P(AstRootParse, EveryKindOfLine) {
  expectValues(
      "version=2\nantenna_selection=A1 B2\nxtal_trim= 0x1F ; factory trim\nch5.ant_delay=16400\n"
      "# xtal_trim=3\nxtal_trim\n",
      {"version = 2 (0x2)", "xtal_trim = 31 (0x1f)", "antenna_selection = A1",
       "ant_delay = 16400 (0x4010)"},
      {ignored("#xtal_trim=3")});
}

TEST_P(AstRootParse, LinesThatStoreAndLogNothing) {
  const struct {
    const char* what;
    std::string text;
  } rows[] = {
      {"no line", ""},
      {"no equal sign", "\n\n \n\r\nxtal_trim\n# note\n// note\n; note\n[CCC]\nxtal_trim 5"},
      {"unknown keys",
       "=\n=5\nxtal=5\nxtal_trims=5\nch5.x=1\nch5=1\nch9.ant_delay=1\nversion.x=1\n"},
      {"a blank before the equal sign",
       "xtal_trim =5\nxtal_trim\t=5\n xtal_trim=5\nxtal _trim=5\nch5 .ant_delay=1\n"
       "ch5. ant_delay=1\n\rversion=1"},
      {"one slash", "/xtal_trim=1\nxtal/trim/=1\n/=/\n/=//1"},
      {"a second mark", "[CCC][CCC]xtal_trim=1\n[C[CCC]CC]xtal_trim=1\nxtal[CCC]_[CCC]trim=1"},
      {"blanks around the mark", "[CCC] xtal_trim=1\n [CCC]xtal_trim=1\nxtal_trim[CCC] =1"},
      {"no mark",
       "[ccc]version=1\n[CCC version=1\nCCC]version=1\n[CC]version=1\n[C CC]version=1\n"
       "[CCCC]version=1\n(CCC)version=1"},
      {"NUL in a key", std::string("xtal_trim\0=5\n\0version=1", 23)},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    expectValues(row.text, {});
  }
}

TEST_P(AstRootParse, LinesThatStoreAValue) {
  const struct {
    const char* what;
    std::string text;
    Names values;
  } rows[] = {
      {"the last line without a line feed",
       "version=1\nxtal_trim=5",
       {"version = 1 (0x1)", "xtal_trim = 5 (0x5)"}},
      {"carriage returns",
       "version=2\r\nxtal_trim=7\r\nantenna_selection=ant0\r\nch5.ant_delay=1\r",
       {"version = 2 (0x2)", "xtal_trim = 7 (0x7)", "antenna_selection = ant0",
        "ant_delay = 1 (0x1)"}},
      {"a mark inside a value", "xtal_trim=1[CCC]2", {"xtal_trim = 12 (0xc)"}},
      {"a second mark as a value", "[CCC]antenna_selection=[CCC]", {"antenna_selection = [CCC]"}},
      {"a marker as a value", "antenna_selection=#1;//", {"antenna_selection = #1;//"}},
      {"the largest numbers",
       "xtal_trim=255\nch5.ant_delay=65535",
       {"xtal_trim = 255 (0xff)", "ant_delay = 65535 (0xffff)"}},
      {"octal", "xtal_trim=010", {"xtal_trim = 8 (0x8)"}},
      {"a later line", "xtal_trim=1\nxtal_trim=2", {"xtal_trim = 2 (0x2)"}},
      {"NUL in a value",
       std::string("antenna_selection=a\0b\nversion=1", 31),
       {"version = 1 (0x1)", std::string("antenna_selection = a\0b", 23)}},
      {"a long line",
       "version=" + std::string(10000, ' ') + "5" + std::string(10000, '#') + "\nxtal_trim=1",
       {"version = 5 (0x5)", "xtal_trim = 1 (0x1)"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    expectValues(row.text, row.values);
  }
  for (const char* line :
       {"xtal_trim=7 // note", "xtal_trim=7//", "xtal_trim=7#", "xtal_trim=7;", "xtal_trim=7 # a=b",
        "xtal_trim=7 ;=", "xtal_trim=7=//", "[CCC]xtal_trim=7", "xtal_[CCC]trim=7",
        "xtal_trim[CCC]=7", "xtal_trim=[CCC]7", "xtal_trim= [CCC]7", "xtal_trim=7[CCC]"}) {
    expectValues(line, {"xtal_trim = 7 (0x7)"});
  }
}

TEST_P(AstRootParse, BadValueEndsTheText) {
  for (const char* line :
       {"xtal_trim=256", "ch5.ant_delay=65536", "ch5.ant_delay=70000", "xtal_trim=//1",
        "xtal_trim=#1", "xtal_trim=;1", "xtal_trim=", "xtal_trim= ", "xtal_trim=\r",
        "antenna_selection=", "antenna_selection= \t", "ch5.ant_delay=\n",
        // The next line is never a value.
        "xtal_trim=\n5"}) {
    expectBadValue(line);
  }
  expectBadValue("version=1\nxtal_trim=256\nch5.ant_delay=3\n# a=b", {"version = 1 (0x1)"});
}

TEST_P(AstRootParse, ReadsFromTheStreamsPositionToItsEnd) {
  ExampleTree tree;
  const auto input = stream("xxxversion=1\nnothing\n# a=b\n");
  input->ignore(3);
  EXPECT_TRUE(tree.root.parse(*input));
  EXPECT_TRUE(input->eof());
  EXPECT_TRUE(tree.root.parse(*input)) << "a stream at its end";
  const auto failed = stream("xtal_trim=1");
  failed->setstate(std::ios_base::failbit);
  EXPECT_TRUE(tree.root.parse(*failed));
  EXPECT_TRUE(tree.root.parse(*stream("ch5.ant_delay=3")));
  EXPECT_EQ(tree.values(), (Names{"version = 1 (0x1)", "ant_delay = 3 (0x3)"}));
}

TEST_P(AstRootParse, MarkerBeforeTheEqualSignMakesAComment) {
  for (const std::string line :
       {"//xtal_trim=1", "#xtal_trim=1", ";xtal_trim=1", "xtal_trim//=1", "xtal_trim#=1",
        "xtal_trim;=1", "xtal//_trim=1", "xtal#_trim=1", "xtal;_trim=1", "#=", ";=", "//=", "///=1",
        "#xtal_trim=1#2=3", "a/#=//", "/a/b//c/=1", "a/b//=2", "#%s%n%d=%%", "#[CCC]x=7"}) {
    expectValues(line, {}, {ignored(line)});
  }
}

TEST_P(AstRootParse, CommentReachesNoParameterEvenOfItsName) {
  uint8_t target = 0;
  const auto tree = root({param("#a", &target), param("//a", &target), param(";a", &target),
                          group("ant#0", {param("a", &target)}), param("//x", &target)});
  EXPECT_TRUE(tree->parse(*stream("#a=1\n//a=1\n;a=1\nant#0.a=1\n/[CCC]/x=7")));
  // Comments are found before the mark is removed.
  EXPECT_EQ(missingIn(*tree), (Names{"#a", "//a", ";a", "ant#0.a"}));
  EXPECT_LOG(ignored("#a=1"), ignored("//a=1"), ignored(";a=1"), ignored("ant#0.a=1"));
}

TEST_P(AstRootParse, CommentsAreFoundAndLoggedWithoutWhiteSpace) {
  expectValues("/ /x=1\n / \t/ x =\v1 \f2\r\n \t# xtal_trim = 3 ; note\r\n/a/b // c/=1\na/ b / /=2",
               {},
               {ignored("//x=1"), ignored("//x=12"), ignored("#xtal_trim=3;note"),
                ignored("/a/b//c/=1"), ignored("a/b//=2")});
  for (const char* blank : {"\t", "\v", "\f", "\r", " "})
    expectValues(std::string("/") + blank + "/=", {}, {ignored("//=")});
  for (const char* other : {"\x07", "\x08", "\x0e", "\x1f", "!", "\x7f", "\x85", "\xa0"}) {
    expectValues(std::string("/") + other + "/=", {});
    const std::string line = std::string("#") + other + "=";
    expectValues(line, {}, {ignored(line)});
  }
}

// Trees in which several children could take a line.
class AstRootOrder : public AstRootParse {
 protected:
  uint8_t first = 0;
  uint8_t second = 0;
};

INSTANTIATE_TEST_SUITE_P(Streams, AstRootOrder, kAllStreams);

TEST_P(AstRootOrder, ChildrenAreTriedInOrderEachFromTheSameText) {
  const struct {
    std::shared_ptr<AstRoot> tree;
    const char* text;
    const char* printed;
  } rows[] = {
      {root({param("a", &first), param("a", &second)}), "a=1\na=2",
       "\na = 2 (0x2)\na = <undefined>"},
      {root({group("ant", {group("ch5", {param("a", &first)})}),
             group("ant", {group("ch9", {param("a", &second)})})}),
       "ant.ch9.a=5", "\nant\nch5\na = <undefined>\nant\nch9\na = 5 (0x5)"},
      {root({param("a_name_that_is_longer_than_the_line", &first), param("a", &second)}), "a=1",
       "\na_name_that_is_longer_than_the_line = <undefined>\na = 1 (0x1)"},
      // The first group has read a number and a value's key when it gives up.
      {root({numberedGroup("grp", 0, {group("x", {param("a", &first)})}),
             numberedGroup("grp", 1, {group("y", {param("a", &second)})})}),
       "grp010.y.a=010", "\ngrp0\nx\na = <undefined>\ngrp1\ny\na = 8 (0x8)"},
      {root({param("", &first), group("", {param("", &second)})}), "=1\n.=2",
       "\n = 1 (0x1)\n\n = 2 (0x2)"},
      // After a group that takes its lines, another one of its name still takes none of them.
      {root({group("g", {param("b", &first)}),
             group("g", {param("a", &first), param("b", &second)})}),
       "g.a=1\ng.b=2", "\ng\nb = 2 (0x2)\ng\na = 1 (0x1)\nb = <undefined>"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(row.tree->parse(*stream(row.text)));
    EXPECT_EQ(printed(*row.tree), row.printed);
  }
}

TEST_P(AstRootOrder, FirstGroupOfANameTakesTheLineWhateverItsNumber) {
  for (const uint8_t id : Bytes{0, 1}) {
    for (const char* line : {"grp0.a=5", "grp1.a=5", "grp7.a=5", "grp255.a=5"}) {
      const auto other = static_cast<uint8_t>(1 - id);
      const auto tree = root({numberedGroup("grp", id, {param("a", &first)}),
                              numberedGroup("grp", other, {param("a", &second)})});
      EXPECT_TRUE(tree->parse(*stream(line)));
      EXPECT_EQ(printed(*tree), "\ngrp" + std::to_string(id) + "\na = 5 (0x5)\ngrp" +
                                    std::to_string(other) + "\na = <undefined>");
    }
  }
}

TEST_P(AstRootOrder, GroupWithoutItsNumberThrowsBeforeALaterChildIsTried) {
  const auto tree = root({numberedGroup("grp", 0, {param("a", &first)}), param("grpx", &second)});
  EXPECT_THROW(tree->parse(*stream("grpx=1")), std::invalid_argument);
  EXPECT_LOG(error("Expected Value"));
}

TEST_P(AstRootOrder, EveryLineStartsFromAFreshState) {
  const auto tree = root({param("v", &first), numberedGroup("grp", 0, {param("a", &second)})});
  EXPECT_TRUE(tree->parse(*stream("v=0x10\ngrp08.a=1\nv=010\ngrp099.a=2")));
  EXPECT_EQ(printed(*tree), "\nv = 8 (0x8)\ngrp0\na = 2 (0x2)");
  EXPECT_LOG();
  EXPECT_THROW(tree->parse(*stream("v=0x10\ngrp0377.a=3")), std::invalid_argument);
  EXPECT_LOG(error("Expected Value"));
}

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
  const auto tree = root({group("a", {std::make_shared<Careless>()}), param("w", &word)});
  tree->parse(*stream("a.=\nw=long\n"));
  tree->toBuffer(kNoConversion);
  EXPECT_EQ(word, "long");
}

TEST_P(AstRootOrder, RootWithoutChildrenTakesNothing) {
  EXPECT_TRUE(root({})->parse(*stream("a=1\n# b=2")));
  EXPECT_LOG(debug("--------------Ignored: #b=2\n"));
}

TEST_P(AstRootOrder, NameAndNumberOfTheRootMatchNothing) {
  AstRoot tree("root", 7, 0, {param("a", &first)}, 9);
  EXPECT_TRUE(tree.parse(*stream("root7.a=1")));
  EXPECT_EQ(missingIn(tree), (Names{"a"}));
  EXPECT_TRUE(tree.parse(*stream("a=1")));
  EXPECT_EQ(missingIn(tree), Names());
}

TEST(AstRootPrint, IsThatOfAGroup) {
  uint8_t target = 0;
  const AstRoot tree("root", 200, 2, {param("a", &target, {}, 3)}, 9);
  EXPECT_EQ(printed(tree), "  root200\n   a = <undefined>");
}

TEST(AstRootValidate, TreeWithoutTargetsLacksNothing) {
  Names missing;
  EXPECT_TRUE(root({param<uint8_t>("a", nullptr), group("g", {param<uint32_t>("b", nullptr)})})
                  ->validate(missing, {}));
  EXPECT_EQ(missing, Names());
}

TEST(AstRootValidate, NameOfTheRootIsNoPartOfThePath) {
  uint8_t target = 0;
  AstRoot tree("root", std::nullopt, 0,
               {param("a", &target), group("g", {param("b", &target)}), param("c", &target),
                param<std::string>("d", nullptr)},
               0);
  Names missing = {"earlier"};
  EXPECT_FALSE(tree.validate(missing, {}));
  EXPECT_EQ(missing, (Names{"earlier", "a", "g.b", "c"}));
  parse(tree, "a=1\ng.b=1");
  EXPECT_EQ(missingIn(tree), Names{"c"});
  parse(tree, "c=1");
  missing = {};
  EXPECT_TRUE(tree.validate(missing, {}));
  EXPECT_EQ(missing, Names());
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
  EXPECT_LOG(debug("AstRoot::serialize() root 6\n"));
  EXPECT_EQ(serialized(tree, kNoConversion), sealed({}, {}, inHostOrder));
  EXPECT_EQ(serialized(tree, kNeither), sealed({}, {}, inHostOrder));
}

// The checksums were computed by another program: Python's zlib.crc32.
TEST(AstRootSerialize, MagicAndChecksumMostSignificantByteFirst) {
  EXPECT_EQ(serialized(*root({}), kMostSignificantByteFirst),
            (Bytes{0xDE, 0xCA, 0x25, 0xD3, 0xD1, 0xC0}));
}

TEST(AstRootSerialize, MagicAndChecksumLeastSignificantByteFirst) {
  EXPECT_EQ(serialized(*root({}), kHostIsLittleEndian ? kNoConversion : kSwapBytes),
            (Bytes{0xCA, 0xDE, 0xE8, 0xD2, 0xA7, 0x11}));
}

class AstRootSerializeTree : public testing::Test {
 protected:
  void SetUp() override {
    parse(tree, "v=0x1122\ng1.p=0x33\ng1.w=0x44556677\nw=0x8899AABB");
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
  EXPECT_LOG(info("AstPrefix::serialize() g 9\n"), debug("AstRoot::serialize() root 23\n"));
}

TEST_F(AstRootSerializeTree, AnythingButSwapBytesKeepsTheHostsOrder) {
  for (const auto conversion : {kNoConversion, kNeither}) {
    EXPECT_EQ(serialized(tree, conversion), sealed({}, body(inHostOrder), inHostOrder));
    EXPECT_LOG(info("AstPrefix::serialize() g 9\n"), debug("AstRoot::serialize() root 23\n"));
  }
}

TEST_F(AstRootSerializeTree, ChecksumCoversWhatWasThereBefore) {
  const Bytes first = serialized(tree, kSwapBytes);
  for (const Bytes& before : {Bytes{0xEE, 0xFF}, first}) {
    Bytes out = before;
    EXPECT_EQ(tree.serialize(out, kSwapBytes), 23U);
    EXPECT_EQ(out,
              joined({before, sealed(before, body(inReversedHostOrder), inReversedHostOrder)}));
    EXPECT_NE(Bytes(out.end() - 23, out.end()), first);
  }
}

}  // namespace
