// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/kit/doubles.h"

// The text format in its plain meaning: one line after the other, each through a string stream.
// What the library makes of a text by faster means must be the same.

// A group or a parameter.
struct LiteralNode {
  enum Kind { Group, Number8, Number16, Number32, Word };

  Kind kind = Group;
  std::string name;
  int depth = 0;
  std::optional<uint8_t> id;  // A group with one has a number after its name.
  bool has_target = true;
  std::vector<LiteralNode> children;
  uint32_t number = 0;
  std::string word;
  bool has_value = false;
};

// Reads the text into the tree, with the lines that it logs. Throws std::invalid_argument.
void literalRead(LiteralNode& root, const std::string& text, Log& log);

// The names of the parameters that have a target and no value.
std::vector<std::string> literalMissing(const LiteralNode& root);

// The tree as text.
std::string literalPrint(const LiteralNode& root);
