// SPDX-License-Identifier: Apache-2.0
// A group need not ask a child about a text that does not begin with its name, if the child was
// said to expect that. Every other child is asked.
#include <gtest/gtest.h>

#include "grammar/ast_value.h"
#include "tests/grammar/nodes.h"

namespace {

// Takes every text, whatever its name.
class AnyText : public AstNode {
 public:
  explicit AnyText(const std::string& name) : AstNode(name, 0) {}
  bool parse(std::istream& input) override {
    input >> text;
    return true;
  }
  size_t serialize(Bytes&, EndiannessConversion) const override { return 0; }

  std::string text;
};

void parseWith(const std::shared_ptr<AstNode>& child, const std::string& text) {
  parse(*root({child}), text);
}

TEST(Refusal, NodeOfAnotherKindIsAskedWhateverItsName) {
  const auto child = std::make_shared<AnyText>("label");
  parseWith(child, "other=1");
  EXPECT_EQ(child->text, "other=1");
}

// A parameter with a parse of its own.
class Alias : public AstParam<uint8_t> {
 public:
  using AstParam::AstParam;
  bool parse(std::istream& input) override { return input.get() == '$' && AstParam::parse(input); }
};

TEST(Refusal, DerivedParameterIsAsked) {
  uint8_t target = 0;
  const auto alias = std::make_shared<Alias>("a", 0, std::nullopt, &target);
  parseWith(alias, "$a=5");
  alias->toBuffer(kNoConversion);
  EXPECT_EQ(target, 5);
}

TEST(Refusal, ChildThatExpectsItsNameIsAskedOnlyAboutItsFirstCharacter) {
  const auto child = std::make_shared<AnyText>("label");
  child->expectName();
  parseWith(child, "other=1");
  EXPECT_EQ(child->text, "");
  parseWith(child, "less=1");
  EXPECT_EQ(child->text, "less=1");
}

TEST(Refusal, ChildThatExpectsAnEmptyNameIsAsked) {
  const auto child = std::make_shared<AnyText>("");
  child->expectName();
  parseWith(child, "other=1");
  EXPECT_EQ(child->text, "other=1");
}

TEST(Refusal, ValueDoesNotBeginWithItsName) {
  const auto value = std::make_shared<AstValue<uint8_t>>("x", 0);
  parseWith(group("g", {value}), "g.5=");
  EXPECT_EQ(value->value, std::optional<uint8_t>(5));
}

TEST(Refusal, RootInsideARootDoesNotBeginWithItsName) {
  uint8_t target = 0;
  const auto inner = std::make_shared<AstRoot>("inner", std::nullopt, 0,
                                               Children{param("a", &target)}, uint8_t{0});
  parseWith(inner, "a=5");
  inner->toBuffer(kNoConversion);
  EXPECT_EQ(target, 5);
}

}  // namespace
