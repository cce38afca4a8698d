// SPDX-License-Identifier: Apache-2.0
// A tree of any shape, and a text for it. The input is the number of bytes that describe the tree,
// those bytes, and the text.
#include <zlib.h>

#include <deque>

#include "fuzz/support.h"
#include "grammar/ast_param.h"
#include "tests/kit/doubles.h"

namespace {

using Nodes = std::vector<std::shared_ptr<AstNode>>;
using Bytes = std::vector<uint8_t>;

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

// Builds the tree that a few bytes describe.
class TreeBuilder {
 public:
  TreeBuilder(const std::string& description, Record& record)
      : input(reinterpret_cast<const uint8_t*>(description.data()), description.size()),
        record(record) {}

  template <typename Group>
  std::shared_ptr<Group> group(int level) {
    const std::string& name = nameOf(input.byte());
    const std::optional<uint8_t> id = optionalByte();
    const uint8_t tag = input.byte();
    Nodes nodes(level < kMostLevels ? input.byte() % 4U : 0U);
    for (std::shared_ptr<AstNode>& child : nodes) child = node(level + 1);
    const auto make = [&](const std::initializer_list<std::shared_ptr<AstNode>>& children) {
      return std::make_shared<Group>(name, id, level, children, tag);
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
  std::shared_ptr<AstNode> param(int level, Fields<T>& fields) {
    const std::string& name = nameOf(input.byte());
    const std::optional<uint8_t> id = optionalByte();
    T* const target = input.byte() % 4 == 3 ? nullptr : fields.add();
    return std::make_shared<AstParam<T>>(name, level, id, target);
  }

  std::shared_ptr<AstNode> node(int level) {
    switch (input.byte() % 6) {
      case 0:
        return param(level, record.bytes);
      case 1:
        return param(level, record.halves);
      case 2:
        return param(level, record.words);
      case 3:
        return param(level, record.texts);
      default:
        return group<AstPrefix>(level);
    }
  }

  InputBytes input;
  Record& record;
};

// A field that is not written shows what lay there before.
bool writesEveryField(AstRoot& tree, Record& record, EndiannessConversion conversion) {
  record.fill(0x00);
  tree.toBuffer(conversion);
  const Record over_zeros = record;
  record.fill(0xFF);
  tree.toBuffer(conversion);
  return record == over_zeros;
}

void checkValidate(AstRoot& tree, Record& record) {
  std::vector<std::string> missing;
  const bool complete = tree.validate(missing, {});
  require(complete == missing.empty(), "a parameter without a value is named");
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
  const auto tree = TreeBuilder(description, record).group<AstRoot>(0);
  const bool to_the_end = parse(*tree, text);
  const std::string once = printed(*tree);
  require(parse(*tree, text) == to_the_end, "a text read again ends as before");
  require(printed(*tree) == once, "a text read again changes nothing");
  checkValidate(*tree, record);
  checkSerialize(*tree, EndiannessConversion::NoConversion);
  checkSerialize(*tree, EndiannessConversion::SwapBytes);
  require(printed(*tree) == once, "a tree that is asked does not change");
  return 0;
}
