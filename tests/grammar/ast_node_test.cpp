// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "grammar/ast_equal.h"
#include "grammar/ast_value.h"
#include "tests/grammar/nodes.h"
#include "tests/kit/doubles.h"
#include "tests/kit/virtual_slot.h"

namespace {

// A node that overrides only what it must.
class BareNode : public AstNode {
 public:
  using AstNode::AstNode;
  bool parse(std::istream& /*input*/) override { return false; }
  size_t serialize(Bytes& /*out*/, EndiannessConversion /*conversion*/) const override { return 0; }
};

TEST(AstNode, OfItselfPrintsItsNameAndNothingElse) {
  BareNode node("name", 4);
  EXPECT_EQ(node.getClass(), "AstNode");
  EXPECT_EQ(printed(node), "    name");
  EXPECT_EQ(printed(BareNode("name", 0)), "name");
  EXPECT_EQ(printed(BareNode("", 2)), "  ");
  Names missing = {"earlier"};
  EXPECT_TRUE(node.validate(missing, {"group"}));
  EXPECT_EQ(missing, Names{"earlier"});
  takeLog();
  node.toBuffer(kSwapBytes);
  EXPECT_LOG();
}

TEST(AstNode, IsAbstractAndNotCopyable) {
  EXPECT_TRUE(std::is_abstract_v<AstNode>);
  EXPECT_TRUE(std::has_virtual_destructor_v<AstNode>);
  EXPECT_FALSE(std::is_copy_constructible_v<BareNode>);
  EXPECT_FALSE(std::is_copy_assignable_v<BareNode>);
}

template <typename T>
void expectClassNamesOf() {
  EXPECT_EQ(AstParam<T>("", 0, std::nullopt, nullptr).getClass(), "AstParam");
  EXPECT_EQ(AstEqual<T>(0).getClass(), "AstEqual");
  EXPECT_EQ(AstValue<T>("", 0).getClass(), "AstValue");
}

TEST(AstNode, ClassesHaveNoTemplateArgumentsInTheirNames) {
  expectClassNamesOf<uint8_t>();
  expectClassNamesOf<uint16_t>();
  expectClassNamesOf<uint32_t>();
  expectClassNamesOf<std::string>();
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
