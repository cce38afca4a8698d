// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "grammar/ast_param.h"
#include "grammar/ast_prefix.h"
#include "grammar/ast_root.h"

// Short words to build small trees with, and to ask them.

using Bytes = std::vector<uint8_t>;
using Names = std::vector<std::string>;
using Children = std::initializer_list<std::shared_ptr<AstNode>>;

constexpr EndiannessConversion kNoConversion = EndiannessConversion::NoConversion;
constexpr EndiannessConversion kSwapBytes = EndiannessConversion::SwapBytes;
// No value of the enumeration. toBuffer swaps for it, to_bytes does not.
constexpr EndiannessConversion kNeither = static_cast<EndiannessConversion>(2);

template <typename T>
std::shared_ptr<AstParam<T>> param(const std::string& name, T* target,
                                   std::optional<uint8_t> id = std::nullopt, int depth = 0) {
  return std::make_shared<AstParam<T>>(name, depth, id, target);
}

inline std::shared_ptr<AstPrefix> group(const std::string& name, Children children) {
  return std::make_shared<AstPrefix>(name, std::nullopt, 0, children, uint8_t{1});
}

inline std::shared_ptr<AstPrefix> numberedGroup(const std::string& name, uint8_t id,
                                                Children children) {
  return std::make_shared<AstPrefix>(name, id, 0, children, uint8_t{1});
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

// Bytes from several pieces, in order.
inline Bytes joined(const std::vector<Bytes>& pieces) {
  Bytes all;
  for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}
