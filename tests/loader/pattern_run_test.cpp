// SPDX-License-Identifier: Apache-2.0
#include "loader/pattern_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <stdexcept>

#include "grammar/ast_param.h"
#include "tests/kit/log_capture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A tree that does what each text says, and reports what it was told to report.
class ScriptedTree : public AstRoot {
 public:
  ScriptedTree() : AstRoot("", std::nullopt, 0, {}, 0) {}

  bool parse(std::istream& input) override {
    const std::string text(std::istreambuf_iterator<char>(input), {});
    texts.push_back(text);
    if (text == "throw") throw std::runtime_error("100%s bad");
    if (text == "throw a number") throw 7;
    return text != "return false";
  }

  bool validate(std::vector<std::string>& missing, std::vector<std::string> path) override {
    missing_was_empty = missing.empty();
    path_was_empty = path.empty();
    missing = names;
    return complete;
  }

  std::vector<std::string> texts;
  std::vector<std::string> names;
  bool complete = true;
  bool missing_was_empty = false;
  bool path_was_empty = false;
};

class ParsePattern : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  ScriptedTree tree;
};

TEST_F(ParsePattern, NoFileIsAFailure) {
  EXPECT_FALSE(parse_pattern(tree, {}));
  EXPECT_THAT(tree.texts, IsEmpty());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(ParsePattern, EveryTextGoesThroughTheTreeInOrder) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "one\ntwo"}, {"b", ""}, {"c", std::string("\0x", 2)}}));
  EXPECT_THAT(tree.texts, ElementsAre("one\ntwo", "", std::string("\0x", 2)));
  EXPECT_THAT(takeLog(), ElementsAre(info("Parsing a"), info("Parsing b"), info("Parsing c")));
}

TEST_F(ParsePattern, FailingFilesAreLoggedAndLeft) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "throw"}, {"b", "good"}, {"c", "throw"}}));
  EXPECT_THAT(tree.texts, ElementsAre("throw", "good", "throw"));
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Parsing a"), error("Failed to parse calb file a, reason 100%s bad"),
                          info("Parsing b"), info("Parsing c"),
                          error("Failed to parse calb file c, reason 100%s bad")));
}

TEST_F(ParsePattern, AllFilesFailingIsAFailure) {
  EXPECT_FALSE(parse_pattern(tree, {{"a", "throw"}, {"b", "throw"}}));
  EXPECT_THAT(
      takeLog(),
      ElementsAre(info("Parsing a"), error("Failed to parse calb file a, reason 100%s bad"),
                  info("Parsing b"), error("Failed to parse calb file b, reason 100%s bad")));
}

TEST_F(ParsePattern, OneGoodFileIsEnoughWhereverItStands) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "good"}, {"b", "throw"}}));
  EXPECT_TRUE(parse_pattern(tree, {{"a", "throw"}, {"b", "good"}}));
}

TEST_F(ParsePattern, ResultOfParseDoesNotMatter) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "return false"}}));
  EXPECT_THAT(takeLog(), ElementsAre(info("Parsing a")));
}

TEST_F(ParsePattern, OtherExceptionsPass) {
  EXPECT_THROW(parse_pattern(tree, {{"a", "good"}, {"b", "throw a number"}, {"c", "good"}}), int);
  EXPECT_THAT(takeLog(), ElementsAre(info("Parsing a"), info("Parsing b")));
}

TEST_F(ParsePattern, PercentSignsOfAPathAreLoggedAsTheyStand) {
  EXPECT_FALSE(parse_pattern(tree, {{"%s%n", "throw"}}));
  EXPECT_THAT(takeLog(), ElementsAre(info("Parsing %s%n"),
                                     error("Failed to parse calb file %s%n, reason 100%s bad")));
}

// A small schema as the loader runs it.
class ParsePatternTree : public testing::Test {
 protected:
  void SetUp() override { takeLog(); }

  template <typename T>
  static std::shared_ptr<AstNode> param(const std::string& name, T* target) {
    return std::make_shared<AstParam<T>>(name, 0, std::nullopt, target);
  }

  static std::shared_ptr<AstNode> group(const std::string& name, std::shared_ptr<AstNode> child) {
    return std::make_shared<AstPrefix>(
        name, std::nullopt, 0, std::initializer_list<std::shared_ptr<AstNode>>{std::move(child)},
        uint8_t{1});
  }

  uint8_t xtal_trim = 0;
  uint8_t pg_delay = 0;
  AstRoot tree{"",
               std::nullopt,
               0,
               {param("xtal_trim", &xtal_trim), group("prf64", param("pg_delay", &pg_delay))},
               0};
};

TEST_F(ParsePatternTree, LaterFileWins) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "xtal_trim=1"}, {"b", "xtal_trim=2"}}));
  tree.toBuffer(EndiannessConversion::SwapBytes);
  EXPECT_EQ(xtal_trim, 2);
}

TEST_F(ParsePatternTree, ValuesOfEveryFileStay) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "xtal_trim=1"}, {"b", "prf64.pg_delay=2"}}));
  EXPECT_TRUE(validate_pattern(tree));
}

TEST_F(ParsePatternTree, ValuesBeforeAnErrorStay) {
  EXPECT_FALSE(parse_pattern(tree, {{"a", "xtal_trim=1\nprf64.pg_delay=256\nxtal_trim=3"}}));
  EXPECT_THAT(takeLog(),
              ElementsAre(info("Parsing a"), error("Unexpected_value\n"),
                          error("Failed to parse calb file a, reason Unexpected value")));
  tree.toBuffer(EndiannessConversion::SwapBytes);
  EXPECT_EQ(xtal_trim, 1);
}

TEST_F(ParsePatternTree, MissingParametersAreLoggedInTreeOrder) {
  EXPECT_FALSE(validate_pattern(tree));
  EXPECT_THAT(takeLog(), ElementsAre(error("Calibration is invalid, missing params: "),
                                     error("- xtal_trim"), error("- prf64.pg_delay")));
}

TEST_F(ParsePatternTree, CompleteTreeLogsNothing) {
  parse_pattern(tree, {{"a", "xtal_trim=1\nprf64.pg_delay=2"}});
  takeLog();
  EXPECT_TRUE(validate_pattern(tree));
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(ValidatePattern, StartsWithoutNamesAndGroups) {
  ScriptedTree tree;
  EXPECT_TRUE(validate_pattern(tree));
  EXPECT_TRUE(tree.missing_was_empty);
  EXPECT_TRUE(tree.path_was_empty);
}

TEST(ValidatePattern, ResultDecidesNotTheNames) {
  ScriptedTree tree;
  takeLog();
  tree.names = {"a"};
  EXPECT_TRUE(validate_pattern(tree));
  EXPECT_THAT(takeLog(), IsEmpty());
  tree.names = {};
  tree.complete = false;
  EXPECT_FALSE(validate_pattern(tree));
  EXPECT_THAT(takeLog(), ElementsAre(error("Calibration is invalid, missing params: ")));
}

TEST(ValidatePattern, NamesAreLoggedAsTheyStand) {
  ScriptedTree tree;
  takeLog();
  tree.names = {"b", "", "%s", "a", "b"};
  tree.complete = false;
  EXPECT_FALSE(validate_pattern(tree));
  EXPECT_THAT(takeLog(),
              ElementsAre(error("Calibration is invalid, missing params: "), error("- b"),
                          error("- "), error("- %s"), error("- a"), error("- b")));
}

}  // namespace
