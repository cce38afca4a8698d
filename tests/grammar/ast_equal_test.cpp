// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_equal.h"

#include <gtest/gtest.h>

#include "tests/grammar/nodes.h"
#include "tests/kit/any_stream.h"
#include "tests/kit/byte_order.h"
#include "tests/kit/doubles.h"

namespace {

class AstEqualParse : public AnyStream {
 protected:
  void SetUp() override { takeLog(); }
};

INSTANTIATE_TEST_SUITE_P(Streams, AstEqualParse, kAllStreams);

TEST_P(AstEqualParse, ValueFollowsTheEqualSign) {
  AstEqual<uint8_t> byte(0);
  EXPECT_TRUE(byte.parse(*stream("=5")));
  EXPECT_EQ(byte.value(), 5);
  AstEqual<uint16_t> half(0);
  EXPECT_TRUE(half.parse(*stream("= 0x10")));
  EXPECT_EQ(half.value(), 16);
  AstEqual<uint32_t> whole(0);
  EXPECT_TRUE(whole.parse(*stream("=\t010")));
  EXPECT_EQ(whole.value(), 8U);
  AstEqual<std::string> word(0);
  EXPECT_TRUE(word.parse(*stream("==a b")));
  EXPECT_EQ(word.value(), "=a");
}

TEST_P(AstEqualParse, NothingElseMatches) {
  for (const char* text : {"", "5", " =5", "\t=5", ":5", "-=5"}) {
    AstEqual<uint8_t> node(0);
    EXPECT_FALSE(node.parse(*stream(text))) << text;
    EXPECT_EQ(node.value(), std::nullopt);
  }
  EXPECT_LOG();
}

TEST(AstEqual, PrintsAndSerializesItsValueOnly) {
  AstEqual<uint16_t> node(3);
  Bytes out = {0xEE};
  EXPECT_EQ(printed(node), " = <undefined>");
  EXPECT_EQ(node.serialize(out, kSwapBytes), 0U);
  parse(node, "=0x1122");
  EXPECT_EQ(printed(node), " = 4386 (0x1122)");
  EXPECT_EQ(node.serialize(out, kSwapBytes), 2U);
  EXPECT_EQ(out, joined({{0xEE}, inReversedHostOrder({0x11, 0x22})}));
  EXPECT_EQ(serialized(node, kNoConversion), inHostOrder({0x11, 0x22}));
  EXPECT_EQ(serialized(node, kNeither), inHostOrder({0x11, 0x22}));
}

}  // namespace
