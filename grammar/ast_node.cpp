// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <ostream>

#include "grammar/get_area.h"

namespace {

// Reads a name that the get area does not hold whole.
bool readByCharacter(std::streambuf& text, const std::string& name) {
  bool equal = true;
  for (const char c : name) {
    if (text.sbumpc() != std::streambuf::traits_type::to_int_type(c)) equal = false;
  }
  return equal;
}

}  // namespace

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
  if (!input.good()) return false;
  std::streambuf& text = *input.rdbuf();
  const std::string_view area = GetArea::of(text);
  if (area.size() < name.size()) return readByCharacter(text, name);
  GetArea::skip(text, name.size());
  return area.compare(0, name.size(), name) == 0;
}

void AstNode::expectName() {
  if (!name.empty()) beginning = std::istream::traits_type::to_int_type(name.front());
}

void AstNode::printName(std::ostream& out) const {
  for (int32_t blank = 0; blank < depth; ++blank) out << ' ';
  out << name;
}
