// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "grammar/ast_node.h"

// The value of a parameter: a number of 8, 16 or 32 bits, or one word.
// Numbers are read as std::istream reads them: 0x or 0X means hexadecimal, a leading 0 octal. What
// follows the value is ignored. libc++ takes more letters as part of a number than libstdc++ does.
template <typename T>
class AstValue : public AstNode {
 public:
  AstValue(std::string_view name, int depth);

  // Stores the value, over an earlier one. Throws std::invalid_argument("Unexpected value") when
  // there is none or it does not fit.
  bool parse(std::istream& input) override;
  std::string getClass() const override;
  void print(std::ostream& out) const override;
  // A text is written as to_bytes writes it: the bytes of the string object.
  size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const override;

  // Empty until a line supplies the value.
  std::optional<T> value;
};

extern template class AstValue<uint8_t>;
extern template class AstValue<uint16_t>;
extern template class AstValue<uint32_t>;
extern template class AstValue<std::string>;
