// SPDX-License-Identifier: Apache-2.0
// A tree of any shape, and a text for it. The input is the number of bytes that describe the tree,
// those bytes, and the text.
#include <zlib.h>

#include <deque>
#include <sstream>

#include "fuzz/literal_reader.h"
#include "fuzz/support.h"
#include "grammar/ast_param.h"
#include "grammar/ast_root.h"

namespace {

constexpr int kMostLevels = 4;

// Words that begin each other, that are empty, or that are marks of the text format.
const std::string& nameOf(uint8_t byte) {
  static const std::vector<std::string> names = {
      "", "a",  "aa", "ab", "a.b", "=", ".",   "a=",   "a1", "[CCC]",
      "", " a", "\t", "#",  "0",   "1", "0x1", "port", "//", std::string(1, '\0')};
  return names[byte % names.size()];
}

template <typename T>
T filledWith(uint8_t byte) {
  return static_cast<T>(byte * 0x01010101U);
}
template <>
std::string filledWith(uint8_t byte) {
  // With a blank, as no value that is read has one.
  return std::string(1, static_cast<char>(byte)) + " ";
}

// The record that a tree fills: as many fields of each type as it has parameters.
template <typename T>
class Fields {
 public:
  T* add() { return &fields.emplace_back(); }
  void fill(uint8_t byte) {
    for (T& field : fields) field = filledWith<T>(byte);
  }
  bool operator==(const Fields& other) const { return fields == other.fields; }

 private:
  std::deque<T> fields;
};

struct Record {
  void fill(uint8_t byte) {
    bytes.fill(byte);
    halves.fill(byte);
    words.fill(byte);
    texts.fill(byte);
  }
  bool operator==(const Record& other) const {
    return bytes == other.bytes && halves == other.halves && words == other.words &&
           texts == other.texts;
  }

  Fields<uint8_t> bytes;
  Fields<uint16_t> halves;
  Fields<uint32_t> words;
  Fields<std::string> texts;
};

// Builds the tree that a few bytes describe, and the same for the literal reader.
class TreeBuilder {
 public:
  TreeBuilder(const std::string& description, Record& record)
      : input(reinterpret_cast<const uint8_t*>(description.data()), description.size()),
        record(record) {}

  template <typename Group>
  std::shared_ptr<Group> group(LiteralNode& literal) {
    literal.name = nameOf(input.byte());
    literal.id = optionalByte();
    const uint8_t tag = input.byte();
    literal.children.resize(literal.depth < kMostLevels ? input.byte() % 4U : 0U);
    std::vector<std::shared_ptr<AstNode>> nodes;
    for (LiteralNode& child : literal.children) {
      child.depth = literal.depth + 1;
      nodes.push_back(node(child));
    }
    const auto make = [&](const std::initializer_list<std::shared_ptr<AstNode>>& children) {
      return std::make_shared<Group>(literal.name, literal.id, literal.depth, children, tag);
    };
    if (nodes.empty()) return make({});
    if (nodes.size() == 1) return make({nodes[0]});
    if (nodes.size() == 2) return make({nodes[0], nodes[1]});
    return make({nodes[0], nodes[1], nodes[2]});
  }

 private:
  std::optional<uint8_t> optionalByte() {
    const uint8_t byte = input.byte();
    return byte % 2 == 0 ? std::nullopt : std::make_optional(byte);
  }

  template <typename T>
  std::shared_ptr<AstNode> param(LiteralNode& literal, LiteralNode::Kind kind, Fields<T>& fields) {
    literal.kind = kind;
    literal.name = nameOf(input.byte());
    const std::optional<uint8_t> id = optionalByte();
    literal.has_target = input.byte() % 4 != 3;
    T* const target = literal.has_target ? fields.add() : nullptr;
    return std::make_shared<AstParam<T>>(literal.name, literal.depth, id, target);
  }

  std::shared_ptr<AstNode> node(LiteralNode& literal) {
    switch (input.byte() % 6) {
      case 0:
        return param(literal, LiteralNode::Number8, record.bytes);
      case 1:
        return param(literal, LiteralNode::Number16, record.halves);
      case 2:
        return param(literal, LiteralNode::Number32, record.words);
      case 3:
        return param(literal, LiteralNode::Word, record.texts);
      default:
        return group<AstPrefix>(literal);
    }
  }

  InputBytes input;
  Record& record;
};

std::string printed(const AstRoot& tree) {
  std::ostringstream out;
  tree.print(out);
  return out.str();
}

std::vector<std::string> missingIn(AstRoot& tree) {
  std::vector<std::string> missing;
  const bool complete = tree.validate(missing, {});
  require(complete == missing.empty(), "a parameter without a value is named");
  return missing;
}

// Reads the text into both trees.
void checkReading(AstRoot& tree, LiteralNode& literal, const std::string& text) {
  Log literal_log;
  takeLog();
  const std::string thrown = thrownBy([&] {
    std::istringstream input(text);
    require(tree.parse(input), "a text that is read to its end is accepted");
  });
  const std::string expected = thrownBy([&] { literalRead(literal, text, literal_log); });
  requireSameLog(literal_log);
  require(thrown == expected, "the same exception is thrown as by the literal reader");
  require(printed(tree) == literalPrint(literal), "the values are those of the literal reader");
  require(missingIn(tree) == literalMissing(literal), "the same parameters are missing");
}

// A field that is not written shows what lay there before.
bool writesEveryField(AstRoot& tree, Record& record, EndiannessConversion conversion) {
  record.fill(0x00);
  tree.toBuffer(conversion);
  const Record over_zeros = record;
  record.fill(0xFF);
  tree.toBuffer(conversion);
  return record == over_zeros;
}

void checkToBuffer(AstRoot& tree, Record& record) {
  const bool complete = missingIn(tree).empty();
  for (auto c : {EndiannessConversion::NoConversion, EndiannessConversion::SwapBytes}) {
    require(complete == writesEveryField(tree, record, c),
            "every field is written when no parameter is missing, and only then");
  }
}

// The bytes at `at`, most significant first for SwapBytes and on a big-endian host.
uint32_t number(const Bytes& bytes, size_t at, size_t size, EndiannessConversion conversion) {
  uint32_t number = 0;
  for (size_t i = 0; i < size; ++i) {
    number =
        number << 8 | bytes[conversion == kMostSignificantByteFirst ? at + i : at + size - 1 - i];
  }
  return number;
}

void checkSerialize(const AstRoot& tree, EndiannessConversion conversion) {
  Bytes out = {0x55};  // The seal covers what was there before.
  const size_t count = tree.serialize(out, conversion);
  require(count == out.size() - 1 && count >= 6, "serialize returns the number of its bytes");
  const size_t seal = out.size() - 4;
  require(number(out, seal - 2, 2, conversion) == 0xDECA, "the magic number comes first");
  require(number(out, seal, 4, conversion) == crc32(0, out.data(), static_cast<uInt>(seal)),
          "the seal is right");
  require(out[0] == 0x55, "serialize only appends");
  takeLog();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  InputBytes input(data, size);
  const std::string description = input.text(input.byte());
  const std::string text = input.rest();
  Record record;
  LiteralNode literal;
  const auto tree = TreeBuilder(description, record).group<AstRoot>(literal);
  checkReading(*tree, literal, text);
  checkReading(*tree, literal, text);  // Over what it holds by now.
  checkToBuffer(*tree, record);
  checkSerialize(*tree, EndiannessConversion::NoConversion);
  checkSerialize(*tree, EndiannessConversion::SwapBytes);
  require(printed(*tree) == literalPrint(literal), "a tree that is asked does not change");
  return 0;
}
