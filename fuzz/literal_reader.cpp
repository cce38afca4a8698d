// SPDX-License-Identifier: Apache-2.0
#include "fuzz/literal_reader.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace {

bool isWhiteSpace(char c) {
  return c == ' ' || (c >= 9 && c <= 13);
}

// Throws what is wrong with a number or value, after logging it.
[[noreturn]] void fail(Log& log, const char* logged, const char* thrown) {
  log.push_back(error(logged));
  throw std::invalid_argument(thrown);
}

// The next `size` characters, fewer at the end.
std::string nextCharacters(std::istream& line, size_t size) {
  std::string text(size, '\0');
  line.read(text.data(), static_cast<std::streamsize>(size));
  text.resize(static_cast<size_t>(line.gcount()));
  return text;
}

void readNumberOfGroup(std::istream& line, Log& log) {
  uint16_t number = 0;
  line >> std::dec >> number;
  if (line.fail() || number >= 256) fail(log, "Expected Value", "Expected value");
}

void readValue(LiteralNode& node, std::istream& line, Log& log) {
  line.unsetf(std::ios_base::basefield);
  uint16_t half = 0;
  uint32_t whole = 0;
  std::string word;
  if (node.kind == LiteralNode::Word) {
    line >> word;
  } else if (node.kind == LiteralNode::Number32) {
    line >> whole;
  } else {
    line >> half;
    whole = half;
  }
  const bool too_large = node.kind == LiteralNode::Number8 && whole >= 256;
  if (line.fail() || too_large) fail(log, "Unexpected_value\n", "Unexpected value");
  node.number = whole;
  node.word = word;
  node.has_value = true;
}

bool readAny(std::vector<LiteralNode>& nodes, std::istream& line, Log& log);

// True when the node takes the rest of the line.
bool readNode(LiteralNode& node, std::istream& line, Log& log) {
  if (nextCharacters(line, node.name.size()) != node.name) return false;
  if (node.kind == LiteralNode::Group) {
    if (node.id.has_value()) readNumberOfGroup(line, log);
    return nextCharacters(line, 1) == "." && readAny(node.children, line, log);
  }
  if (nextCharacters(line, 1) != "=") return false;
  readValue(node, line, log);
  return true;
}

bool readAny(std::vector<LiteralNode>& nodes, std::istream& line, Log& log) {
  const auto start = line.tellg();
  for (LiteralNode& node : nodes) {
    if (readNode(node, line, log)) return true;
    line.clear();
    line.seekg(start);
  }
  return false;
}

void readLine(LiteralNode& root, std::string text, Log& log) {
  std::string dense = text;
  dense.erase(std::remove_if(dense.begin(), dense.end(), isWhiteSpace), dense.end());
  const size_t equal = dense.find('=');
  if (equal == dense.npos) return;
  if (std::min({dense.find("//"), dense.find('#'), dense.find(';')}) < equal) {
    // The log takes a text to its first NUL.
    log.push_back(debug(std::string("--------------Ignored: ") + dense.c_str() + "\n"));
    return;
  }
  const size_t mark = text.find("[CCC]");
  if (mark != text.npos) text.erase(mark, 5);
  std::stringstream line(text);
  readAny(root.children, line, log);
}

void addMissing(const LiteralNode& node, const std::string& path, std::vector<std::string>& names) {
  if (node.kind != LiteralNode::Group) {
    if (node.has_target && !node.has_value) names.push_back(path + node.name);
    return;
  }
  for (const LiteralNode& child : node.children) addMissing(child, path + node.name + ".", names);
}

}  // namespace

void literalRead(LiteralNode& root, const std::string& text, Log& log) {
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) readLine(root, line, log);
}

std::vector<std::string> literalMissing(const LiteralNode& root) {
  std::vector<std::string> names;
  for (const LiteralNode& child : root.children) addMissing(child, "", names);
  return names;
}

std::string literalPrint(const LiteralNode& node) {
  std::ostringstream out;
  out << std::string(static_cast<size_t>(node.depth), ' ') << node.name;
  if (node.kind == LiteralNode::Group) {
    if (node.id.has_value()) out << unsigned{*node.id};
    for (const LiteralNode& child : node.children) out << "\n" << literalPrint(child);
  } else if (!node.has_value) {
    out << " = <undefined>";
  } else if (node.kind == LiteralNode::Word) {
    out << " = " << node.word;
  } else {
    out << " = " << node.number << " (0x" << std::hex << node.number << ")";
  }
  return out.str();
}
