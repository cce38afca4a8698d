// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "grammar/endianness_conversion.h"

// A node of the tree that reads calibration text. Groups (AstRoot, AstPrefix) lead to parameters
// (AstParam), each with its equal sign (AstEqual) and its value (AstValue).
//
// A group owns its children through shared pointers; a parameter holds its equal sign, and that its
// value, as members. No node knows its parent. The virtual functions keep this order in every
// class. Nothing here may be used by two threads at once.
//
// Nodes read from the stream's buffer where they can: they throw what the buffer throws, and the
// end of the text sets no state.
class AstNode {
 public:
  // `name` is the literal text that the node matches, `depth` the number of blanks before it in
  // print.
  AstNode(std::string_view name, int depth) : name(name), depth(depth) {}
  AstNode(const AstNode&) = delete;
  AstNode& operator=(const AstNode&) = delete;

  // Reads from the stream's position. True when the node matched and stored a value; false when it
  // did not match, and then the caller restores the stream. Throws std::invalid_argument
  // ("Expected value", "Unexpected value") for a number or value that cannot be read.
  virtual bool parse(std::istream& input) = 0;

  // The class's name without template arguments.
  virtual std::string getClass() const;

  // Writes the node and what is below it as indented text. A number that is printed as a value
  // leaves the stream in hexadecimal mode, the number of a group in decimal mode.
  virtual void print(std::ostream& out) const;

  // Appends the node's tags and values to `out` and returns the number of bytes appended.
  virtual size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const = 0;

  // Copies every value that was read into the record field bound to it.
  virtual void toBuffer(EndiannessConversion conversion);

  // Appends the full name of each parameter without a value to `missing`, and returns true when
  // there is none. `path` holds the names of the enclosing groups.
  virtual bool validate(std::vector<std::string>& missing, std::vector<std::string> path);

  virtual ~AstNode();

  // Lets the group skip this node, without calling parse(), when a text does not begin with the
  // first character of the name. Only for nodes whose parse() reads the name first.
  void expectName();

  // False when a text whose next character is `next` cannot be this node's.
  bool canBeginWith(std::istream::int_type next) const { return first == kAny || first == next; }

 protected:
  // Reads the name; true when it is there. Always consumes name.size() characters, also after a
  // difference.
  bool readName(std::istream& input) const;

  // Appends the byte `id`, if there is one, and returns the number of bytes appended.
  static size_t serializeId(std::optional<uint8_t> id, std::vector<uint8_t>& out);

  // Writes the blanks before the node's line, then the name.
  void printName(std::ostream& out) const;

  const std::string name;
  const int32_t depth;

 private:
  static constexpr std::istream::int_type kAny = std::istream::traits_type::eof();

  // The character with which the node's text begins.
  std::istream::int_type first = kAny;
};
