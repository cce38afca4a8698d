// SPDX-License-Identifier: Apache-2.0
#include "grammar/ast_prefix.h"

#include <android/log.h>

#include <istream>
#include <ostream>
#include <stdexcept>
#include <utility>

#include "grammar/extract_byte.h"

namespace {

void readGroupNumber(std::istream& input) {
  uint8_t number = 0;
  if (extractByte(input >> std::dec, number)) return;
  // The log says "Value", the exception "value". Both are fixed as they stand.
  __android_log_print(ANDROID_LOG_ERROR, nullptr, "Expected Value");
  throw std::invalid_argument("Expected value");
}

}  // namespace

AstPrefix::AstPrefix(std::string_view name, std::optional<uint8_t> id, int depth,
                     const std::initializer_list<std::shared_ptr<AstNode>>& children, uint8_t tag)
    : AstNode(name, depth), tag(tag), id(id), children(children) {}

bool AstPrefix::parse(std::istream& input) {
  if (!readName(input)) return false;
  // Any number matches: the first group of this name takes the line.
  if (id.has_value()) readGroupNumber(input);
  if (input.rdbuf()->sbumpc() != '.') return false;
  return parseChildren(input);
}

bool AstPrefix::parseChildren(std::istream& input) {
  std::streambuf& text = *input.rdbuf();
  const std::istream::int_type next = text.sgetc();
  for (const std::shared_ptr<AstNode>& child : children) {
    // Most children are refused by their first character, without being called.
    if (!child->canBeginWith(next)) continue;
    const std::streampos start = text.pubseekoff(0, std::ios_base::cur, std::ios_base::in);
    if (child->parse(input)) return true;
    const std::streamoff back = text.pubseekpos(start, std::ios_base::in);
    input.clear(back < 0 ? std::ios_base::failbit : std::ios_base::goodbit);
  }
  return false;
}

std::string AstPrefix::getClass() const {
  return "AstPrefix";
}

void AstPrefix::print(std::ostream& out) const {
  printName(out);
  // A number printed before has left the stream in hexadecimal mode.
  if (id.has_value()) out << std::dec << unsigned{*id};
  for (const std::shared_ptr<AstNode>& child : children) {
    out << "\n";
    child->print(out);
  }
}

size_t AstPrefix::serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const {
  size_t count = 1;
  out.push_back(tag);
  count += serializeId(id, out);
  count += serializeChildren(out, conversion);
  __android_log_print(ANDROID_LOG_INFO, nullptr, "AstPrefix::serialize() %s %s\n", name.c_str(),
                      std::to_string(count).c_str());
  return count;
}

size_t AstPrefix::serializeChildren(std::vector<uint8_t>& out,
                                    EndiannessConversion conversion) const {
  size_t count = 0;
  for (const std::shared_ptr<AstNode>& child : children) {
    count += child->serialize(out, conversion);
  }
  return count;
}

void AstPrefix::toBuffer(EndiannessConversion conversion) {
  for (const std::shared_ptr<AstNode>& child : children) child->toBuffer(conversion);
}

bool AstPrefix::validate(std::vector<std::string>& missing, std::vector<std::string> path) {
  // The number of a group is never part of a path.
  path.push_back(name);
  return validateChildren(missing, std::move(path));
}

bool AstPrefix::validateChildren(std::vector<std::string>& missing, std::vector<std::string> path) {
  if (children.empty()) return true;
  bool complete = true;
  for (size_t i = 0; i + 1 < children.size(); ++i) {
    if (!children[i]->validate(missing, path)) complete = false;
  }
  // The last child needs no copy.
  return children.back()->validate(missing, std::move(path)) && complete;
}
