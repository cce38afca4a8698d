// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <istream>
#include <ostream>

AstNode::AstNode(const std::string& name, int depth) : name(name), depth(depth) {}

AstNode::~AstNode() = default;

std::string AstNode::getClass() const {
  return "AstNode";
}

void AstNode::print(std::ostream& out) const {
  printName(out);
}

void AstNode::toBuffer(EndiannessConversion /*conversion*/) {}

bool AstNode::validate(std::vector<std::string>& /*missing*/, std::vector<std::string> /*path*/) {
  return true;
}

bool AstNode::readName(std::istream& input) const {
  std::string text(name.size(), '\0');
  input.read(text.data(), static_cast<std::streamsize>(text.size()));
  // A text that ends early must not match a name that ends in NUL characters.
  return static_cast<size_t>(input.gcount()) == name.size() && text == name;
}

bool AstNode::parseNameThen(AstNode& child, std::istream& input) const {
  return readName(input) && child.parse(input);
}

void AstNode::printName(std::ostream& out) const {
  for (int32_t blank = 0; blank < depth; ++blank) out << ' ';
  out << name;
}
