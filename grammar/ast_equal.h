// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "grammar/ast_value.h"

// The equal sign of a parameter, directly after its key. Owns the parameter's value.
template <typename T>
class AstEqual : public AstNode {
 public:
  explicit AstEqual(int depth);

  bool parse(std::istream& input) override;
  std::string getClass() const override;
  void print(std::ostream& out) const override;
  size_t serialize(std::vector<uint8_t>& out, EndiannessConversion conversion) const override;

  // Empty until a line supplies the value.
  const std::optional<T>& value() const { return child.value; }

 private:
  AstValue<T> child;
};

extern template class AstEqual<uint8_t>;
extern template class AstEqual<uint16_t>;
extern template class AstEqual<uint32_t>;
extern template class AstEqual<std::string>;
