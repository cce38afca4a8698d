// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sstream>

#include "grammar/ast_node.h"
#include "tests/kit/types.h"

// Short words to feed a tree with, and to ask it.

constexpr EndiannessConversion kNoConversion = EndiannessConversion::NoConversion;
constexpr EndiannessConversion kSwapBytes = EndiannessConversion::SwapBytes;
// No value of the enumeration. toBuffer swaps for it, to_bytes does not.
constexpr EndiannessConversion kNeither = static_cast<EndiannessConversion>(2);

inline bool parse(AstNode& node, const std::string& text) {
  std::istringstream input(text);
  return node.parse(input);
}

inline std::string printed(const AstNode& node) {
  std::ostringstream out;
  node.print(out);
  return out.str();
}

inline Bytes serialized(const AstNode& node, EndiannessConversion conversion = kSwapBytes) {
  Bytes out;
  node.serialize(out, conversion);
  return out;
}

inline Names missingIn(AstNode& node) {
  Names missing;
  node.validate(missing, {});
  return missing;
}
