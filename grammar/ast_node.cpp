// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_node.h"

#include <ostream>

#include "grammar/get_area.h"

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
  if (area.size() >= name.size()) {
    GetArea::skip(text, name.size());
    return std::string_view(area.data(), name.size()) == name;
  }
  bool equal = true;
  for (const char c : name) {
    if (text.sbumpc() != std::istream::traits_type::to_int_type(c)) equal = false;
  }
  return equal;
}

void AstNode::expectName() {
  if (!name.empty()) first = std::istream::traits_type::to_int_type(name.front());
}

size_t AstNode::serializeId(std::optional<uint8_t> id, std::vector<uint8_t>& out) {
  if (!id.has_value()) return 0;
  out.push_back(*id);
  return 1;
}

void AstNode::printName(std::ostream& out) const {
  for (int32_t blank = 0; blank < depth; ++blank) out << ' ';
  out << name;
}
