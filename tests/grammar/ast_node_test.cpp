// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "grammar/ast_equal.h"
#include "grammar/ast_value.h"
#include "tests/grammar/nodes.h"
#include "tests/kit/doubles.h"
#include "tests/kit/virtual_slot.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A node that overrides only what it must.
class BareNode : public AstNode {
 public:
  using AstNode::AstNode;
  bool parse(std::istream& /*input*/) override { return false; }
  size_t serialize(Bytes& /*out*/, EndiannessConversion /*conversion*/) const override { return 0; }
};

// Tells when it is destroyed.
class MortalNode : public BareNode {
 public:
  explicit MortalNode(bool& dead) : BareNode("mortal", 0), dead_(dead) {}
  ~MortalNode() override { dead_ = true; }

 private:
  bool& dead_;
};

TEST(AstNode, NamesItsClass) {
  EXPECT_EQ(BareNode("name", 0).getClass(), "AstNode");
}

TEST(AstNode, PrintsItsNameBehindItsDepth) {
  EXPECT_EQ(printed(BareNode("name", 0)), "name");
  EXPECT_EQ(printed(BareNode("name", 1)), " name");
  EXPECT_EQ(printed(BareNode("name", 4)), "    name");
  EXPECT_EQ(printed(BareNode("", 2)), "  ");
}

TEST(AstNode, IsNeverMissing) {
  BareNode node("name", 0);
  Names missing = {"earlier"};
  EXPECT_TRUE(node.validate(missing, {"group"}));
  EXPECT_THAT(missing, ElementsAre("earlier"));
}

TEST(AstNode, HasNothingForTheBuffer) {
  BareNode node("name", 0);
  node.toBuffer(kSwapBytes);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST(AstNode, IsAbstractAndNotCopyable) {
  EXPECT_TRUE(std::is_abstract_v<AstNode>);
  EXPECT_FALSE(std::is_copy_constructible_v<BareNode>);
  EXPECT_FALSE(std::is_copy_assignable_v<BareNode>);
}

TEST(AstNode, IsDestroyedThroughItsBase) {
  bool dead = false;
  std::unique_ptr<AstNode> node = std::make_unique<MortalNode>(dead);
  node.reset();
  EXPECT_TRUE(dead);
}

TEST(AstNode, OwnsItsChildrenTogetherWithOthers) {
  bool dead = false;
  std::shared_ptr<AstNode> child = std::make_shared<MortalNode>(dead);
  auto parent = group("group", {child});
  child.reset();
  EXPECT_FALSE(dead);
  parent.reset();
  EXPECT_TRUE(dead);
}

TEST(AstNode, ClassesHaveNoTemplateArgumentsInTheirNames) {
  EXPECT_EQ(AstParam<uint8_t>("", 0, std::nullopt, nullptr).getClass(), "AstParam");
  EXPECT_EQ(AstParam<uint16_t>("", 0, std::nullopt, nullptr).getClass(), "AstParam");
  EXPECT_EQ(AstParam<uint32_t>("", 0, std::nullopt, nullptr).getClass(), "AstParam");
  EXPECT_EQ(AstParam<std::string>("", 0, std::nullopt, nullptr).getClass(), "AstParam");
  EXPECT_EQ(AstEqual<uint8_t>(0).getClass(), "AstEqual");
  EXPECT_EQ(AstEqual<uint16_t>(0).getClass(), "AstEqual");
  EXPECT_EQ(AstEqual<uint32_t>(0).getClass(), "AstEqual");
  EXPECT_EQ(AstEqual<std::string>(0).getClass(), "AstEqual");
  EXPECT_EQ(AstValue<uint8_t>("", 0).getClass(), "AstValue");
  EXPECT_EQ(AstValue<uint16_t>("", 0).getClass(), "AstValue");
  EXPECT_EQ(AstValue<uint32_t>("", 0).getClass(), "AstValue");
  EXPECT_EQ(AstValue<std::string>("", 0).getClass(), "AstValue");
  EXPECT_EQ(AstPrefix("", std::nullopt, 0, {}, 0).getClass(), "AstPrefix");
  EXPECT_EQ(AstRoot("", std::nullopt, 0, {}, 0).getClass(), "AstRoot");
}

TEST(AstNode, VirtualFunctionsKeepTheirOrder) {
  EXPECT_EQ(slotOf(&AstNode::parse), 0U);
  EXPECT_EQ(slotOf(&AstNode::getClass), 1U);
  EXPECT_EQ(slotOf(&AstNode::print), 2U);
  EXPECT_EQ(slotOf(&AstNode::serialize), 3U);
  EXPECT_EQ(slotOf(&AstNode::toBuffer), 4U);
  EXPECT_EQ(slotOf(&AstNode::validate), 5U);
}

}  // namespace
