// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <ostream>
#include <utility>

AstNode::AstNode(std::string name, int depth) : name(std::move(name)), depth(depth) {}

AstNode::~AstNode() = default;

std::string AstNode::getClass() const {
  return "AstNode";
}

void AstNode::print(std::ostream& out) const {
  printName(out);
}

void AstNode::toBuffer(EndiannessConversion /*conversion*/) {}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a group extends its own copy of the path.
bool AstNode::validate(std::vector<std::string>& /*missing*/, std::vector<std::string> /*path*/) {
  return true;
}

bool AstNode::readName(std::istream& input) const {
  using Traits = std::istream::traits_type;
  if (!input.good()) return false;
  // From the buffer: the stream would prepare itself anew for each character.
  std::streambuf& text = *input.rdbuf();
  bool equal = true;
  for (const char c : name) {
    if (text.sbumpc() != Traits::to_int_type(c)) equal = false;
  }
  return equal;
}

void AstNode::beginWithName() {
  beginning = name.empty() ? kAnything : std::istream::traits_type::to_int_type(name.front());
}

void AstNode::beginWithAnything() {
  beginning = kAnything;
}

void AstNode::printName(std::ostream& out) const {
  for (int32_t blank = 0; blank < depth; ++blank) out << ' ';
  out << name;
}
