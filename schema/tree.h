// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "grammar/ast_param.h"
#include "grammar/ast_prefix.h"

// The two words in which the schemas are written: a parameter, whose type is that of the field it
// fills, and a group without a number.

template <typename T>
std::shared_ptr<AstNode> param(const char* name, int depth, std::optional<uint8_t> id, T* target) {
  auto node = std::make_shared<AstParam<T>>(name, depth, id, target);
  node->expectName();
  return node;
}

inline std::shared_ptr<AstPrefix> group(
    const std::string& name, int depth, uint8_t tag,
    const std::initializer_list<std::shared_ptr<AstNode>>& children) {
  auto node = std::make_shared<AstPrefix>(name, std::nullopt, depth, children, tag);
  node->expectName();
  return node;
}
