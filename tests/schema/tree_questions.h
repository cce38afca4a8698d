// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "grammar/ast_root.h"

// Short words to feed a schema with, and to ask it.

using Names = std::vector<std::string>;

inline void parse(AstNode& tree, const std::string& text) {
  std::istringstream input(text);
  tree.parse(input);
}

inline std::string printed(const AstNode& node) {
  std::ostringstream out;
  node.print(out);
  return out.str();
}

inline Names missingIn(AstNode& node) {
  Names missing;
  node.validate(missing, {});
  return missing;
}
