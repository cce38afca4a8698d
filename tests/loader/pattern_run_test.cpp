// SPDX-License-Identifier: Apache-2.0
#include "loader/pattern_run.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <stdexcept>

#include "tests/kit/allocations.h"
#include "tests/kit/doubles.h"

namespace {

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

  Names texts;
  Names names;
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
  EXPECT_LOG();
}

TEST_F(ParsePattern, EveryTextGoesThroughTheTreeInOrder) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "one\ntwo"}, {"b", ""}, {"c", std::string("\0x", 2)}}));
  EXPECT_EQ(tree.texts, (Names{"one\ntwo", "", std::string("\0x", 2)}));
  EXPECT_LOG(info("Parsing a"), info("Parsing b"), info("Parsing c"));
}

TEST_F(ParsePattern, FailingFilesAreLoggedAndTheOthersStillRead) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "throw"}, {"b", "good"}, {"%s%n", "throw"}}));
  EXPECT_EQ(tree.texts, (Names{"throw", "good", "throw"}));
  EXPECT_LOG(info("Parsing a"), error("Failed to parse calb file a, reason 100%s bad"),
             info("Parsing b"), info("Parsing %s%n"),
             error("Failed to parse calb file %s%n, reason 100%s bad"));
}

TEST_F(ParsePattern, OneGoodFileIsEnoughWhereverItStands) {
  EXPECT_TRUE(parse_pattern(tree, {{"a", "good"}, {"b", "throw"}}));
  EXPECT_TRUE(parse_pattern(tree, {{"a", "throw"}, {"b", "good"}}));
  EXPECT_TRUE(parse_pattern(tree, {{"a", "return false"}})) << "the result of parse matters";
  EXPECT_FALSE(parse_pattern(tree, {{"a", "throw"}, {"b", "throw"}}));
}

TEST_F(ParsePattern, LastLineWithoutMemoryFailsItsFile) {
  AstRoot root("", std::nullopt, 0, {}, 0);
  const std::vector<calibration> files = {{"a", "a_line_of_more_than_fifteen_characters=1"}};
  const FailingAllocation failure(0);
  EXPECT_FALSE(parse_pattern(root, files));
  EXPECT_LOG(info("Parsing a"), error("Failed to parse calb file a, reason no memory left"));
}

TEST_F(ParsePattern, OtherExceptionsPass) {
  EXPECT_THROW(parse_pattern(tree, {{"a", "good"}, {"b", "throw a number"}, {"c", "good"}}), int);
  EXPECT_LOG(info("Parsing a"), info("Parsing b"));
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
  EXPECT_LOG();
  tree.names = {};
  tree.complete = false;
  EXPECT_FALSE(validate_pattern(tree));
  EXPECT_LOG(error("Calibration is invalid, missing params: "));
}

TEST(ValidatePattern, NamesAreLoggedAsTheyStand) {
  ScriptedTree tree;
  takeLog();
  tree.names = {"xtal_trim", "prf64.pg_delay", "", "%s", "xtal_trim"};
  tree.complete = false;
  EXPECT_FALSE(validate_pattern(tree));
  EXPECT_LOG(error("Calibration is invalid, missing params: "), error("- xtal_trim"),
             error("- prf64.pg_delay"), error("- "), error("- %s"), error("- xtal_trim"));
}

}  // namespace
