// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>

#include "grammar/ast_param.h"
#include "grammar/ast_prefix.h"
#include "grammar/ast_root.h"
#include "tests/kit/trees.h"

// Short words to build small trees with.

using Children = std::initializer_list<std::shared_ptr<AstNode>>;

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

inline std::shared_ptr<AstRoot> root(Children children) {
  return std::make_shared<AstRoot>("", std::nullopt, 0, children, uint8_t{0});
}

// Bytes from several pieces, in order.
inline Bytes joined(const std::vector<Bytes>& pieces) {
  Bytes all;
  for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}
