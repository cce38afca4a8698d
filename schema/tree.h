// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>

#include "grammar/ast_param.h"
#include "grammar/ast_prefix.h"

template <typename Node>
std::shared_ptr<Node> expectingName(std::shared_ptr<Node> node) {
  node->expectName();
  return node;
}

// The two words in which the schemas are written: a parameter, whose type is that of the field it
// fills, and a group without a number.

template <typename T>
std::shared_ptr<AstNode> param(const char* name, int depth, std::optional<uint8_t> id, T* target) {
  return expectingName(std::make_shared<AstParam<T>>(name, depth, id, target));
}

inline std::shared_ptr<AstPrefix> group(
    const std::string& name, int depth, uint8_t tag,
    const std::initializer_list<std::shared_ptr<AstNode>>& children) {
  return expectingName(std::make_shared<AstPrefix>(name, std::nullopt, depth, children, tag));
}
